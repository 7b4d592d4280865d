// The hash that the digits of a value must have, computed on the binary side, against GMP.
#include "lumo/radix/verify_plan.h"

#include <gtest/gtest.h>

#include "lumo/foundation/errors/exceptions.h"
#include "lumo/numbers/words/hash61.h"
#include "radix_oracle.h"

namespace lumo {
namespace {

using namespace test;

template <typename wtype>
std::uint64_t hash(const VerifyPlan<wtype>& plan, const BigFloat<wtype>& value,
                   ConversionProbe<wtype>* probe = nullptr) {
    Multiply::ensure_tables(plan.product_words * W<wtype>);
    GuardedScratch scratch(plan.total_bytes);
    NullStatusNode status;
    const std::uint64_t h = VerifyB<wtype>::hash_binary(
        plan, status, value, MultiplyContext{}.with_scratch(scratch.buffer()), probe);
    EXPECT_TRUE(scratch.intact());
    return h;
}

template <typename wtype>
class Verify : public ::testing::Test {};
using WordTypes = ::testing::Types<std::uint32_t, std::uint64_t>;
TYPED_TEST_SUITE(Verify, WordTypes);

TYPED_TEST(Verify, HashesTheFloorOfTheScaledFraction) {
    using wtype = TypeParam;
    std::mt19937_64 random(11);
    for (wtype R : {wtype(2), wtype(3), wtype(10), wtype(16), wtype(1000000000), wtype(~wtype(0))}) {
        for (upL_t digits : {0, 1, 2, 19, 63, 64, 65, 200, 1500}) {
            const upL_t planned = static_cast<upL_t>(std::log2(double(R)) * double(digits) / W<wtype>) + 4;
            const VerifyPlan<wtype> plan(R, digits, planned, 1);
            for (upL_t m : {planned, planned / 2 + 1, upL_t(1)}) {
                for (mpz_class scaled : {random_scaled<wtype>(m + 1, random),
                                         mpz_class((mpz_class(1) << (m * W<wtype>)) - 1), mpz_class(1)}) {
                    const TestValue<wtype> value(scaled, m);
                    const mpz_class expected =
                        expected_integer(scaled, m, R, digits) % mpz_class(Hash61::MODULUS);
                    EXPECT_EQ(hash(plan, value.number), expected.get_ui())
                        << R << " ^ " << digits << ", " << m;
                }
            }
        }
    }
    EXPECT_EQ(hash(VerifyPlan<wtype>(10, 100, 20, 1), BigFloat<wtype>()), 0u);
}

TEST(VerifyRefusals, LongValuesAndDamagedPowers) {
    std::mt19937_64 random(12);
    const VerifyPlan<std::uint64_t> plan(10, 1000, 55, 1);
    const TestValue<std::uint64_t> longer(random_scaled<std::uint64_t>(56, random), 56);
    try {
        hash(plan, longer.number);
        FAIL();
    } catch (const InvalidParametersException& e) {
        EXPECT_EQ(e.message, "Too many digits");
    }
    struct Flip final : ConversionProbe<std::uint64_t> {
        void power(upL_t, std::uint64_t* words, upL_t L) override { words[L - 1] ^= 1; }
    } flip;
    const TestValue<std::uint64_t> value(random_scaled<std::uint64_t>(55, random), 55);
    try {
        hash(plan, value.number, &flip);
        FAIL();
    } catch (const AlgorithmFailedException& e) {
        EXPECT_EQ(e.message, "Power Hash Mismatch");
        EXPECT_EQ(e.function, "CBRv2::CheckP()");
    }
}

}  // namespace
}  // namespace lumo
