// Products against GMP over the rows of the size table and all kernel sets.
#include <gtest/gtest.h>

#include "vt3_support.h"

using namespace lumo;
using namespace lumo::test;

TEST(Vt3Products, SmallestRows) {
    for (unsigned i = 0; i < 12; i++) {
        const Vt3Size size = vt3_all_sizes()[i];
        const upL_t words = size.bits() / 64;
        for (const auto* set : runnable_sets()) {
            SetGuard guard(set);
            const Words a = operand(Pattern::random, words / 2, size.b, 1),
                        b = operand(Pattern::random, words - words / 2, size.b, 2);
            EXPECT_EQ(multiply_by_row(size, a, b), exact_product(a, b)) << describe(size) << " " << set->name;
        }
    }
}
