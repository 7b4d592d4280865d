/// A number that owns its words on the general allocator. For small and long-lived values, never in the
/// computing path. A value of up to 32 bytes lives inside the object.
#pragma once

#include <algorithm>
#include <iterator>

#include "lumo/foundation/memory/aligned_malloc.h"

namespace lumo {

/// `Number` is a view with fields T, base and capacity that is made from (pointer, words).
template <template <typename> class Number, typename wtype>
class OwnedNumber : public Number<wtype> {
 public:
    OwnedNumber() : Number<wtype>(inline_words, INLINE_WORDS) {}
    /// Zero, with room for so many words.
    explicit OwnedNumber(upL_t words) : OwnedNumber() {
        if (words <= INLINE_WORDS) return;
        owned = make_aligned<wtype>(words);
        view() = Number<wtype>(owned.get(), words);
    }
    OwnedNumber(OwnedNumber&& other) noexcept { take(other); }
    OwnedNumber& operator=(OwnedNumber&& other) noexcept {
        if (this != &other) take(other);
        return *this;
    }
    OwnedNumber(const OwnedNumber&) = delete;
    OwnedNumber& operator=(const OwnedNumber&) = delete;
    ~OwnedNumber() = default;

 private:
    static constexpr upL_t INLINE_WORDS = 32 / sizeof(wtype);

    Number<wtype>& view() { return *this; }
    void take(OwnedNumber& other) noexcept {
        view() = other.view();
        owned = std::move(other.owned);
        if (!owned) {  // the words live inside the object, so they move with it
            std::copy(std::begin(other.inline_words), std::end(other.inline_words), std::begin(inline_words));
            this->T = inline_words + (other.T - other.base);
            this->base = inline_words;
        }
        other.view() = Number<wtype>(other.inline_words, INLINE_WORDS);
    }

    wtype inline_words[INLINE_WORDS] = {};
    AlignedPtr<wtype> owned;
};

}  // namespace lumo
