/// The forward transform of one operand, kept for several products.
#pragma once

#include "lumo/numbers/objects/transform_helper.h"

namespace lumo {

template <typename wtype>
class HeldImage {
 public:
    using Helper = TransformHelper<wtype>;

    HeldImage() = default;
    /// `image`: array_bytes() of the descriptor, aligned, alive as long as the form is used.
    HeldImage(const TransformDescriptor<wtype>& descriptor, void* image) : d(&descriptor), data(image) {}
    bool held() const { return ready; }

 protected:
    /// Takes the image of a float. InvalidParametersException "Invalid Transform Parameters" with a helper of
    /// another ring; TransformTooSmallException "Transform length is too small." beyond the descriptor's
    /// words().
    template <typename Number>
    void hold(const char* location, const Helper& helper, const Number& A) {
        hold_words(location, helper, A.T, A.L);
        e = A.exp;
        L = A.L;
        positive = A.positive;
    }
    /// InvalidParametersException "Mismatching Transform Parameters" with a helper of another ring, "Invalid
    /// Transform Parameters" without an image.
    void require_held(const char* location, const Helper& helper) const;

    const TransformDescriptor<wtype>* d = nullptr;
    void* data = nullptr;
    spL_t e = 0;
    upL_t L = 0;
    bool positive = true;
    bool ready = false;

 private:
    void require_ring(const char* location, const Helper& helper, const char* text) const;
    void hold_words(const char* location, const Helper& helper, const wtype* words, upL_t length);
};

}  // namespace lumo
