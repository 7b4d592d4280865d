// What the tests of the number-theoretic transform share.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "bit_patterns.h"
#include "lumo/multiply/ntt/ntt_algorithm.h"
#include "lumo/multiply/ntt/vt3/vt3_family.h"
#include "lumo/multiply/ntt/vt3/vt3_select.h"
#include "scratch.h"

namespace lumo::testing {

inline constexpr Pattern ALL_PATTERNS[] = {Pattern::random, Pattern::ones, Pattern::sparse,
                                           Pattern::alternating, Pattern::top_bits};

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
    const NttDescriptor<std::uint64_t, Vt3Transform> descriptor(size, tds);
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
    EXPECT_TRUE(f.intact() && g.intact() && work.intact()) << describe(size);
    return t;
}

inline Words multiply_by_row(const Vt3Size& size, const Words& a, const Words& b) {
    return multiply_by_row(size, a, b, 0, a.size() + b.size());
}

}  // namespace lumo::testing
