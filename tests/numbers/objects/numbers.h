/// Numbers of random shape with their storage, their exact values, and scratch for their products.
#pragma once

#include <gtest/gtest.h>

#include "gmp_words.h"
#include "lumo/foundation/memory/aligned_malloc.h"
#include "lumo/multiply/multiply.h"
#include "word_arrays.h"

namespace lumo::testing {

using WordTypes = ::testing::Types<std::uint32_t, std::uint64_t>;

/// A number object over words of its own, `below` words above the buffer's start.
template <template <typename> class Number, typename wtype>
struct Held : Number<wtype> {
    explicit Held(upL_t room) : Number<wtype>(nullptr, 0), storage(room + 1, wtype(0x5a)) {
        static_cast<Number<wtype>&>(*this) = Number<wtype>(storage.data(), room);
    }
    Held(const std::vector<wtype>& words, spL_t exponent, bool is_positive, upL_t below, upL_t above)
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

/// Positive or negative value over 2^(W low).
template <typename Number>
mpz_class value_over(const Number& x, spL_t low) {
    using wtype = std::remove_pointer_t<decltype(x.T)>;
    if (x.L == 0) return 0;
    const spL_t bits = (x.exp - low) * static_cast<spL_t>(WordTraits<wtype>::bits);
    EXPECT_GE(bits, 0);
    return mantissa(x) << static_cast<unsigned long>(bits);
}

template <typename wtype>
mpz_class unit(spL_t words) {
    return mpz_class(1) << static_cast<unsigned long>(words * static_cast<spL_t>(WordTraits<wtype>::bits));
}

/// Aligned scratch with the context that carries it.
class Scratch {
 public:
    explicit Scratch(upL_t bytes) : memory(make_aligned<unsigned char>(bytes + 128)) {
        context.scratch = memory.get();
        context.scratch_bytes = bytes;
    }
    MultiplyContext context;

 private:
    AlignedPtr<unsigned char> memory;
};

}  // namespace lumo::testing
