// What the iterations for reciprocals and roots have in common: errors, refusals, faults that are noticed.
#include "laboratory.h"
#include "lumo/foundation/parallel/spawn.h"
#include "lumo/functions/inverse_nth_root.h"
#include "lumo/functions/inverse_sqrt.h"

namespace lumo::testing {
namespace {

/// x^(-1/n): how to run its plan, and the error of a result as A / B - 1 of two integers.
template <typename wtype_, template <typename> class Plan_, int n_>
struct Function {
    using wtype = wtype_;
    using Plan = Plan_<wtype>;
    static constexpr int n = n_;

    static void run(const Plan& plan, Bench<wtype>& bench, const BigFloat<wtype>& x, upL_t p) {
        if constexpr (std::is_same_v<Plan, InvNthRootFloat_BigFloatR<wtype>>)
            plan.run(bench.ctx, bench.status, bench.T, x, n, p, bench.words, bench.word_count);
        else if constexpr (std::is_same_v<Plan, InvsqrtWord_BigFloatR<wtype>>)
            plan.run(bench.ctx, bench.status, bench.T, x.word_at(x.exp), p, bench.words, bench.word_count);
        else
            plan.run(bench.ctx, bench.status, bench.T, x, p, bench.words, bench.word_count);
    }
    static double error(const BigFloat<wtype>& T, const BigFloat<wtype>& x, upL_t p) {
        mpz_class power;
        mpz_pow_ui(power.get_mpz_t(), mantissa(T).get_mpz_t(), n);
        return relative_error<wtype>(power * mantissa(x), W<wtype> * (n * T.exp + x.exp), 1,
                                     promised_words<wtype>(p)) /
               n;
    }
};
template <typename wtype>
using Reciprocal = Function<wtype, Reciprocal_BigFloatR, 1>;
template <typename wtype>
using InvsqrtFloat = Function<wtype, InvsqrtFloat_BigFloatR, 2>;
template <typename wtype>
using InvsqrtWord = Function<wtype, InvsqrtWord_BigFloatR, 2>;
template <typename wtype>
using Root6 = Function<wtype, InvNthRootFloat_BigFloatR, 6>;
template <typename wtype>
using Root7 = Function<wtype, InvNthRootFloat_BigFloatR, 7>;

template <typename F>
class Newton : public ::testing::Test {
 protected:
    using Word = typename F::wtype;
    using Plan = typename F::Plan;
    static constexpr bool of_word = std::is_same_v<F, InvsqrtWord<Word>>;

    static double error(const BigFloat<Word>& x, upL_t p, upL_t planned_p, upL_t tds = 1) {
        const Plan plan(planned_p, tds);
        Bench<Word> bench(plan, tds);
        bench.quietly([&] { F::run(plan, bench, x, p); });
        expect_tidy(bench.T, std::max<upL_t>(p, 3));
        return F::error(bench.T, x, p);
    }
    HeldFloat<Word> any(upL_t p, bool negative) {
        if (of_word) return {any_words<Word>(random, 1), 0};
        const spL_t range = F::n > 2 ? 1 << 20 : spL_t(1) << 39;
        const spL_t exp = random() % 3 ? static_cast<spL_t>(random() % (2 * range)) - range : 0;
        return {any_words<Word>(random, 2 * p + 6), exp, !(negative && F::n == 1)};
    }
    std::mt19937_64 random{12};
};
using Functions =
    ::testing::Types<Reciprocal<std::uint32_t>, Reciprocal<std::uint64_t>, InvsqrtFloat<std::uint32_t>,
                     InvsqrtFloat<std::uint64_t>, InvsqrtWord<std::uint32_t>, InvsqrtWord<std::uint64_t>,
                     Root6<std::uint32_t>, Root6<std::uint64_t>, Root7<std::uint32_t>, Root7<std::uint64_t>>;
TYPED_TEST_SUITE(Newton, Functions);

TYPED_TEST(Newton, EveryPrecisionAndShape) {
    for (upL_t p = 0; p < 1500; p = p < 45 ? p + 1 : p + 1 + this->random() % p) {
        for (int i = 0; i < (p < 45 ? 60 : 12); i++) {
            const auto x = this->any(p, i % 2);
            ASSERT_LT(this->error(x, p, p + i % 3, 1 + i % 7), ERROR_BOUND) << "p " << p << " round " << i;
        }
    }
}

// Next to a power of the base the approximations are exact or the distance has runs of zeros and ones.
TYPED_TEST(Newton, PowersOfTheBaseAndTheirNeighbours) {
    using wtype = typename TypeParam::wtype;
    const double exact = TypeParam::n == 1 ? 0 : TypeParam::n == 2 ? 2 : ERROR_BOUND;
    for (upL_t p : {1, 2, 3, 5, 9, 10, 11, 24, 40, 200}) {
        const HeldFloat<wtype> one({1}, 0), power({1}, 7 * TypeParam::n);
        EXPECT_LE(this->error(one, p, p), exact) << p;
        if (this->of_word) continue;
        EXPECT_LE(this->error(power, p, p), exact) << p;
        for (upL_t length = 2; length < 2 * p + 6; length++) {
            std::vector<wtype> above(length), below(length, static_cast<wtype>(-1)), zero_inside(below);
            above.front() = above.back() = 1;
            zero_inside[length / 2] = 0;
            const auto e = static_cast<spL_t>(length);
            for (const HeldFloat<wtype>& x :
                 {HeldFloat<wtype>(above, -3), HeldFloat<wtype>(below, 1), HeldFloat<wtype>(zero_inside, -2),
                  HeldFloat<wtype>(above, 1 - e), HeldFloat<wtype>(below, -e)})
                ASSERT_LT(this->error(x, p, p), ERROR_BOUND) << "p " << p << " length " << length;
        }
    }
}

TYPED_TEST(Newton, PiecesDoNotChangeTheResult) {
    using wtype = typename TypeParam::wtype;
    const upL_t p = 3000;
    const HeldFloat<wtype> x(shaped_words<wtype>(Shape::random, this->of_word ? 1 : p, this->random), 0);
    const typename TypeParam::Plan plan(p, 7);
    Bench<wtype> one(plan, 1);
    TypeParam::run(plan, one, x, p);
    SpawnParallelizer threads(4);
    for (upL_t tds = 2; tds <= 7; tds++) {
        Bench<wtype> bench(plan, tds, threads);
        TypeParam::run(plan, bench, x, p);
        EXPECT_EQ(BigFloat<wtype>::cmp(bench.T, one.T), 0) << "tds " << tds;
    }
}

TYPED_TEST(Newton, Refusals) {
    using wtype = typename TypeParam::wtype;
    const typename TypeParam::Plan plan(40, 2);
    const HeldFloat<wtype> x({3}, 0), zero({0}, 0), negative({3}, 0, false);
    Bench<wtype> bench(plan, 2);
    const auto message = [&](const BigFloat<wtype>& number, upL_t p) {
        return message_of([&] { TypeParam::run(plan, bench, number, p); });
    };
    EXPECT_EQ(message(zero, 40), "Divide by zero.");
    if (TypeParam::n > 1 && !this->of_word) {
        EXPECT_EQ(message(negative, 40),
                  TypeParam::n == 2 ? "Square root of negative number." : "Nth root of negative number.");
    }
    EXPECT_TRUE(bench.status.tags.empty()) << "refused before the first product";
    EXPECT_EQ(message(x, 41), "p is larger than plan.");
    bench.ctx.tds = 3;
    EXPECT_EQ(message(x, 40), "tds is larger than plan.");
    bench.ctx.tds = 2;
    bench.word_count = 30;
    EXPECT_THROW(TypeParam::run(plan, bench, x, 40), BufferTooSmallException);
    bench.word_count = plan.word_scratch;
    bench.ctx.scratch_bytes = 128;
    EXPECT_THROW(TypeParam::run(plan, bench, x, 40), BufferTooSmallException);
    bench.ctx.scratch_bytes = plan.byte_scratch;
    bench.T.capacity = 42;
    EXPECT_THROW(TypeParam::run(plan, bench, x, 40), BufferTooSmallException);
}

// A bit that flips in R between the levels shows in the product's words above the error that R may have. (For
// odd n the root R is its own target: there the power is damaged, which stands in T.)
TYPED_TEST(Newton, NoticesAFlippedBit) {
    using wtype = typename TypeParam::wtype;
    const upL_t p = 400;
    const HeldFloat<wtype> x(shaped_words<wtype>(Shape::random, this->of_word ? 1 : p + 2, this->random), 0);
    const typename TypeParam::Plan plan(p, 1);
    constexpr bool in_power = TypeParam::n > 2;
    const std::string first = in_power ? " 1M " : TypeParam::n == 1 ? " 0M " : " 0S ";
    const auto run = [&](const std::function<void(Bench<wtype>&)>& at_level) {
        Bench<wtype> bench(plan, 1);
        bench.status.at_step = [&](const std::string& tag) {
            if (tag == first) at_level(bench);
        };
        TypeParam::run(plan, bench, x, p);
    };
    int levels = 0;
    run([&](Bench<wtype>&) { levels++; });
    ASSERT_GT(levels, 3);
    for (upL_t word = 20; word < p / 2 - 5; word += 17) {
        int level = 0;
        const auto damage = [&](Bench<wtype>& bench) {
            wtype& victim = in_power ? bench.T.T[p / 2 + word - 10] : bench.words[word];
            if (++level == levels) victim ^= wtype(1) << word % W<wtype>;
        };
        EXPECT_THROW(run(damage), AlgorithmFailedException) << "word " << word;
    }
}

}  // namespace
}  // namespace lumo::testing
