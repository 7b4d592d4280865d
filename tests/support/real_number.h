/// A correctly rounded number of MPFR, as the oracle of functions that integers cannot check.
#pragma once

#include <mpfr.h>

#include <cmath>

#include "gmp_words.h"

namespace lumo::testing {

class Real {
 public:
    explicit Real(upL_t bits) {
        mpfr_set_emax(mpfr_get_emax_max());
        mpfr_set_emin(mpfr_get_emin_min());
        mpfr_init2(value, static_cast<mpfr_prec_t>(bits));
        mpfr_set_ui(value, 0, MPFR_RNDN);
    }
    /// The number itself.
    template <template <typename> class Number, typename wtype>
    explicit Real(const Number<wtype>& x) : Real((x.L + 1) * WordTraits<wtype>::bits) {
        mpfr_set_z_2exp(value, mantissa(x).get_mpz_t(), WordTraits<wtype>::bits * x.exp, MPFR_RNDN);
    }
    ~Real() { mpfr_clear(value); }
    Real(const Real&) = delete;
    Real& operator=(const Real&) = delete;

    /// |x / this - 1| in units of 2^-bits.
    double relative_error(const Real& x, upL_t bits) const {
        Real error(mpfr_get_prec(value) + mpfr_get_prec(x.value));
        mpfr_sub(error.value, x.value, value, MPFR_RNDN);
        mpfr_div(error.value, error.value, value, MPFR_RNDN);
        mpfr_mul_2ui(error.value, error.value, bits, MPFR_RNDN);
        return std::fabs(mpfr_get_d(error.value, MPFR_RNDN));
    }
    mpfr_t value;
};

}  // namespace lumo::testing
