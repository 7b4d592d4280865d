// Operands, scratch with guards, and the oracle for the tests of the number-theoretic transform.
#pragma once

#include <gmp.h>

#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "lumo/multiply/ntt/vt3_algorithm.h"
#include "lumo/multiply/ntt/vt3_select.h"

namespace lumo::test {

using Words = std::vector<std::uint64_t>;

enum class Pattern { random, ones, sparse, alternating, top_bits };
inline constexpr Pattern ALL_PATTERNS[] = {Pattern::random, Pattern::ones, Pattern::sparse,
                                           Pattern::alternating, Pattern::top_bits};
inline const char* name_of(Pattern pattern) {
    const char* names[] = {"random", "ones", "sparse", "alternating", "top_bits"};
    return names[int(pattern)];
}

/// Alternating: digits of b bits all zeros, all ones in turn. Top bits: only the highest bit of each digit.
inline Words operand(Pattern pattern, upL_t words, unsigned b, unsigned seed) {
    std::mt19937_64 random(seed);
    Words a(words);
    auto set_bit = [&a](upL_t bit) { a[bit / 64] |= std::uint64_t(1) << (bit % 64); };
    switch (pattern) {
        case Pattern::random:
            for (auto& word : a) word = random();
            break;
        case Pattern::ones:
            a.assign(words, ~std::uint64_t(0));
            break;
        case Pattern::sparse:
            for (upL_t i = 0; i < words; i += 1 + random() % 40) set_bit(64 * i + random() % 64);
            break;
        case Pattern::alternating:
            for (upL_t bit = 0; bit < 64 * words; bit++)
                if (bit / b % 2) set_bit(bit);
            break;
        case Pattern::top_bits:
            for (upL_t bit = b - 1; bit < 64 * words; bit += b) set_bit(bit);
            break;
    }
    return a;
}

inline Words exact_product(const Words& a, const Words& b) {
    Words t(a.size() + b.size());
    const bool ordered = a.size() >= b.size();
    const Words &x = ordered ? a : b, &y = ordered ? b : a;
    if (y.empty()) return t;
    mpn_mul(t.data(), x.data(), mp_size_t(x.size()), y.data(), mp_size_t(y.size()));
    return t;
}

/// Product modulo 2^(64 size) - 1.
inline Words wrapped_product(const Words& a, const Words& b, upL_t size) {
    Words t = exact_product(a, b);
    t.resize(2 * size);
    Words low(t.begin(), t.begin() + long(size));
    if (mpn_add_n(low.data(), low.data(), t.data() + size, mp_size_t(size)))
        mpn_add_1(low.data(), low.data(), mp_size_t(size), 1);
    return low;
}

/// Aligned memory of exactly the bytes asked for, with a guard behind.
class Scratch {
 public:
    explicit Scratch(upL_t bytes)
        : length(bytes), memory(static_cast<char*>(std::aligned_alloc(128, bytes + 128))) {
        std::memset(memory.get(), 0x5a, bytes + 128);
    }
    void* data() { return memory.get(); }
    bool guard_intact() const {
        for (upL_t i = length; i < length + 128; i++)
            if (memory.get()[i] != 0x5a) return false;
        return true;
    }
    MultiplyContext context(upL_t tds = 1, BasicParallelizer& parallelizer = serial_parallelizer()) {
        MultiplyContext ctx;
        ctx.tds = tds;
        ctx.parallelizer = &parallelizer;
        ctx.scratch = memory.get();
        ctx.scratch_bytes = length;
        return ctx;
    }

 private:
    struct Free {
        void operator()(char* p) const { std::free(p); }
    };
    upL_t length;
    std::unique_ptr<char, Free> memory;
};

/// Makes a kernel set the one in use while it lives.
class SetGuard {
 public:
    explicit SetGuard(const kernels::Vt3Kernels* set) { select_vt3_kernels(set); }
    ~SetGuard() { select_vt3_kernels(nullptr); }
};

inline std::vector<const kernels::Vt3Kernels*> runnable_sets() {
    std::vector<const kernels::Vt3Kernels*> sets;
    for (const auto* set : {&kernels::vt3_kernels_portable, &kernels::vt3_kernels_avx2,
                            &kernels::vt3_kernels_avx512, &kernels::vt3_kernels_ifma})
        if (select_vt3_kernels(set)) sets.push_back(set);
    select_vt3_kernels(nullptr);
    return sets;
}

inline std::string describe(const Vt3Size& size) {
    return "n" + std::to_string(size.n) + "m" + std::to_string(size.m) + "k" + std::to_string(size.k) + "b" +
           std::to_string(size.b);
}

/// Window [s, L) of the product in the ring of a row, through images.
inline Words multiply_by_row(const Vt3Size& size, const Words& a, const Words& b, upL_t s, upL_t L,
                             upL_t tds = 1, BasicParallelizer& pool = serial_parallelizer()) {
    const Vt3Descriptor<std::uint64_t> descriptor(size, tds);
    Scratch f(descriptor.array_bytes()), g(descriptor.array_bytes()), work(descriptor.scratch_bytes());
    const MultiplyContext ctx = work.context(tds, pool);
    Words t(L - s);
    descriptor.forward(ctx, a.data(), a.size(), f.data());
    if (&a == &b) {
        descriptor.inverse_fsqr(ctx, t.data(), s, L, g.data(), f.data());
    } else {
        descriptor.forward(ctx, b.data(), b.size(), g.data());
        descriptor.inverse_fmul(ctx, t.data(), s, L, g.data(), f.data(), g.data());
    }
    EXPECT_TRUE(f.guard_intact() && g.guard_intact() && work.guard_intact()) << describe(size);
    return t;
}

inline Words multiply_by_row(const Vt3Size& size, const Words& a, const Words& b) {
    return multiply_by_row(size, a, b, 0, a.size() + b.size());
}

}  // namespace lumo::test
