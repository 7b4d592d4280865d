#include "lumo/numbers/objects/held_image.h"

namespace lumo {

namespace {
constexpr const char* INVALID = "Invalid Transform Parameters";
constexpr const char* MISMATCHING = "Mismatching Transform Parameters";
}  // namespace

template <typename wtype>
void HeldImage<wtype>::require_ring(const char* location, const Helper& helper, const char* text) const {
    if (d == nullptr || !d->same_transform(helper.descriptor()))
        throw InvalidParametersException(location, text);
}

template <typename wtype>
void HeldImage<wtype>::require_held(const char* location, const Helper& helper) const {
    require_ring(location, helper, MISMATCHING);
    if (!ready) throw InvalidParametersException(location, INVALID);
}

template <typename wtype>
void HeldImage<wtype>::hold_words(const char* location, const Helper& helper, const wtype* words,
                                  upL_t length) {
    require_ring(location, helper, INVALID);
    if (length > d->words()) throw TransformTooSmallException(location, "Transform length is too small.");
    ready = false;
    if (length != 0) d->forward(helper.context(), words, length, data);
    ready = true;
}

template class HeldImage<std::uint32_t>;
template class HeldImage<std::uint64_t>;

}  // namespace lumo
