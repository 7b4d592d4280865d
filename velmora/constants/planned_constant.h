/// The part of a constant that is the same for all: a plan is made, asked for its sizes, and run.
#pragma once

#include "velmora/constants/constant.h"

namespace velmora {

/// The buffer of a computation as the scratch of its plan.
inline lumo::MultiplyContext scratch_of(const ComputeContext& context) {
    return {context.parallel.tds,  context.parallel.parallelizer, 0, 0,
            context.buffer.data(), context.buffer.size()};
}

/// Sizes of a plan for words of 64 bits.
template <typename Plan>
SizeEstimate estimate_of(const Plan& plan) {
    return {lumo::align_bytes(plan.total_bytes()), 64 * plan.max_product_words()};
}

/// A line of its own above those of the phases.
inline void print_title(const ComputeContext& context, std::string title) {
    const lumo::StatusSection section(context.status, {{'G', std::move(title)}});
}

/// A constant whose algorithms share one type of plan.
template <typename Plan>
class PlannedConstant : public Constant {
 public:
    using Constant::Constant;
    upL_t terms(upL_t precision_words) const final { return plan(precision_words, 1).terms(); }
    SizeEstimate estimate(upL_t precision_words, upL_t tds) const final {
        return estimate_of(plan(precision_words, tds));
    }
    lumo::BigFloat<std::uint64_t> compute(const ComputeContext& context) const final {
        print_title(context, *algorithm().run_title == '\0' ? algorithm().name : algorithm().run_title);
        return plan(context.precision_words, context.parallel.tds).run(scratch_of(context), context.status);
    }

 protected:
    /// The plan of the chosen algorithm.
    virtual Plan plan(upL_t precision_words, upL_t tds) const = 0;
};

}  // namespace velmora
