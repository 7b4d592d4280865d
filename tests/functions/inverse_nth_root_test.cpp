#include "lumo/functions/inverse_nth_root.h"

#include "laboratory.h"
#include "real_number.h"

namespace lumo::testing {
namespace {

template <typename wtype>
class InverseNthRootTest : public ::testing::Test {
 protected:
    using Plan = InvNthRootFloat_BigFloatR<wtype>;
    InverseNthRootTest() { prepare_products(); }

    static double error(const BigFloat<wtype>& x, std::uint32_t n, upL_t p, upL_t tds = 1) {
        const Plan plan(p, tds);
        Bench<wtype> bench(plan, tds);
        bench.quietly(
            [&] { plan.run(bench.ctx, bench.status, bench.T, x, n, p, bench.words, bench.word_count); });
        expect_tidy(bench.T, std::max<upL_t>(p, 3));
        Real expected((p + 8) * W<wtype>);
        mpfr_rootn_ui(expected.value, Real(x).value, n, MPFR_RNDN);
        mpfr_ui_div(expected.value, 1, expected.value, MPFR_RNDN);
        return expected.relative_error(Real(bench.T), p == 0 ? 95 : p * W<wtype>);
    }
    std::mt19937_64 random{21};
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
                Owned<TypeParam> x(any_words<TypeParam>(this->random, 2 * p + 6), exp);
                ASSERT_LT(this->error(x.number, n, p, 1 + i % 3), ERROR_BOUND)
                    << "p " << p << " n " << n << " round " << i << " exp " << exp;
            }
        }
    }
}

// Roots next to one: the result is one and a little, where a word of precision is mostly zeros or ones.
TYPED_TEST(InverseNthRootTest, NumbersNextToOneAndExactRoots) {
    for (upL_t p : {1, 2, 3, 4, 5, 8, 9, 10, 11, 24, 60}) {
        for (std::uint32_t n : this->degrees) {
            for (upL_t length = 2; length < p + 6; length++) {
                std::vector<TypeParam> above(length), below(length, static_cast<TypeParam>(-1));
                above.front() = above.back() = 1;
                const auto scale = static_cast<spL_t>(length);
                Owned<TypeParam> a(above, 1 - scale), b(below, -scale);
                ASSERT_LT(this->error(a.number, n, p), ERROR_BOUND) << p << " n " << n << " words " << length;
                ASSERT_LT(this->error(b.number, n, p), ERROR_BOUND) << p << " n " << n << " words " << length;
            }
            Owned<TypeParam> one({1}, 0), power({1}, spL_t(n) * 3);
            EXPECT_LE(this->error(one.number, n, p), ERROR_BOUND) << p << " n " << n;
            EXPECT_LE(this->error(power.number, n, p), ERROR_BOUND) << p << " n " << n;
        }
    }
}

TYPED_TEST(InverseNthRootTest, Refusals) {
    const InvNthRootFloat_BigFloatR<TypeParam> plan(40, 1);
    Bench<TypeParam> bench(plan, 1);
    Owned<TypeParam> zero({0}, 0), negative({3}, 0, false), x({3}, 0);
    const auto message = [&](const BigFloat<TypeParam>& number, std::uint32_t n, upL_t p) -> std::string {
        try {
            plan.run(bench.ctx, bench.status, bench.T, number, n, p, bench.words, bench.word_count);
        } catch (const StringException& e) {
            return e.message;
        }
        return "none";
    };
    for (std::uint32_t n : {2, 3}) {
        EXPECT_EQ(message(zero.number, n, 40), "Divide by zero.");
        EXPECT_EQ(message(negative.number, n, 40), "Nth root of negative number.");
    }
    EXPECT_EQ(message(x.number, 0, 40), "Divide by zero.");
    EXPECT_EQ(message(x.number, 2, 41), "p is larger than plan.");
    EXPECT_TRUE(bench.status.tags.empty());
}

// The power stands in the storage of T before it is multiplied by x. (A word of R damaged above those that
// are compared stays unseen for odd n, where R is its own target.)
TYPED_TEST(InverseNthRootTest, NoticesAFlippedBit) {
    const upL_t p = 400;
    const InvNthRootFloat_BigFloatR<TypeParam> plan(p, 1);
    Owned<TypeParam> x(shaped_words<TypeParam>(Shape::random, p + 2, this->random), 0);
    for (std::uint32_t n : {6, 7}) {
        const auto run = [&](const std::function<void(Bench<TypeParam>&)>& at_product) {
            Bench<TypeParam> bench(plan, 1);
            bench.status.at_step = [&](const std::string& tag) {
                if (tag == " 1M ") at_product(bench);
            };
            plan.run(bench.ctx, bench.status, bench.T, x.number, n, p, bench.words, bench.word_count);
        };
        int levels = 0;
        run([&](Bench<TypeParam>&) { levels++; });
        ASSERT_GT(levels, 3);
        for (upL_t index = p / 2 + 10; index < p; index += 17) {
            int level = 0;
            const auto damage = [&](Bench<TypeParam>& bench) {
                if (++level == levels) bench.T.T[index] ^= TypeParam(1) << index % W<TypeParam>;
            };
            EXPECT_THROW(run(damage), AlgorithmFailedException) << "n " << n << " word " << index;
        }
    }
}

}  // namespace
}  // namespace lumo::testing
