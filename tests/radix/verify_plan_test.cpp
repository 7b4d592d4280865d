// The hash that the digits of a value must have, computed on the binary side, against GMP.
#include "lumo/radix/verify_plan.h"

#include <cmath>

#include "failures.h"
#include "lumo/numbers/words/hash61.h"
#include "radix_oracle.h"

namespace lumo {
namespace {

using namespace testing;

template <typename wtype>
std::uint64_t hash(const VerifyPlan<wtype>& plan, const BigFloat<wtype>& value,
                   ConversionProbe<wtype>* probe = nullptr) {
    Multiply::ensure_tables(plan.product_words * WordTraits<wtype>::bits);
    const Scratch scratch(plan.total_bytes);
    NullStatusNode status;
    const std::uint64_t h = VerifyB<wtype>::hash_binary(plan, status, value, scratch.context(), probe);
    EXPECT_TRUE(scratch.intact());
    return h;
}

template <typename wtype>
class Verify : public WordTest<wtype> {};
TYPED_TEST_SUITE(Verify, WordTypes);

TYPED_TEST(Verify, HashesTheFloorOfTheScaledFraction) {
    using wtype = TypeParam;
    for (wtype R : {wtype(2), wtype(3), wtype(10), wtype(16), wtype(1000000000), this->ONES}) {
        for (upL_t digits : {0, 1, 2, 19, 63, 64, 65, 200, 1500}) {
            const upL_t planned = static_cast<upL_t>(std::log2(double(R)) * double(digits) / this->W) + 4;
            const VerifyPlan<wtype> plan(R, digits, planned, 1);
            for (upL_t m : {planned, planned / 2 + 1, upL_t(1)})
                for (const mpz_class& scaled : {random_scaled<wtype>(m + 1, this->random),
                                                mpz_class(unit<wtype>(spL_t(m)) - 1), mpz_class(1)}) {
                    const mpz_class expected =
                        expected_integer<wtype>(scaled, m, to_mpz(&R, 1), digits) % Hash61::MODULUS;
                    EXPECT_EQ(hash(plan, test_value<wtype>(scaled, m)), expected.get_ui())
                        << R << " ^ " << digits << ", " << m;
                }
        }
    }
    EXPECT_EQ(hash(VerifyPlan<wtype>(10, 100, 20, 1), BigFloat<wtype>()), 0u);
}

TYPED_TEST(Verify, RefusesLongValuesAndDamagedPowers) {
    using wtype = TypeParam;
    struct Flip final : ConversionProbe<wtype> {
        void power(upL_t, wtype* words, upL_t L) override { words[L - 1] ^= 1; }
    } flip;
    const VerifyPlan<wtype> plan(10, 1000, 110, 1);
    const auto number = [&](upL_t m) {
        return test_value<wtype>(random_scaled<wtype>(m, this->random) | 1, m);
    };
    EXPECT_EQ(refusal([&] { hash(plan, number(111)); }), "VerifyB::hash_binary() Too many digits");
    EXPECT_EQ(refusal([&] { hash(plan, number(110), &flip); }), "CBRv2::CheckP() Power Hash Mismatch");
}

}  // namespace
}  // namespace lumo
