#include "lumo/foundation/types/double_double.h"

#include <gtest/gtest.h>

#include "real_number.h"

namespace lumo::testing {
namespace {

Real& set(Real& r, DoubleDouble x) {
    mpfr_set_d(r.value, x.hi, MPFR_RNDN);
    mpfr_add_d(r.value, r.value, x.lo, MPFR_RNDN);
    return r;
}

TEST(DoubleDoubleTest, ExponentialAndLogarithmToAHundredBits) {
    std::mt19937_64 random(78);
    std::uniform_real_distribution<double> range(-90, 90);
    for (int i = 0; i < 20000; i++) {
        double x = range(random);
        if (i % 3 == 0) x = std::ldexp(x, -static_cast<int>(random() % 100));
        const DoubleDouble argument = DoubleDouble::two_sum(x, std::ldexp(x, -60) * range(random));
        Real a(300), result(300), got(300);
        set(a, argument);
        mpfr_exp(result.value, a.value, MPFR_RNDN);
        const double size = std::max(1.0, std::fabs(x));
        ASSERT_LT(result.relative_error(set(got, exp(argument)), 101), size) << x;

        const DoubleDouble positive = exp(argument);
        set(a, positive);
        mpfr_log(result.value, a.value, MPFR_RNDN);
        set(got, log(positive));
        mpfr_sub(got.value, got.value, result.value, MPFR_RNDN);
        ASSERT_LT(std::fabs(mpfr_get_d(got.value, MPFR_RNDN)), std::ldexp(size, -101)) << x;
    }
}

}  // namespace
}  // namespace lumo::testing
