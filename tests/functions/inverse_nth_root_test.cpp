#include "lumo/functions/inverse_nth_root.h"

#include "laboratory.h"
#include "real_number.h"

namespace lumo::testing {
namespace {

template <typename wtype>
class InverseNthRootTest : public WordTest<wtype> {
 protected:
    static double error(const BigFloat<wtype>& x, std::uint32_t n, upL_t p, upL_t tds = 1) {
        const InvNthRootFloat_BigFloatR<wtype> plan(p, tds);
        Bench<wtype> bench(plan, tds);
        bench.quietly(
            [&] { plan.run(bench.ctx, bench.status, bench.T, x, n, p, bench.words, bench.word_count); });
        expect_tidy(bench.T, std::max<upL_t>(p, 3));
        Real expected((p + 8) * testing::W<wtype>);
        mpfr_rootn_ui(expected.value, Real(x).value, n, MPFR_RNDN);
        mpfr_ui_div(expected.value, 1, expected.value, MPFR_RNDN);
        return expected.relative_error(Real(bench.T), p == 0 ? 95 : p * testing::W<wtype>);
    }
    const std::vector<std::uint32_t> degrees = {
        1,    2,     3,       4,          5,          6,          7,          12,        64,
        4095, 65536, 1000001, 0x7fffffff, 0x80000000, 0x80000001, 0xfffffffe, 0xffffffff};
};
TYPED_TEST_SUITE(InverseNthRootTest, WordTypes);

TYPED_TEST(InverseNthRootTest, EveryPrecisionDegreeAndShape) {
    for (upL_t p = 0; p < 700; p = p < 41 ? p + 1 : p + 1 + this->random() % p) {
        for (std::uint32_t n : this->degrees) {
            for (int i = 0; i < (p < 41 ? 8 : 2); i++) {
                const spL_t range = spL_t(1) << (i % 4 * 11);
                const spL_t exp = static_cast<spL_t>(this->random() % (2 * range + 1)) - range;
                const HeldFloat<TypeParam> x(any_words<TypeParam>(this->random, 2 * p + 6), exp);
                ASSERT_LT(this->error(x, n, p, 1 + i % 3), ERROR_BOUND)
                    << "p " << p << " n " << n << " round " << i << " exp " << exp;
            }
        }
    }
    const InvNthRootFloat_BigFloatR<TypeParam> plan(40, 1);
    Bench<TypeParam> bench(plan, 1);
    EXPECT_THROW(plan.run(bench.ctx, bench.status, bench.T, HeldFloat<TypeParam>({3}, 0), 0, 40, bench.words,
                          bench.word_count),
                 ArithmeticException);
}

// Roots next to one: the result is one and a little, where a word of precision is mostly zeros or ones.
TYPED_TEST(InverseNthRootTest, NumbersNextToOneAndExactRoots) {
    for (upL_t p : {1, 2, 3, 4, 5, 8, 9, 10, 11, 24, 60}) {
        for (std::uint32_t n : this->degrees) {
            for (upL_t length = 2; length < p + 6; length++) {
                std::vector<TypeParam> above(length), below(length, this->ONES);
                above.front() = above.back() = 1;
                const auto scale = static_cast<spL_t>(length);
                for (const HeldFloat<TypeParam>& x :
                     {HeldFloat<TypeParam>(above, 1 - scale), HeldFloat<TypeParam>(below, -scale)})
                    ASSERT_LT(this->error(x, n, p), ERROR_BOUND) << p << " n " << n << " words " << length;
            }
            for (spL_t exp : {spL_t(0), spL_t(n) * 3})
                EXPECT_LE(this->error(HeldFloat<TypeParam>({1}, exp), n, p), ERROR_BOUND) << p << " n " << n;
        }
    }
}

}  // namespace
}  // namespace lumo::testing
