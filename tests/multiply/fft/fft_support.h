// Operands, scratch with guards, and the oracle for the tests of the FFT.
#pragma once

#include <gmp.h>

#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "lumo/multiply/fft/fft_algorithm.h"
#include "lumo/multiply/fft/fft_tables.h"
#include "lumo/multiply/kernels/kernel_select.h"

namespace lumo::test {

using Words = std::vector<std::uint64_t>;

enum class Pattern { random, ones, sparse, half, alternating };
inline const char* name_of(Pattern pattern) {
    const char* names[] = {"random", "ones", "sparse", "half", "alternating"};
    return names[int(pattern)];
}

/// Half: every piece of b bits is 2^(b-1) - 1 or 2^(b-1), where balanced pieces are largest.
inline Words operand(Pattern pattern, upL_t words, unsigned b, unsigned seed) {
    std::mt19937_64 random(seed);
    Words a(words);
    switch (pattern) {
        case Pattern::random:
            for (auto& word : a) word = random();
            break;
        case Pattern::ones:
            a.assign(words, ~std::uint64_t(0));
            break;
        case Pattern::sparse:
            for (upL_t i = 0; i < words; i += 1 + random() % 40) a[i] = std::uint64_t(1) << (random() % 64);
            break;
        case Pattern::half:
            for (upL_t bit = 0; bit < 64 * words; bit++)
                if (bit % b != b - 1) a[bit / 64] |= std::uint64_t(1) << (bit % 64);
            break;
        case Pattern::alternating:
            for (upL_t bit = 0; bit < 64 * words; bit++)
                if (bit / b % 2) a[bit / 64] |= std::uint64_t(1) << (bit % 64);
            break;
    }
    return a;
}

inline Words exact_product(const Words& a, const Words& b) {
    Words t(a.size() + b.size());
    if (a.size() >= b.size())
        mpn_mul(t.data(), a.data(), mp_size_t(a.size()), b.data(), mp_size_t(b.size()));
    else
        mpn_mul(t.data(), b.data(), mp_size_t(b.size()), a.data(), mp_size_t(a.size()));
    return t;
}

/// Product modulo 2^(64 size) + 1; the residue 2^(64 size) as zero.
inline Words wrapped_product(const Words& a, const Words& b, upL_t size) {
    Words t = exact_product(a, b);
    t.resize(2 * size);
    Words low(t.begin(), t.begin() + long(size));
    if (mpn_sub_n(low.data(), low.data(), t.data() + size, mp_size_t(size)))
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

/// Restores the kernels in use at the end of a test.
class KernelGuard {
 public:
    KernelGuard() : saved(active_kernels()) {}
    ~KernelGuard() { select_kernels(saved); }

 private:
    KernelSet saved;
};

inline std::string describe(const FftSize& size) {
    return std::to_string(size.m) + "." + std::to_string(size.k) + "." + std::to_string(size.b);
}

}  // namespace lumo::test
