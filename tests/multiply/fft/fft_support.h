// What the tests of the FFT share.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "bit_patterns.h"
#include "kernel_sets.h"
#include "lumo/multiply/fft/fft_algorithm.h"
#include "lumo/multiply/fft/fft_tables.h"
#include "lumo/multiply/kernels/kernel_select.h"
#include "scratch.h"

namespace lumo::testing {

inline std::string describe(const FftSize& size) {
    return "m" + std::to_string(size.m) + "k" + std::to_string(size.k) + "b" + std::to_string(size.b);
}

/// A descriptor with its memory.
struct FftBench {
    explicit FftBench(upL_t bits) : FftBench(fft_size_for(bits)) {}
    explicit FftBench(const FftSize& size)
        : d((ensure_fft_tables(size.limit_bits), size)),
          first(d.array_bytes()),
          second(d.array_bytes()),
          scratch(d.scratch_bytes()) {}
    ~FftBench() { EXPECT_TRUE(first.intact() && second.intact() && scratch.intact()); }
    upL_t words() const { return d.words(); }
    /// Window [s, L) of the product in the ring, through images.
    Words multiply(const Words& a, const Words& b, upL_t s, upL_t L, upL_t tds = 1,
                   BasicParallelizer& pool = serial_parallelizer()) {
        Words t(L - s);
        const MultiplyContext ctx = scratch.context(tds, pool);
        d.forward(ctx, a.data(), a.size(), first.data());
        d.forward(ctx, b.data(), b.size(), second.data());
        d.inverse_fmul(ctx, t.data(), s, L, second.data(), first.data(), second.data());
        return t;
    }
    Words multiply(const Words& a, const Words& b) { return multiply(a, b, 0, words()); }
    /// The same in one go.
    Words multiply_directly(const Words& a, const Words& b, upL_t s, upL_t L, upL_t tds = 1,
                            BasicParallelizer& pool = serial_parallelizer()) {
        Words t(L - s);
        const MultiplyContext ctx = scratch.context(tds, pool);
        if (&a == &b)
            d.sqr(ctx, t.data(), s, L, a.data(), a.size(), first.data());
        else
            d.mul(ctx, t.data(), s, L, a.data(), a.size(), b.data(), b.size(), first.data(), second.data());
        return t;
    }

    FftDescriptor<std::uint64_t> d;
    Scratch first, second, scratch;
};

}  // namespace lumo::testing
