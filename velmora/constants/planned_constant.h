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

}  // namespace velmora
