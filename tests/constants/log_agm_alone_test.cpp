#include "velmora/constants/plans/log_agm_alone.h"

#include <random>

#include "failures.h"
#include "held_numbers.h"
#include "value_run.h"

namespace velmora::testing {
namespace {

using lumo::testing::HeldFloat;
using lumo::testing::Real;

template <typename wtype>
class LogAgmAlone : public ::testing::Test {
 protected:
    static constexpr lumo::spL_t FAR = lumo::spL_t(1) << 55;

    static ValueRun<wtype> run(const lumo::BigFloat<wtype>& x, upL_t p, upL_t tds) {
        return ValueRun<wtype>(Log_AGM_alone_BigFloatR<wtype>(p, tds), tds, x);
    }
    /// |T - ln x| in units of 2^(-W p).
    static double error(const lumo::BigFloat<wtype>& x, upL_t p, upL_t tds) {
        const ValueRun<wtype> result = run(x, p, tds);
        result.value.check_normalization();
        Exact difference(lumo::WordTraits<wtype>::bits * (p + 8),
                         [&](mpfr_t ln) { mpfr_log(ln, Real(x).value, MPFR_RNDN); });
        mpfr_sub(difference.value, difference.value, Real(result.value).value, MPFR_RNDN);
        mpfr_mul_2ui(difference.value, difference.value, p * lumo::WordTraits<wtype>::bits, MPFR_RNDN);
        return std::fabs(mpfr_get_d(difference.value, MPFR_RNDN));
    }
    HeldFloat<wtype> any(upL_t length, lumo::spL_t top) {
        std::vector<wtype> words(length);
        for (wtype& word : words) word = static_cast<wtype>(random());
        words.back() |= 1;
        return {words, top - static_cast<lumo::spL_t>(length)};
    }
    std::mt19937_64 random{55};
};
TYPED_TEST_SUITE(LogAgmAlone, WordTypes);

TYPED_TEST(LogAgmAlone, ArgumentsOfEverySizeAtAllPrecisions) {
    for (const upL_t p : PRECISIONS) {
        const auto length = static_cast<lumo::spL_t>(p);
        std::vector<TypeParam> above(p + 1);
        above.front() = above.back() = 1;
        const HeldFloat<TypeParam> one({1}, 0), just_above(above, -length),
            just_below(std::vector<TypeParam>(p, static_cast<TypeParam>(-1)), -length);
        std::vector<HeldFloat<TypeParam>> arguments;
        for (const lumo::spL_t top : {-3, 0, 1, 4}) arguments.push_back(this->any(1 + p / 2, top));
        if (p < 1000) {
            for (const lumo::spL_t top : {-this->FAR, lumo::spL_t(-1 << 20), lumo::spL_t(1 << 20), this->FAR})
                arguments.push_back(this->any(p + 3, top));
            for (const auto* x : {&one, &just_above, &just_below})
                EXPECT_LT(this->error(*x, p, 1), 16) << p << " near one";
        }
        for (std::size_t i = 0; i < arguments.size(); ++i)
            EXPECT_LT(this->error(arguments[i], p, 1 + (p + i) % 4), 16) << p << " argument " << i;
    }
}

TYPED_TEST(LogAgmAlone, WordsDoNotDependOnTheDecomposition) {
    const HeldFloat<TypeParam> x = this->any(900, 2);
    const ValueRun<TypeParam> expected = this->run(x, 900, 1);
    for (const upL_t tds : {2, 5, 16}) EXPECT_TRUE(this->run(x, 900, tds).has_words_of(expected)) << tds;
}

TYPED_TEST(LogAgmAlone, Refusals) {
    const Log_AGM_alone_BigFloatR<TypeParam> plan(20, 2);
    lumo::Multiply::ensure_tables(plan.max_product_words() * lumo::WordTraits<TypeParam>::bits);
    lumo::NullStatusNode status;
    const auto refusal = [&](std::vector<TypeParam> words, lumo::spL_t exp, bool positive, upL_t missing) {
        const lumo::testing::Scratch memory(plan.total_bytes() - missing);
        const HeldFloat<TypeParam> x(words, exp, positive);
        return lumo::failure_of([&] { plan.run(memory.context(2), status, x); });
    };
    constexpr lumo::spL_t LIMIT = 0x1ffffffffffffff;
    // The shift is 13 less the exponent.
    EXPECT_EQ(refusal({0}, 0, true, 0), "ArithmeticException Log_AGM_alone_BigFloatR::run(): Log(0)");
    EXPECT_EQ(
        refusal({3}, 0, false, 0),
        "InvalidParametersException Log_AGM_alone_BigFloatR::run(): Log of a negative number is complex.");
    EXPECT_EQ(refusal({3}, 13 - LIMIT, true, 0), "");
    EXPECT_EQ(refusal({3}, 13 + LIMIT, true, 0), "");
    for (const lumo::spL_t exp : {12 - LIMIT, 14 + LIMIT}) {
        try {
            const HeldFloat<TypeParam> x({3}, exp);
            this->run(x, 20, 1);
            ADD_FAILURE() << exp;
        } catch (const lumo::LimitExceededException& e) {
            EXPECT_EQ(e.function, "Log_AGM_alone_BigFloatR::run()");
            EXPECT_EQ(e.limit, upL_t(LIMIT));
            EXPECT_EQ(e.attempted, upL_t(LIMIT) + 1);
        }
    }
    EXPECT_EQ(refusal({3}, 0, true, 128), "BufferTooSmallException");
}

TEST(LogAgmAloneFaults, AFlippedBitEndsTheComputation) {
    const HeldFloat<std::uint64_t> held({10}, 0);
    const lumo::BigFloat<std::uint64_t> ten = held;
    const Log_AGM_alone_BigFloatR<std::uint64_t> plan(3000, 1);
    expect_faults_are_caught([&](auto* fault) { ValueRun<std::uint64_t>(plan, 1, ten, fault); });
    lumo::SeriesObserver<std::uint64_t>* const none = nullptr;
    expect_faults_are_caught([&](auto* fault) {
        ValueRun<std::uint64_t>(plan, 1, ten, none, static_cast<lumo::SeriesObserver<std::uint64_t>*>(fault));
    });
}

}  // namespace
}  // namespace velmora::testing
