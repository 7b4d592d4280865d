// Conversion of binary fractions to words of a radix, against GMP.
#include "lumo/radix/direct_convert.h"

#include <gmock/gmock.h>

#include <cmath>

#include "death_output.h"
#include "failures.h"
#include "kernel_sets.h"
#include "lumo/foundation/parallel/pushpool.h"
#include "lumo/radix/to_string_dec.h"
#include "radix_oracle.h"
#include "real_number.h"

namespace lumo {
namespace {

using namespace testing;

template <typename wtype>
std::vector<wtype> convert(const ConvertPlanP<wtype>& plan, const BigFloat<wtype>& value, upL_t n,
                           const ParallelContext& parallel = {}, ConversionProbe<wtype>* probe = nullptr) {
    Multiply::ensure_tables(plan.product_words * WordTraits<wtype>::bits);
    const Scratch scratch(plan.total_bytes);
    NullStatusNode status;
    std::vector<wtype> out(n);
    DirectConvertB<wtype>::run(plan, status, out.data(), n, value,
                               scratch.context(parallel.tds, *parallel.parallelizer), probe);
    EXPECT_TRUE(scratch.intact());
    return out;
}

/// Every word is below the radix, and the whole differs from the exact floor by one at most.
template <typename wtype>
void expect_close(const ConvertPlanP<wtype>& plan, const mpz_class& scaled, upL_t m, upL_t n) {
    const auto out = convert(plan, test_value<wtype>(scaled, m), n);
    for (wtype word : out) ASSERT_LT(word, plan.radix);
    const mpz_class R = to_mpz(&plan.radix, 1);
    const mpz_class difference = from_radix(out.data(), n, R) - expected_integer<wtype>(scaled, m, R, n);
    ASSERT_LE(abs(difference), 1) << "radix " << R << ", " << n << " words, difference "
                                  << difference.get_str().substr(0, 40);
}

template <typename wtype>
class DirectConvert : public WordTest<wtype> {
 protected:
    static ConvertPlanP<wtype> plan_for(wtype R, upL_t words) {
        return {R, static_cast<upL_t>(words * WordTraits<wtype>::bits / std::log2(double(R))), 1};
    }
};
TYPED_TEST_SUITE(DirectConvert, WordTypes);

TYPED_TEST(DirectConvert, IsExactAroundEveryThreshold) {
    using wtype = TypeParam;
    std::vector<wtype> radixes{3, 6, 10, 255, 640, 1000000000, this->ONES, static_cast<wtype>(-2)};
    if (sizeof(wtype) == 8) radixes.push_back(static_cast<wtype>(10000000000000000000u));
    // Where short products are made by vectors, the lower rows are others.
    for_kernel_sets([&](KernelSet) {
        for (wtype R : radixes) {
            const auto plan = this->plan_for(R, 1500);
            std::vector<upL_t> lengths{1, 2, 3, 4, 5, 14, 15, 16, 17, plan.length - 1, plan.length};
            ASSERT_GE(plan.rows.size(), 4u);
            for (const auto& row : plan.rows)
                for (upL_t more : {0, 1, 2, 16, 17}) lengths.push_back(row.split - 1 + more);
            for (upL_t n : lengths)
                // With an integer part and more words than the digits need, then with fewer.
                for (upL_t m : {plan.fraction_words(n) + 7, plan.fraction_words(n) / 2 + 1}) {
                    expect_close(plan, random_scaled<wtype>(m + 1, this->random), m, n);
                    if (this->HasFatalFailure()) return;
                }
        }
    });
}

TYPED_TEST(DirectConvert, CarriesThroughLongRunsOfExtremeWords) {
    using wtype = TypeParam;
    for (wtype R : {wtype(10), wtype(1000000000), this->ONES}) {
        const auto plan = this->plan_for(R, 1000);
        const upL_t n = plan.length;
        const upL_t m = plan.fraction_words(n);
        const mpz_class one = unit<wtype>(spL_t(m));
        for (upL_t j : {upL_t(0), upL_t(1), upL_t(2), n / 3, n / 2, plan.rows.back().split, n - 20}) {
            // k / R^j cut off in binary: nines or zeros from word j to the end and beyond.
            const mpz_class denominator = power(to_mpz(&R, 1), j);
            const mpz_class any = random_scaled<wtype>(2 + j, this->random) % denominator;
            for (const mpz_class& k : {any, mpz_class(denominator - 1)})
                for (int tiny = -1; tiny <= 1; tiny++) {
                    const mpz_class near = k * one / denominator + tiny;
                    expect_close(plan, near < 0 ? mpz_class(one - 1) : near, m, n);
                    if (this->HasFatalFailure()) return;
                }
        }
    }
}

TYPED_TEST(DirectConvert, TerminatingFractionsComeOutExactly) {
    using wtype = TypeParam;
    const wtype R = 1000000000;
    const ConvertPlanP<wtype> plan(R, 2000, 1);
    std::vector<wtype> expected(2000, 0);
    EXPECT_EQ(convert(plan, BigFloat<wtype>(), 2000), expected);
    expected.back() = 250000000;
    EXPECT_EQ(convert(plan, test_value<wtype>(mpz_class(1) << (this->W - 2), 1), 2000), expected);
    // All ones: the largest fraction there is stays below 1.
    const upL_t m = plan.fraction_words(2000) + 2;
    EXPECT_EQ(convert(plan, test_value<wtype>(unit<wtype>(spL_t(m)) - 1, m), 2000),
              std::vector<wtype>(2000, R - 1));
}

TYPED_TEST(DirectConvert, CutsBitsForPowersOfTwo) {
    using wtype = TypeParam;
    for (unsigned t = 1; t < this->W; t++) {
        const wtype R = wtype(1) << t;
        const upL_t n = 40 + t;
        const ConvertPlanP<wtype> plan(R, n, 1);
        EXPECT_TRUE(plan.rows.empty());
        for (upL_t m : {plan.fraction_words(n), upL_t(3)}) {
            const mpz_class scaled = random_scaled<wtype>(m + 1, this->random), radix = to_mpz(&R, 1);
            const auto out = convert(plan, test_value<wtype>(scaled, m), n);
            EXPECT_EQ(from_radix(out.data(), n, radix), expected_integer<wtype>(scaled, m, radix, n)) << t;
        }
    }
}

TYPED_TEST(DirectConvert, DigitsDoNotDependOnTheDecomposition) {
    using wtype = TypeParam;
    const wtype R = static_cast<wtype>(sizeof(wtype) == 8 ? 10000000000000000000u : 1000000000u);
    const upL_t n = 30000;
    const auto pool = make_pushpool(3);
    const ConvertPlanP<wtype> serial(R, n, 1);
    const upL_t m = serial.fraction_words(n);
    const auto value = test_value<wtype>(random_scaled<wtype>(m, this->random), m);
    const auto expected = convert(serial, value, n);
    for (upL_t tds : {2, 3, 16, 100}) {
        const ConvertPlanP<wtype> plan(R, n, tds);
        EXPECT_EQ(convert(plan, value, n, {tds, pool.get()}), expected) << tds;
        EXPECT_EQ(convert(plan, value, n), expected) << tds;
    }
}

TYPED_TEST(DirectConvert, ShowsNumbersInDecimal) {
    using wtype = TypeParam;
    const HeldFloat<wtype> one({1}, 0), many({999999999}, 0), minus({125}, 0, false);
    EXPECT_EQ(to_string_dec(BigFloat<wtype>(), 5), "0");
    EXPECT_EQ(to_string_dec(one, 1), "1");
    EXPECT_EQ(to_string_dec(many, 9), "999999999");
    EXPECT_EQ(to_string_dec(many, 8), "1 *10^ 9");
    EXPECT_EQ(to_string_dec(minus, 3), "-125");
    EXPECT_EQ(to_string_dec(minus, 2), "-1.3 *10^ 2");
    // The first estimate of their exponent may be one too small.
    for (upL_t k = 2; k < 300; k++)
        EXPECT_EQ(to_string_dec(test_value<wtype>(power(10, k), 0), 2), "1 *10^ " + std::to_string(k));
    for (upL_t digits : {1, 10, 1000})
        for (spL_t exp : {-100000, -1000, -3, -1, 0, 1, 2, 700, 1234567}) {
            auto words = shaped_words<wtype>(Shape::random, 1 + this->random() % 40, this->random);
            words.back() |= 1;
            const HeldFloat<wtype> x(words, exp);
            mpfr_exp_t point;
            char* const expected =
                mpfr_get_str(nullptr, &point, 10, digits, Real(x.cut(99)).value, MPFR_RNDN);
            std::string text = to_string_dec(x, digits);
            const upL_t scale = text.find(" *10^ ");
            if (scale != std::string::npos) {
                EXPECT_EQ(std::stol(text.substr(scale + 6)), point - 1);
                text.resize(scale);
            } else if (text.find('.') != std::string::npos) {
                EXPECT_EQ(text.find('.'), upL_t(point));
            } else {
                EXPECT_EQ(text.size(), upL_t(point));
            }
            std::erase(text, '.');
            text.resize(digits, '0');
            EXPECT_EQ(text, expected) << digits << " digits, exponent " << exp;
            mpfr_free_str(expected);
        }
}

TEST(DirectConvertRefusals, RadixAndLength) {
    using Plan = ConvertPlanP<std::uint64_t>;
    for (std::uint64_t R : {0, 1})
        EXPECT_EQ(refusal([&] { Plan::check_Psize(R, 100, 1); }),
                  "ConvertPlanP::check_Psize() Invalid radix.");
    EXPECT_EQ(Plan::check_Psize(1 << 20, 100000, 4), 0u);
    EXPECT_GT(Plan::check_Psize(10, 100000, 4), 0u);
    const Plan plan(10, 100, 1);
    EXPECT_DEATH(dying([&] { convert(plan, BigFloat<std::uint64_t>(), 101); }),
                 "Input size is too large for conversion plan.");
}

/// Damages one bit of what passes a chosen point, the n-th time.
struct FlippingProbe final : ConversionProbe<std::uint64_t> {
    enum class Point { power, highest, overlap } point;
    upL_t countdown;
    FlippingProbe(Point p, upL_t n) : point(p), countdown(n) {}

    void power(upL_t, std::uint64_t* words, upL_t L) override {
        if (point == Point::power && countdown-- == 0) words[L / 2] ^= 4096;
    }
    void converted(std::uint64_t* out, upL_t L, std::uint64_t& overlap) override {
        if (point == Point::power || countdown-- != 0) return;
        (point == Point::highest ? out[L - 1] : overlap) ^= 4096;
    }
};

TEST(DirectConvertFaults, AreCaught) {
    using Point = FlippingProbe::Point;
    std::mt19937_64 random(5);
    const upL_t n = 3000;
    const ConvertPlanP<std::uint64_t> plan(10000000000000000000u, n, 1);
    const upL_t m = plan.fraction_words(n);
    const auto value = test_value<std::uint64_t>(random_scaled<std::uint64_t>(m, random), m);
    const auto failure = [&](Point point, upL_t index) {
        FlippingProbe probe(point, index);
        return message_of([&] { convert(plan, value, n, {}, &probe); });
    };
    for (upL_t row = 0; row < plan.rows.size(); row++)
        EXPECT_EQ(failure(Point::power, row), "Power Hash Mismatch") << row;
    // Leaves come from the low end up: the first has nothing below it to check its overlap word, the last
    // nothing above it to check its top word.
    const upL_t leaves = upL_t(1) << plan.rows.size();
    const auto mismatch = ::testing::AllOf(::testing::StartsWith("Overlap Mismatch:\n     RL = "),
                                           ::testing::HasSubstr("\n     Expected = "),
                                           ::testing::HasSubstr("\n     Actual   = "));
    for (upL_t leaf : {upL_t(1), leaves / 2, leaves - 1})
        EXPECT_THAT(failure(Point::overlap, leaf), mismatch) << leaf;
    for (upL_t leaf : {upL_t(0), leaves / 2, leaves - 2})
        EXPECT_THAT(failure(Point::highest, leaf), mismatch) << leaf;
}

}  // namespace
}  // namespace lumo
