// Products against GMP over the lengths of all transforms and all kernel sets.
#include "lumo/foundation/parallel/pushpool.h"
#include "lumo/multiply/ntt/vt3/vt3_prime_table.h"
#include "ntt_support.h"

namespace lumo::testing {
namespace {

std::vector<Row> small_rows() {
    std::vector<Row> rows;
    for (const Vt3Size& size : vt3_all_sizes())
        if (size.bits() <= 1400000) rows.push_back(row_of<Vt3Transform>(size));
    for (const N64Size& size : n64_sizes())
        if (size.bits() <= 3000000) rows.push_back(row_of<N64Transform>(size));
    // Ten primes, whose digits reach furthest; even and odd numbers of primes by mixed kernels.
    for (unsigned m : {1, 3, 5, 7}) rows.push_back(row_of<VstTransform>({10, m, 9, 216}));
    for (const Vt3Size& size : {Vt3Size{6, 1, 9, 128}, {9, 3, 10, 200}, {7, 5, 9, 152}, {8, 7, 9, 168}})
        rows.push_back(row_of<C17Transform>(size));
    return rows;
}

class NttRows : public ::testing::TestWithParam<Row> {};

TEST_P(NttRows, FullLengthProductsAreExact) {
    const Row& row = GetParam();
    for (Pattern pattern : ALL_PATTERNS)
        for (upL_t total : {row.words, row.words - 1}) {
            const upL_t AL = pattern == Pattern::sparse ? row.words / 3 + 1 : row.words / 2;
            const Words a = operand(pattern, AL, row.digit, 11),
                        b = operand(pattern, total - AL, row.digit, 12);
            const Words expected = exact_product(a, b);
            for (const auto* set : row.sets()) {
                SetGuard guard(set);
                ASSERT_EQ(row(a, b, 0, total), expected) << name_of(pattern) << " " << (set ? set->name : "");
            }
        }
}

TEST_P(NttRows, WindowsOfWrappedProductsAreExact) {
    const Row& row = GetParam();
    const upL_t words = row.words;
    std::mt19937_64 random(words);
    for (Pattern pattern : ALL_PATTERNS) {
        const Words a = operand(pattern, words, row.digit, 21),
                    b = operand(pattern, words - random() % 100, row.digit, 22);
        const Words expected = wrapped_product(a, b, words, -1);
        const bool zero_as_ones = pattern == Pattern::ones;  // a multiple of the modulus may read as itself
        for (const auto* set : row.sets()) {
            SetGuard guard(set);
            const upL_t s = random() % words, L = s + random() % (words - s + 1);
            const Words window = row(a, b, s, L);
            if (zero_as_ones && b.size() == words) continue;
            ASSERT_EQ(window, window_of(expected, s, L))
                << name_of(pattern) << " " << (set ? set->name : "") << " " << s << " " << L;
            if (!zero_as_ones) {
                ASSERT_EQ(row(a, a, 0, words), wrapped_product(a, a, words, -1));
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(All, NttRows, ::testing::ValuesIn(small_rows()),
                         [](const auto& tested) { return tested.param.name; });

const std::vector<Row>& long_rows() {
    static const std::vector<Row> rows = {
        row_of<Vt3Transform>(vt3_size_for(1474561)), row_of<Vt3Transform>(vt3_size_for(3000000)),
        row_of<Vt3Transform>({7, 5, 13, 152}),       row_of<Vt3Transform>({9, 3, 14, 200}),
        row_of<N64Transform>(n64_size_for(2000000)), row_of<N64Transform>({7, 15}),
        row_of<VstTransform>({10, 1, 13, 216}),      row_of<C17Transform>(vt3_size_for(2000000))};
    return rows;
}

TEST(NttProducts, DoNotDependOnThreadsOrKernels) {
    PushPoolParallelizer pool(3, false, 1);
    for (const Row& row : long_rows()) {
        const upL_t words = row.words;
        // All ones against one more than they: long runs of ones at the borders of the pieces.
        Words a = operand(Pattern::ones, words / 2, row.digit, 0), b(words - words / 2, 0);
        b[0] = 1;
        b.back() = ~std::uint64_t(0);
        const Words r = operand(Pattern::random, words, row.digit, 3);
        const Words exact = exact_product(a, b), wrapped = wrapped_product(r, r, words, -1);
        for (const auto* set : row.sets()) {
            SetGuard guard(set);
            for (upL_t tds : {1, 2, 3, 7, 64}) {
                ASSERT_EQ(row.product(a, b, 0, words, tds, pool), exact) << row.name << " " << tds;
                const upL_t s = words / 5 + tds;
                ASSERT_EQ(row.product(r, r, s, words, tds, pool), window_of(wrapped, s, words))
                    << row.name << " " << tds;
            }
        }
    }
}

TEST(NttProducts, RippleThroughWordsBelowTheWindow) {
    // (2^(64 i) - 1)^2 has a run of ones in its middle; sums of two such have runs that a carry from below
    // clears.
    const Row rows[] = {row_of<Vt3Transform>(vt3_size_for(2000000)), row_of<N64Transform>({3, 12}),
                        row_of<VstTransform>({10, 1, 10, 216})};
    PushPoolParallelizer pool(2, false, 1);
    std::mt19937_64 random(5);
    for (int i = 0; i < 360; i++) {
        const Row& row = rows[i / 2 % 3];
        const upL_t words = row.words;
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
        ASSERT_EQ(row.product(a, b, s, words, 5, pool), window_of(expected, s, words))
            << row.name << " " << x << " " << y << " " << z << " " << s;
    }
}

// Columns of 2^12 rows belong to products of 2^31 bits: here they are short of columns instead.
TEST(NttTiles, GapsChangeNothing) {
    using namespace kernels;
    for (const Vt3Kernels* set : runnable_sets()) {
        if (set->node_bits != 4) continue;
        SetGuard guard(set);
        Vt3Shape plain{6, 1, 12, 5, 128, (8 << 5) + 8, false, false}, gaps = plain;
        gaps.tile_gap = VT3_TILE_GAP;
        const Vt3Prime& prime = vt3_prime_table(0, set->form, 12);
        const std::size_t used = plain.rows() - 5;
        const Words digits = operand(Pattern::random, plain.rows() * plain.run_bytes() / 8, 128, 5);
        Words pieces(plain.rows() * plain.pieces() * VT3_COLUMNS);
        set->cut(plain, pieces.data(), reinterpret_cast<const unsigned char*>(digits.data()),
                 8 * digits.size(), 0, plain.run_bytes(), used);
        const auto image = [&](const Vt3Shape& shape) {
            Words tile(shape.tile_words()), x(shape.array_words());
            set->enter(shape, prime, pieces.data(), used, tile.data(), x.data(), VT3_COLUMNS);
            return x;
        };
        const Words x = image(plain);
        EXPECT_EQ(image(gaps), x) << set->name;
        Words tile(plain.tile_words()), other(gaps.tile_words());
        set->leave(plain, prime, x.data(), tile.data(), VT3_COLUMNS);
        set->leave(gaps, prime, x.data(), other.data(), VT3_COLUMNS);
        for (std::size_t r = 0; r < plain.rows(); r++)
            ASSERT_TRUE(std::equal(&tile[plain.tile_place(r)], &tile[plain.tile_place(r)] + VT3_COLUMNS,
                                   &other[gaps.tile_place(r)]))
                << set->name << " row " << r;
    }
}

}  // namespace
}  // namespace lumo::testing
