// Products against GMP over the rows of the size table and all kernel sets.
#include "lumo/foundation/parallel/pushpool.h"
#include "vt3_support.h"

namespace lumo::testing {
namespace {

constexpr upL_t MOST_ROW_BITS = 1400000;

std::vector<Vt3Size> small_rows() {
    std::vector<Vt3Size> rows;
    for (const Vt3Size& size : vt3_all_sizes())
        if (size.bits() <= MOST_ROW_BITS) rows.push_back(size);
    return rows;
}

class Vt3Rows : public ::testing::TestWithParam<Vt3Size> {};

TEST_P(Vt3Rows, FullLengthProductsAreExact) {
    const Vt3Size size = GetParam();
    const upL_t words = size.bits() / 64;
    for (Pattern pattern : ALL_PATTERNS)
        for (upL_t total : {words, words - 1}) {
            const upL_t AL = pattern == Pattern::sparse ? words / 3 + 1 : words / 2;
            const Words a = operand(pattern, AL, size.b, 11), b = operand(pattern, total - AL, size.b, 12);
            const Words expected = exact_product(a, b);
            for (const auto* set : runnable_sets()) {
                SetGuard guard(set);
                ASSERT_EQ(multiply_by_row(size, a, b), expected) << name_of(pattern) << " " << set->name;
            }
        }
}

TEST_P(Vt3Rows, WindowsOfWrappedProductsAreExact) {
    const Vt3Size size = GetParam();
    const upL_t words = size.bits() / 64;
    std::mt19937_64 random(size.bits());
    for (Pattern pattern : ALL_PATTERNS) {
        const Words a = operand(pattern, words, size.b, 21),
                    b = operand(pattern, words - random() % 100, size.b, 22);
        const Words expected = wrapped_product(a, b, words, -1);
        const bool zero_as_ones = pattern == Pattern::ones;  // a multiple of the modulus may read as itself
        for (const auto* set : runnable_sets()) {
            SetGuard guard(set);
            const upL_t s = random() % words, L = s + random() % (words - s + 1);
            Words window = multiply_by_row(size, a, b, s, L);
            if (zero_as_ones && b.size() == words) continue;
            ASSERT_EQ(window, window_of(expected, s, L))
                << name_of(pattern) << " " << set->name << " " << s << " " << L;
            ASSERT_EQ(multiply_by_row(size, a, a, 0, words), wrapped_product(a, a, words, -1)) << set->name;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(All, Vt3Rows, ::testing::ValuesIn(small_rows()),
                         [](const auto& tested) { return describe(tested.param); });

TEST(Vt3Products, DoNotDependOnThreadsOrKernels) {
    const Vt3Size sizes[] = {vt3_size_for(1474561), vt3_size_for(3000000), {7, 5, 13, 152}, {9, 3, 14, 200}};
    PushPoolParallelizer pool(3, false, 1);
    for (const Vt3Size& size : sizes) {
        const upL_t words = size.bits() / 64;
        // All ones against one more than they: long runs of ones at the borders of the pieces.
        Words a = operand(Pattern::ones, words / 2, size.b, 0), b(words - words / 2, 0);
        b[0] = 1;
        b.back() = ~std::uint64_t(0);
        const Words r = operand(Pattern::random, words, size.b, 3);
        const Words exact = exact_product(a, b), wrapped = wrapped_product(r, r, words, -1);
        for (const auto* set : runnable_sets()) {
            SetGuard guard(set);
            for (upL_t tds : {1, 2, 3, 7, 64}) {
                ASSERT_EQ(multiply_by_row(size, a, b, 0, words, tds, pool), exact) << set->name << " " << tds;
                const upL_t s = words / 5 + tds;
                ASSERT_EQ(multiply_by_row(size, r, r, s, words, tds, pool), window_of(wrapped, s, words))
                    << set->name << " " << tds;
            }
        }
    }
}

TEST(Vt3Products, RippleThroughWordsBelowTheWindow) {
    // (2^(64 i) - 1)^2 has a run of ones in its middle; sums of two such have runs that a carry from below
    // clears.
    const Vt3Size size = vt3_size_for(2000000);
    const upL_t words = size.bits() / 64;
    PushPoolParallelizer pool(2, false, 1);
    std::mt19937_64 random(5);
    for (int i = 0; i < 300; i++) {
        Words a(words), b(words);
        // Sum of two products that meets in a carry: a = 2^x - 2^y, b = 2^z + 1.
        const upL_t y = random() % (words / 2), x = y + 1 + random() % (words / 2 - 1),
                    z = random() % (words / 3);
        for (upL_t w = y; w < x; w++) a[w] = ~std::uint64_t(0);
        b[0] = 1 + random() % 2;
        b[z] += 1;
        // In every other round the run ends shortly below the window.
        upL_t s = random() % words;
        if (i % 2) {
            const upL_t hole = x - 1 - random() % std::min(x - y, z + 1);
            a[hole] ^= 32;
            s = (hole + z + 1 + random() % 25) % words;
        }
        const Words expected = wrapped_product(a, b, words, -1);
        ASSERT_EQ(multiply_by_row(size, a, b, s, words, 5, pool), window_of(expected, s, words))
            << x << " " << y << " " << z << " " << s;
    }
}

}  // namespace
}  // namespace lumo::testing
