/// Runs a plan of a constant in one buffer of its planned size, and compares with a number of MPFR.
#pragma once

#include <gtest/gtest.h>

#include "lumo/multiply/multiply.h"
#include "lumo/series/psr_series.h"
#include "pool_context.h"
#include "real_number.h"
#include "scratch.h"
#include "word_types.h"

namespace velmora::testing {

using lumo::upL_t;

/// What a function of MPFR sets it to.
class Exact : public lumo::testing::Real {
 public:
    template <typename Function>
    Exact(upL_t bits, Function function) : Real(bits) {
        function(value);
    }
};

template <typename wtype>
class ValueRun {
 public:
    template <typename Plan, typename... Observer>
    explicit ValueRun(const Plan& plan, upL_t tds = 1, Observer... observer) : memory(plan.total_bytes()) {
        lumo::Multiply::release_tables();  // those of longer products would hide a plan's mistake
        lumo::Multiply::ensure_tables(plan.max_product_words() * lumo::WordTraits<wtype>::bits);
        lumo::NullStatusNode status;
        value = plan.run(memory.context(tds, lumo::process_parallelizer()), status, observer...);
        EXPECT_TRUE(memory.intact()) << "written beyond the plan";
    }
    /// Whether p words of the value, of which the top one may be small, are those of `exact`.
    bool equals(const Exact& exact, upL_t p) const {
        constexpr mpfr_exp_t W = lumo::WordTraits<wtype>::bits;
        lumo::testing::Real difference(W * (p + 8));
        mpfr_sub(difference.value, lumo::testing::Real(value).value, exact.value, MPFR_RNDN);
        return mpfr_zero_p(difference.value) ||
               mpfr_get_exp(difference.value) <= 2 - W * (static_cast<mpfr_exp_t>(p) - 1);
    }
    bool has_words_of(const ValueRun& other) const {
        return value.exp == other.value.exp &&
               std::equal(value.T, value.T + value.L, other.value.T, other.value.T + other.value.L);
    }
    lumo::BigFloat<wtype> value;

 private:
    lumo::testing::Scratch memory;
};

/// Flips one bit of one part of a block, or of a sum, after so many of them.
template <typename Observer, typename Parts_>
class FlipOf final : public Observer {
 public:
    using Parts = Parts_;
    using Member = lumo::ExactFloat<std::uint64_t> Parts::*;
    FlipOf(Member which, bool in_sum, int skipped) : part(which), sum(in_sum), left(skipped) {}
    void block_done(const lumo::Region&, Parts& parts) override {
        if (!sum && left-- == 0) flip(parts);
    }
    void sum_done(const lumo::Region&, Parts& parts) override {
        if (sum && left-- == 0) flip(parts);
    }

 private:
    void flip(Parts& parts) {
        auto& number = parts.*part;
        number.T[number.L / 3] ^= std::uint64_t(1) << 40;
    }
    Member part;
    bool sum;
    int left;
};
using BitFlip = FlipOf<lumo::SeriesObserver<std::uint64_t>, lumo::Parts<std::uint64_t>>;

/// Expects that run(observer) ends when a bit of any part of the second block or of the first sum flips.
template <typename Run>
void expect_faults_are_caught(Run run) {
    using Parts = BitFlip::Parts;
    for (const bool in_sum : {false, true}) {
        for (const auto part : {&Parts::P, &Parts::Q, &Parts::R}) {
            if (part == &Parts::R && in_sum) continue;
            BitFlip fault(part, in_sum, in_sum ? 0 : 1);
            try {
                run(&fault);
                ADD_FAILURE() << "a flipped bit was not noticed";
            } catch (const lumo::BSRModularCheckFailedException& e) {
                const char* const text = in_sum ? "BSR Merge Failure: " : "Modular Redundancy Check Failed: ";
                EXPECT_TRUE(e.message.starts_with(text)) << e.message;
            }
        }
    }
}

inline constexpr upL_t PRECISIONS[] = {1, 2, 3, 4, 5, 8, 9, 10, 11, 12, 20, 33, 64, 100, 257, 1000, 4000};

using lumo::testing::WordTypes;

}  // namespace velmora::testing
