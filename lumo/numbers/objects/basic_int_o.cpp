#include "lumo/foundation/errors/exceptions.h"
#include "lumo/numbers/objects/basic_int.h"

namespace lumo {

namespace {
constexpr upL_t SPARE_WORDS = 2;
constexpr upL_t WORD_CAPACITY = 4;  ///< of a number that began as one word
}  // namespace

template <typename wtype>
BasicIntO<wtype>::BasicIntO(const BasicInt<wtype>& A)
    : BasicInt<wtype>(nullptr, A.L + SPARE_WORDS), owned(make_aligned<wtype>(A.L + SPARE_WORDS)) {
    if (A.L == 0) throw UnsupportedZeroException("BasicIntO::BasicIntO()", "Zero was encountered.");
    this->T = owned.get();
    this->set_BasicInt(A);
}

template <typename wtype>
BasicIntO<wtype>::BasicIntO(std::uint64_t x)
    : BasicInt<wtype>(nullptr, WORD_CAPACITY), owned(make_aligned<wtype>(WORD_CAPACITY)) {
    if (x == 0) throw UnsupportedZeroException("BasicIntO::BasicIntO()", "Zero was encountered.");
    this->T = owned.get();
    this->hash = Hash61::fold(x);
    for (; x != 0; x = sizeof(wtype) == 4 ? x >> 32 : 0) this->T[this->L++] = static_cast<wtype>(x);
}

template <typename wtype>
BasicIntO<wtype>::BasicIntO(const wtype* words, upL_t n)
    : BasicInt<wtype>(nullptr, n + SPARE_WORDS), owned(make_aligned<wtype>(n + SPARE_WORDS)) {
    this->T = owned.get();
    this->L = bp_strip<wtype>(0, words, n);
    if (this->L == 0) throw UnsupportedZeroException("BasicIntO::BasicIntO()", "Zero was encountered.");
    bp_copy(this->T, words, this->L);
    this->update_hash();
}

template <typename wtype>
BasicIntO<wtype>::BasicIntO(BasicIntO&& other) noexcept
    : BasicInt<wtype>(other), owned(std::move(other.owned)) {
    static_cast<BasicInt<wtype>&>(other) = {};
}

template <typename wtype>
BasicIntO<wtype>& BasicIntO<wtype>::operator=(BasicIntO&& other) noexcept {
    if (this == &other) return *this;
    owned = std::move(other.owned);
    static_cast<BasicInt<wtype>&>(*this) = other;
    static_cast<BasicInt<wtype>&>(other) = {};
    return *this;
}

template class BasicIntO<std::uint32_t>;
template class BasicIntO<std::uint64_t>;

}  // namespace lumo
