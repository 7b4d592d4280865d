// What every algorithm of the tables promises: exact products within the sizes it asks for, and transforms
// that multiply modulo 2^(W C) - 1 or + 1.
#include "lumo/foundation/parallel/pushpool.h"
#include "lumo/multiply/algorithm_registry.h"
#include "lumo/multiply/multiply.h"
#include "lumo/multiply/ntt/vt3/vt3_sizes.h"
#include "products.h"

namespace lumo::testing {
namespace {

template <typename wtype>
struct Case {
    const BasicAlgorithm<wtype>& algorithm;
    upL_t AL, BL;
    int ring_sign;  ///< of the 1 in the modulus
};

/// From one word to beyond the limits of rows; bits are those of the whole product.
template <typename wtype>
std::vector<Case<wtype>> cases() {
    constexpr upL_t W = WordTraits<wtype>::bits;
    std::vector<Case<wtype>> list;
    const auto add = [&](const char* tag, int sign, std::initializer_list<std::pair<upL_t, upL_t>> lengths) {
        for (auto [AL, BL] : lengths)
            list.push_back({*find_algorithm(tag)->template basic<wtype>(), AL, BL, sign});
    };
    add("BKT", -1, {{1, 1}, {2, 1}, {30, 30}, {17, 16}, {78, 78}, {155, 1}, {131, 25}, {512, 512}});
    for (upL_t n : {2048 / W, 2560 / W, 77ul, 6400 / W, 9216 / W, 65536 / W + 1, 320000 / W, 1474560 / W})
        add("FFT", 1, {{1, n - 1}, {n - 3, 3}, {n / 2, n - n / 2}, {n / 4, n - n / 4}});
    const upL_t limit = vt3_size_for(1500000).bits() / W;
    for (upL_t n : {1474592 / W, limit - 1, limit, limit + 1, 2600032 / W})
        add("VT3", -1, {{n / 2 + 777, n - n / 2 - 777}});
    for (upL_t bits : {16384, 16448, 49152, 60032, 81920, 114688, 131072, 1474560})
        add("N64", -1, {{1, bits / W - 1}, {bits / W / 3, bits / W - bits / W / 3}});
    for (const char* tag : {"VST", "C17"})
        for (upL_t bits : {256, 61440, 1474592, 2600032})
            add(tag, -1, {{1, bits / W - 1}, {bits / W / 3, bits / W - bits / W / 3}});
    return list;
}

template <typename wtype>
class Algorithms : public WordTest<wtype> {
 protected:
    static void SetUpTestSuite() {  // once for all lengths
        Multiply::ensure_tables(5500000);
        find_algorithm("FFT")->basic64->ensure_tables(3000000 / 64);
    }
    std::vector<wtype> operand(int round, upL_t L) {
        return shaped_words<wtype>(ALL_SHAPES[round % 5], L, this->random);
    }
    PushPoolParallelizer pool{2, false, 1};
};
TYPED_TEST_SUITE(Algorithms, WordTypes);

TYPED_TEST(Algorithms, ProductsAreExactWithinTheSizesAskedFor) {
    using wtype = TypeParam;
    for (const Case<wtype>& c : cases<wtype>()) {
        const auto& algorithm = c.algorithm;
        const upL_t AL = c.AL, BL = c.BL, n = AL + BL, longest = std::max(n, 2 * AL);
        const bool large = n > 20000;
        algorithm.ensure_tables(longest);
        for (int round = 0; round < (large ? 2 : 25); round++) {
            SCOPED_TRACE(::testing::Message()
                         << algorithm.tag << " " << AL << " x " << BL << " round " << round);
            const auto a = this->operand(round, AL), b = this->operand(round / 5, BL);
            const upL_t tds = 1 + upL_t(round) % 3;
            BufferSizes sizes;
            const Scratch full(algorithm.max_buffer_sizes(sizes, longest, tds)),
                least(algorithm.max_buffer_size(longest, tds));
            EXPECT_EQ(sizes.total(), full.buffer().size());
            const upL_t s = this->random() % n, L = s + this->random() % (n - s + 1);
            const mpz_class product = product_of(a, b), square = product_of(a, a);
            for (const Scratch* scratch : {&full, &least}) {
                const MultiplyContext ctx = scratch->context(tds, this->pool);
                std::vector<wtype> t(longest), window(L - s);
                algorithm.mul(ctx, t.data(), a.data(), AL, b.data(), BL);
                ASSERT_EQ(to_mpz(t.data(), n), product);
                algorithm.mul_partial(ctx, window.data(), s, L, a.data(), AL, b.data(), BL);
                ASSERT_EQ(to_mpz(window.data(), L - s), window_of<wtype>(product, s, L));
                algorithm.mul_small(ctx, window.data(), s, L, b.data(), BL, a.data(), AL);
                ASSERT_EQ(to_mpz(window.data(), L - s), window_of<wtype>(product, s, L));
                algorithm.sqr(ctx, t.data(), a.data(), AL);
                ASSERT_EQ(to_mpz(t.data(), 2 * AL), square);
                if (L <= 2 * AL) {
                    algorithm.sqr_partial(ctx, window.data(), s, L, a.data(), AL);
                    ASSERT_EQ(to_mpz(window.data(), L - s), window_of<wtype>(square, s, L));
                }
                ASSERT_TRUE(scratch->intact());
            }
        }
    }
}

TYPED_TEST(Algorithms, TransformsMultiplyInTheirRings) {
    using wtype = TypeParam;
    for (const Case<wtype>& c : cases<wtype>()) {
        TransformHolder<wtype> transform, same, longer;
        const auto& algorithm = c.algorithm;
        algorithm.ensure_tables(c.AL + c.BL);
        algorithm.params(transform, c.AL + c.BL, 1);
        algorithm.params(same, transform->words(), 4);
        const upL_t C = transform->words();
        EXPECT_GE(C, c.AL + c.BL);
        EXPECT_TRUE(transform->same_transform(*same));
        const Scratch memory(transform->scratch_bytes()), f(transform->array_bytes()),
            g(transform->array_bytes()), out(transform->array_bytes());
        const MultiplyContext ctx = memory.context();
        const mpz_class modulus = (mpz_class(1) << transform->length_bits()) + c.ring_sign;
        // Operands that fit, and some as long as the ring.
        for (auto [AL, BL] : {std::pair<upL_t, upL_t>{c.AL, c.BL}, {C, C}, {C, C / 3 + 1}, {C, 0}})
            for (int round = 0; round < (C > 5000 ? 1 : 10); round++) {
                SCOPED_TRACE(::testing::Message() << algorithm.tag << " " << C << ": " << AL << " x " << BL);
                const auto a = this->operand(round, AL), b = this->operand(round / 2, BL);
                const mpz_class product = product_of(a, b);
                std::vector<wtype> t(C), window(C - C / 4 - C / 3);
                const auto expect = [&](const mpz_class& exact) {
                    ASSERT_EQ(mpz_class(to_mpz(t.data(), C) - exact) % modulus, 0);
                    ASSERT_TRUE(mpz_sizeinbase(exact.get_mpz_t(), 2) > transform->length_bits() ||
                                to_mpz(t.data(), C) == exact);
                };
                transform->forward(ctx, a.data(), AL, f.data());
                transform->forward(ctx, b.data(), BL, g.data());
                transform->inverse_fmul(ctx, t.data(), 0, C, out.data(), f.data(), g.data());
                expect(product);
                const auto whole = t;
                transform->inverse_fmul(ctx, window.data(), C / 3, C - C / 4, out.data(), f.data(), g.data());
                ASSERT_TRUE(std::equal(window.begin(), window.end(), t.begin() + long(C / 3)));
                transform->inverse_fmul(ctx, t.data(), 0, C, g.data(), f.data(), g.data());
                ASSERT_EQ(t, whole);
                transform->inverse_fsqr(ctx, t.data(), 0, C, out.data(), f.data());
                expect(product_of(a, a));
                transform->inverse_fsqr(ctx, t.data(), 0, C, f.data(), f.data());
                expect(product_of(a, a));
                ASSERT_TRUE(memory.intact() && f.intact() && g.intact() && out.intact());
            }
        const std::vector<wtype> too_long(C + 1, 1);
        EXPECT_EQ(refusal([&] { transform->forward(ctx, too_long.data(), C + 1, f.data()); }),
                  algorithm.tag + std::string(" Convolution length is too small."));
        algorithm.ensure_tables(C + 1);
        algorithm.params(longer, C + 1, 1);
        EXPECT_FALSE(transform->same_transform(*longer));
    }
}

TYPED_TEST(Algorithms, TooLittleScratchIsAnError) {
    using wtype = TypeParam;
    for (const Case<wtype>& c : cases<wtype>()) {
        if (std::string(c.algorithm.tag) == "BKT") continue;  // short products need none
        const auto a = this->operand(0, c.AL), b = this->operand(0, c.BL);
        std::vector<wtype> t(c.AL + c.BL);
        const Scratch scratch(c.algorithm.max_buffer_size(t.size(), 1) / 512 * 128);
        EXPECT_THROW(c.algorithm.mul(scratch.context(), t.data(), a.data(), c.AL, b.data(), c.BL),
                     BufferTooSmallException)
            << c.algorithm.tag << " " << c.AL << " x " << c.BL;
    }
}

}  // namespace
}  // namespace lumo::testing
