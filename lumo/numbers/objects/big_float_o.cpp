#include <algorithm>
#include <iterator>

#include "lumo/foundation/memory/aligned_malloc.h"
#include "lumo/numbers/objects/big_float.h"

namespace lumo {

template <typename wtype>
BigFloatO<wtype>::BigFloatO() : BigFloat<wtype>(inline_words, INLINE_WORDS) {}

template <typename wtype>
BigFloatO<wtype>::BigFloatO(upL_t words) : BigFloatO() {
    if (words <= INLINE_WORDS) return;
    owned = static_cast<wtype*>(aligned_malloc(words * sizeof(wtype), ALIGNMENT_BYTES));
    static_cast<BigFloat<wtype>&>(*this) = BigFloat<wtype>(owned, words);
}

template <typename wtype>
void BigFloatO<wtype>::take(BigFloatO& other) noexcept {
    static_cast<BigFloat<wtype>&>(*this) = other;
    owned = other.owned;
    if (owned == nullptr) {
        std::copy(std::begin(other.inline_words), std::end(other.inline_words), std::begin(inline_words));
        this->T = inline_words + (other.T - other.base);
        this->base = inline_words;
    }
    other.owned = nullptr;
    static_cast<BigFloat<wtype>&>(other) = BigFloat<wtype>(other.inline_words, INLINE_WORDS);
}

template <typename wtype>
BigFloatO<wtype>::BigFloatO(BigFloatO&& other) noexcept {
    take(other);
}

template <typename wtype>
BigFloatO<wtype>& BigFloatO<wtype>::operator=(BigFloatO&& other) noexcept {
    if (this != &other) {
        aligned_free(owned);
        take(other);
    }
    return *this;
}

template <typename wtype>
BigFloatO<wtype>::~BigFloatO() {
    aligned_free(owned);
}

template class BigFloatO<std::uint32_t>;
template class BigFloatO<std::uint64_t>;

}  // namespace lumo
