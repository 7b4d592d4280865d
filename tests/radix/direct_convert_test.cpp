// Conversion of binary fractions to words of a radix, against GMP.
#include <gtest/gtest.h>

#include "death_output.h"
#include "lumo/foundation/errors/exceptions.h"
#include "lumo/foundation/parallel/pushpool.h"
#include "lumo/radix/direct_convert.h"
#include "radix_oracle.h"

namespace lumo {
namespace {

using namespace test;

template <typename wtype>
std::vector<wtype> convert(const ConvertPlanP<wtype>& plan, const BigFloat<wtype>& value, upL_t n,
                           const ParallelContext& parallel = {}, ConversionProbe<wtype>* probe = nullptr) {
    Multiply::ensure_tables(plan.product_words * W<wtype>);
    GuardedScratch scratch(plan.total_bytes);
    MultiplyContext ctx = MultiplyContext{parallel.tds, parallel.parallelizer}.with_scratch(scratch.buffer());
    NullStatusNode status;
    std::vector<wtype> out(n);
    DirectConvertB<wtype>::run(plan, status, out.data(), n, value, ctx, probe);
    EXPECT_TRUE(scratch.intact());
    return out;
}

/// Every word is below the radix, and the whole differs from the exact floor by one at most.
template <typename wtype>
void expect_close(const std::vector<wtype>& out, const mpz_class& scaled, upL_t m, wtype R) {
    for (wtype word : out) ASSERT_LT(word, R);
    const mpz_class difference =
        from_radix(out.data(), out.size(), to_mpz(&R, 1)) - expected_integer(scaled, m, R, out.size());
    ASSERT_LE(abs(difference), 1) << "radix " << R << ", " << out.size() << " words, difference "
                                  << difference.get_str().substr(0, 40);
}

template <typename wtype>
std::vector<wtype> radixes() {
    std::vector<wtype> list{3, 6, 10, 255, 640, 1000000000, wtype(~wtype(0)), wtype(~wtype(0) - 1)};
    if (sizeof(wtype) == 8) list.push_back(static_cast<wtype>(10000000000000000000u));
    return list;
}

template <typename wtype>
class DirectConvert : public ::testing::Test {};
using WordTypes = ::testing::Types<std::uint32_t, std::uint64_t>;
TYPED_TEST_SUITE(DirectConvert, WordTypes);

TYPED_TEST(DirectConvert, IsExactAroundEveryThreshold) {
    using wtype = TypeParam;
    std::mt19937_64 random(1);
    for (wtype R : radixes<wtype>()) {
        const ConvertPlanP<wtype> plan(R, static_cast<upL_t>(1500 * W<wtype> / std::log2(double(R))), 1);
        std::vector<upL_t> lengths{1, 2, 3, 4, 5, 14, 15, 16, 17, plan.length - 1, plan.length};
        ASSERT_GE(plan.rows.size(), 4u);
        for (const auto& row : plan.rows)
            for (upL_t n : {row.split - 1, row.split, row.split + 1, row.split + 15, row.split + 16})
                lengths.push_back(n);
        for (upL_t n : lengths) {
            // With an integer part and more words than the digits need, then with fewer.
            for (upL_t m : {plan.fraction_words(n) + 7, plan.fraction_words(n) / 2 + 1}) {
                const mpz_class scaled = random_scaled<wtype>(m + 1, random);
                const TestValue<wtype> value(scaled, m);
                expect_close(convert(plan, value.number, n), scaled, m, R);
                if (this->HasFatalFailure()) return;
            }
        }
    }
}

TYPED_TEST(DirectConvert, CarriesThroughLongRunsOfExtremeWords) {
    using wtype = TypeParam;
    std::mt19937_64 random(2);
    for (wtype R : {wtype(10), wtype(1000000000), wtype(~wtype(0))}) {
        const mpz_class radix = to_mpz(&R, 1);
        const ConvertPlanP<wtype> plan(R, static_cast<upL_t>(1000 * W<wtype> / std::log2(double(R))), 1);
        const upL_t n = plan.length;
        const upL_t m = plan.fraction_words(n);
        for (upL_t j : {upL_t(0), upL_t(1), upL_t(2), n / 3, n / 2, plan.rows.back().split, n - 20}) {
            // k / R^j cut off in binary: nines or zeros from word j to the end and beyond.
            const mpz_class denominator = power(radix, j);
            mpz_class k = random_scaled<wtype>(2 + j, random) % denominator;
            for (int ones = 0; ones < 2; ones++) {
                mpz_class scaled = (k << (m * W<wtype>)) / denominator;
                for (int tiny = -1; tiny <= 1; tiny++) {
                    mpz_class near = scaled + tiny;
                    if (near < 0) near = (mpz_class(1) << (m * W<wtype>)) - 1;
                    const TestValue<wtype> value(near, m);
                    expect_close(convert(plan, value.number, n), near, m, R);
                    if (this->HasFatalFailure()) return;
                }
                k = denominator - 1;
            }
        }
    }
}

TYPED_TEST(DirectConvert, TerminatingFractionsComeOutExactly) {
    using wtype = TypeParam;
    const wtype R = 1000000000;
    const ConvertPlanP<wtype> plan(R, 2000, 1);
    const TestValue<wtype> quarter(mpz_class(1) << (W<wtype> - 2), 1);
    std::vector<wtype> expected(2000, 0);
    expected.back() = 250000000;
    EXPECT_EQ(convert(plan, quarter.number, 2000), expected);
    EXPECT_EQ(convert(plan, BigFloat<wtype>(), 2000), std::vector<wtype>(2000, 0));
    // All ones: the largest fraction there is stays below 1.
    const upL_t m = plan.fraction_words(2000) + 2;
    const TestValue<wtype> ones((mpz_class(1) << (m * W<wtype>)) - 1, m);
    EXPECT_EQ(convert(plan, ones.number, 2000), std::vector<wtype>(2000, R - 1));
}

TYPED_TEST(DirectConvert, CutsBitsForPowersOfTwo) {
    using wtype = TypeParam;
    std::mt19937_64 random(3);
    for (unsigned t = 1; t < W<wtype>; t++) {
        const wtype R = wtype(1) << t;
        const upL_t n = 40 + t;
        const ConvertPlanP<wtype> plan(R, n, 1);
        EXPECT_TRUE(plan.rows.empty());
        for (upL_t m : {plan.fraction_words(n), upL_t(3)}) {
            const mpz_class scaled = random_scaled<wtype>(m + 1, random);
            const TestValue<wtype> value(scaled, m);
            const auto out = convert(plan, value.number, n);
            EXPECT_EQ(from_radix(out.data(), n, to_mpz(&R, 1)), expected_integer(scaled, m, R, n)) << t;
        }
    }
}

TYPED_TEST(DirectConvert, DigitsDoNotDependOnTheDecomposition) {
    using wtype = TypeParam;
    std::mt19937_64 random(4);
    const wtype R = static_cast<wtype>(sizeof(wtype) == 8 ? 10000000000000000000u : 1000000000u);
    const upL_t n = 30000;
    const auto pool = make_pushpool(3);
    const ConvertPlanP<wtype> serial(R, n, 1);
    const upL_t m = serial.fraction_words(n);
    const TestValue<wtype> value(random_scaled<wtype>(m, random), m);
    const auto expected = convert(serial, value.number, n);
    for (upL_t tds : {2, 3, 16, 100}) {
        const ConvertPlanP<wtype> plan(R, n, tds);
        EXPECT_EQ(convert(plan, value.number, n, {tds, pool.get()}), expected) << tds;
        EXPECT_EQ(convert(plan, value.number, n), expected) << tds;
    }
}

TEST(DirectConvertRefusals, RadixAndLength) {
    for (std::uint64_t R : {0, 1}) {
        try {
            ConvertPlanP<std::uint64_t>::check_Psize(R, 100, 1);
            FAIL();
        } catch (const InvalidParametersException& e) {
            EXPECT_EQ(e.message, "Invalid radix.");
            EXPECT_EQ(e.function, "ConvertPlanP::check_Psize()");
        }
    }
    EXPECT_EQ(ConvertPlanP<std::uint64_t>::check_Psize(1 << 20, 100000, 4), 0u);
    EXPECT_GT(ConvertPlanP<std::uint64_t>::check_Psize(10, 100000, 4), 0u);
    const ConvertPlanP<std::uint64_t> plan(10, 100, 1);
    EXPECT_DEATH(dying([&] { convert(plan, BigFloat<std::uint64_t>(), 101); }),
                 "Input size is too large for conversion plan.");
}

/// Damages one bit of what passes a chosen point, the n-th time.
struct FlippingProbe final : ConversionProbe<std::uint64_t> {
    enum class Point { power, lowest, highest, overlap } point;
    upL_t countdown;
    FlippingProbe(Point p, upL_t n) : point(p), countdown(n) {}

    void power(upL_t, std::uint64_t* words, upL_t L) override {
        if (point == Point::power && countdown-- == 0) words[L / 2] ^= 4096;
    }
    void converted(std::uint64_t* out, upL_t L, std::uint64_t& overlap) override {
        if (point == Point::power || countdown-- != 0) return;
        (point == Point::lowest ? out[0] : point == Point::highest ? out[L - 1] : overlap) ^= 4096;
    }
};

TEST(DirectConvertFaults, AreCaught) {
    std::mt19937_64 random(5);
    const std::uint64_t R = 10000000000000000000u;
    const upL_t n = 3000;
    const ConvertPlanP<std::uint64_t> plan(R, n, 1);
    const TestValue<std::uint64_t> value(random_scaled<std::uint64_t>(plan.fraction_words(n), random),
                                         plan.fraction_words(n));
    const auto failure = [&](FlippingProbe::Point point, upL_t index) -> std::string {
        FlippingProbe probe(point, index);
        try {
            convert(plan, value.number, n, {}, &probe);
        } catch (const AlgorithmFailedException& e) {
            return e.message;
        }
        return "nothing thrown";
    };
    for (upL_t row = 0; row < plan.rows.size(); row++)
        EXPECT_EQ(failure(FlippingProbe::Point::power, row), "Power Hash Mismatch") << row;
    // Leaves come from the low end up: the first has nothing below it to check its overlap word, the last
    // nothing above it to check its top word.
    const upL_t leaves = upL_t(1) << plan.rows.size();
    for (upL_t leaf : {upL_t(1), leaves / 2, leaves - 1})
        EXPECT_EQ(failure(FlippingProbe::Point::overlap, leaf).substr(0, 17), "Overlap Mismatch:") << leaf;
    for (upL_t leaf : {upL_t(0), leaves / 2, leaves - 2}) {
        const std::string message = failure(FlippingProbe::Point::highest, leaf);
        EXPECT_EQ(message.substr(0, 28), "Overlap Mismatch:\n     RL = ") << leaf;
        EXPECT_NE(message.find("\n     Expected = "), std::string::npos);
        EXPECT_NE(message.find("\n     Actual   = "), std::string::npos);
    }
}

}  // namespace
}  // namespace lumo
