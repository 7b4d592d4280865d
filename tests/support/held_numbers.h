/// Number objects with their storage, and their exact values.
#pragma once

#include <gtest/gtest.h>

#include "gmp_words.h"
#include "lumo/numbers/objects/big_float.h"
#include "word_arrays.h"
#include "word_types.h"

namespace lumo::testing {

/// A number object over words of its own, `below` words above the buffer's start.
template <template <typename> class Number, typename wtype>
struct Held : Number<wtype> {
    explicit Held(upL_t room) : Number<wtype>(nullptr, 0), storage(room + 1, wtype(0x5a)) {
        static_cast<Number<wtype>&>(*this) = Number<wtype>(storage.data(), room);
    }
    Held(const std::vector<wtype>& words, spL_t exponent, bool is_positive = true, upL_t below = 0,
         upL_t above = 0)
        : Held(below + words.size() + above) {
        for (upL_t i = 0; i < words.size(); i++) storage[below + i] = words[i];
        this->T = this->base + below;
        this->L = words.size();
        this->exp = exponent;
        this->positive = is_positive;
        while (this->L > 0 && this->T[this->L - 1] == 0) this->L--;
        if (this->L == 0) this->clear();
    }
    Held(const Held&) = delete;
    Held(Held&&) = default;  // the words stay where they are
    Held& operator=(Held&&) = default;
    /// The word behind the buffer is as it was.
    bool intact() const { return storage.back() == wtype(0x5a); }

    std::vector<wtype> storage;
};
template <typename wtype>
using HeldFloat = Held<BigFloat, wtype>;

template <typename wtype>
mpz_class unit(spL_t words) {
    return mpz_class(1) << static_cast<unsigned long>(words * static_cast<spL_t>(WordTraits<wtype>::bits));
}

/// Positive or negative value over 2^(W low).
template <typename Number>
mpz_class value_over(const Number& x, spL_t low) {
    using wtype = std::remove_pointer_t<decltype(x.T)>;
    if (x.L == 0) return 0;
    EXPECT_GE(x.exp, low);
    return mantissa(x) * unit<wtype>(x.exp - low);
}

/// Words of a non-negative integer, `L` of them.
template <typename wtype>
std::vector<wtype> to_words(const mpz_class& z, upL_t L) {
    std::vector<wtype> words(
        std::max<upL_t>(L, mpz_sizeinbase(z.get_mpz_t(), 2) / WordTraits<wtype>::bits + 1));
    mpz_export(words.data(), nullptr, -1, sizeof(wtype), 0, 0, z.get_mpz_t());
    words.resize(L);
    return words;
}

}  // namespace lumo::testing
