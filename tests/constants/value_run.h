/// Runs a plan of a constant in one buffer of its planned size, and compares with a number of MPFR.
#pragma once

#include <gtest/gtest.h>
#include <mpfr.h>

#include "gmp_words.h"
#include "lumo/foundation/parallel/pushpool.h"
#include "lumo/multiply/multiply.h"
#include "lumo/numbers/words/words.h"
#include "lumo/series/psr_series.h"

namespace velmora::testing {

using lumo::upL_t;

class Exact {
 public:
    template <typename Function>
    Exact(upL_t bits, Function function) {
        mpfr_init2(value, static_cast<mpfr_prec_t>(bits));
        function(value);
    }
    ~Exact() { mpfr_clear(value); }
    Exact(const Exact&) = delete;
    Exact& operator=(const Exact&) = delete;
    mpfr_t value;
};

template <typename wtype>
class ValueRun {
 public:
    template <typename Plan, typename... Observer>
    explicit ValueRun(const Plan& plan, upL_t tds = 1, Observer... observer)
        : buffer(plan.total_bytes() / 8 + 16 + GUARD_WORDS, GUARD) {
        std::uint64_t* start = buffer.data() + lumo::bp_prefix(buffer.data());
        lumo::Multiply::ensure_tables(plan.max_product_words() * lumo::WordTraits<wtype>::bits);
        const lumo::MultiplyContext ctx{tds, &lumo::process_parallelizer(), 0, 0, start, plan.total_bytes()};
        lumo::NullStatusNode status;
        value = plan.run(ctx, status, observer...);
        const std::uint64_t* const end = start + (plan.total_bytes() + 7) / 8;
        for (upL_t i = 0; i < GUARD_WORDS; ++i) EXPECT_EQ(end[i], GUARD) << "written beyond the plan";
    }
    /// Whether p words of the value, of which the top one may be small, are those of `exact`.
    bool equals(const Exact& exact, upL_t p) const {
        constexpr unsigned W = lumo::WordTraits<wtype>::bits;
        mpfr_t difference, got;
        mpfr_inits2(static_cast<mpfr_prec_t>(W * (p + 8)), difference, got, nullptr);
        mpfr_set_z_2exp(got, lumo::testing::mantissa(value).get_mpz_t(), value.exp * W, MPFR_RNDN);
        mpfr_sub(difference, got, exact.value, MPFR_RNDN);
        const bool close =
            mpfr_zero_p(difference) ||
            mpfr_get_exp(difference) <= 2 - static_cast<mpfr_exp_t>(W) * static_cast<mpfr_exp_t>(p - 1);
        mpfr_clears(difference, got, nullptr);
        return close;
    }
    lumo::BigFloat<wtype> value;

 private:
    static constexpr upL_t GUARD_WORDS = 16;
    static constexpr std::uint64_t GUARD = 0xa7a7a7a7a7a7a7a7;
    std::vector<std::uint64_t> buffer;
};

/// Flips one bit of one part of one block, or of one sum.
class BitFlip final : public lumo::SeriesObserver<std::uint64_t> {
 public:
    using Parts = lumo::Parts<std::uint64_t>;
    using Member = lumo::ExactFloat<std::uint64_t> Parts::*;
    BitFlip(Member which, bool in_sum, int block = 1) : part(which), sum(in_sum), calls(-block) {}
    void block_done(const lumo::Region&, Parts& parts) override {
        if (!sum && calls++ == 0) flip(parts);
    }
    void sum_done(const lumo::Region&, Parts& parts) override {
        if (sum && calls++ == -1) flip(parts);
    }

 private:
    void flip(Parts& parts) {
        auto& number = parts.*part;
        number.T[number.L / 3] ^= std::uint64_t(1) << 40;
    }
    Member part;
    bool sum;
    int calls;
};

/// Expects that run(observer) ends when a bit of any part of the second block or of the first sum flips.
template <typename Run>
void expect_faults_are_caught(Run run) {
    using Parts = lumo::Parts<std::uint64_t>;
    for (const bool in_sum : {false, true}) {
        for (const auto part : {&Parts::P, &Parts::Q, &Parts::R}) {
            if (part == &Parts::R && in_sum) continue;
            BitFlip fault(part, in_sum);
            EXPECT_THROW(run(&fault), lumo::BSRModularCheckFailedException);
        }
    }
}

inline constexpr upL_t PRECISIONS[] = {1, 2, 3, 4, 5, 8, 9, 10, 11, 12, 20, 33, 64, 100, 257, 1000, 4000};

using WordTypes = ::testing::Types<std::uint32_t, std::uint64_t>;

}  // namespace velmora::testing
