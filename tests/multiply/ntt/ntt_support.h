// What the tests of the number-theoretic transforms share.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "bit_patterns.h"
#include "lumo/multiply/ntt/c17/c17_transform.h"
#include "lumo/multiply/ntt/n64/n64_transform.h"
#include "lumo/multiply/ntt/ntt_algorithm.h"
#include "lumo/multiply/ntt/vst/vst_transform.h"
#include "lumo/multiply/ntt/vt3/vt3_select.h"
#include "lumo/multiply/ntt/vt3/vt3_transform.h"
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

/// Window [s, L) of the product in the ring of a row, through images.
template <typename Transform>
Words multiply_by_row(const typename Transform::Size& size, const Words& a, const Words& b, upL_t s, upL_t L,
                      upL_t tds, BasicParallelizer& pool) {
    const NttDescriptor<std::uint64_t, Transform> descriptor(size, tds);
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
    EXPECT_TRUE(f.intact() && g.intact() && work.intact());
    return t;
}

/// One length of one transform.
struct Row {
    std::string name;
    upL_t words;
    unsigned digit;
    bool by_kernels;  ///< there are several sets of them to try
    std::function<Words(const Words& a, const Words& b, upL_t s, upL_t L, upL_t tds, BasicParallelizer& pool)>
        product;

    Words operator()(const Words& a, const Words& b, upL_t s, upL_t L) const {
        return product(a, b, s, L, 1, serial_parallelizer());
    }
    std::vector<const kernels::Vt3Kernels*> sets() const {
        return by_kernels ? runnable_sets() : std::vector<const kernels::Vt3Kernels*>{nullptr};
    }
};

inline std::string describe(const Vt3Size& size) {
    return "n" + std::to_string(size.n) + "m" + std::to_string(size.m) + "k" + std::to_string(size.k) + "b" +
           std::to_string(size.b);
}
inline std::string describe(const N64Size& size) {
    return "m" + std::to_string(size.m) + "k" + std::to_string(size.k);
}
inline unsigned digit_bits(const Vt3Size& size) {
    return size.b;
}
inline unsigned digit_bits(const N64Size&) {
    return 64;
}

template <typename Transform>
Row row_of(const typename Transform::Size& size) {
    return {Transform::IDENTITY.tag + describe(size), size.bits() / 64, digit_bits(size),
            std::is_base_of_v<Vt3Transform, Transform>,
            [size](const Words& a, const Words& b, upL_t s, upL_t L, upL_t tds, BasicParallelizer& pool) {
                return multiply_by_row<Transform>(size, a, b, s, L, tds, pool);
            }};
}

}  // namespace lumo::testing
