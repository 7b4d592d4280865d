/// Operands, oracle and scratch for tests of products, for both word types.
#pragma once

#include <cstdlib>
#include <memory>

#include "gmp_words.h"
#include "lumo/multiply/multiply_context.h"
#include "word_arrays.h"

namespace lumo::testing {

/// Words [s, L) of A B.
template <typename wtype>
mpz_class product_window(const std::vector<wtype>& a, const std::vector<wtype>& b, upL_t s, upL_t L) {
    constexpr unsigned W = WordTraits<wtype>::bits;
    const mpz_class product = to_mpz(a.data(), a.size()) * to_mpz(b.data(), b.size());
    mpz_class window = product >> (s * W);
    mpz_fdiv_r_2exp(window.get_mpz_t(), window.get_mpz_t(), (L - s) * W);
    return window;
}

template <typename wtype>
mpz_class product_of(const std::vector<wtype>& a, const std::vector<wtype>& b) {
    return product_window(a, b, 0, a.size() + b.size());
}

/// Aligned memory of exactly the bytes asked for; what is written behind it is noticed.
class GuardedScratch {
 public:
    explicit GuardedScratch(upL_t bytes)
        : length(bytes),
          memory(static_cast<unsigned char*>(std::aligned_alloc(128, align_bytes(bytes + 128)))) {
        std::fill_n(memory.get(), bytes + 128, GUARD);
    }
    void* data() const { return memory.get(); }
    bool intact() const {
        for (upL_t i = length; i < length + 128; i++)
            if (memory.get()[i] != GUARD) return false;
        return true;
    }
    MultiplyContext context() const {
        MultiplyContext ctx;
        ctx.scratch = memory.get();
        ctx.scratch_bytes = length;
        return ctx;
    }

 private:
    static constexpr unsigned char GUARD = 0xa7;
    struct Free {
        void operator()(unsigned char* p) const { std::free(p); }
    };
    upL_t length;
    std::unique_ptr<unsigned char, Free> memory;
};

}  // namespace lumo::testing
