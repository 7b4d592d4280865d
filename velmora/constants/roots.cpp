#include "velmora/constants/roots.h"

#include <cmath>

#include "velmora/constants/planned_constant.h"
#include "velmora/constants/plans/square_root.h"

namespace velmora {

namespace {

/// n below 2^63.
bool is_square(upL_t n) {
    auto root = static_cast<upL_t>(std::sqrt(static_cast<double>(n)));
    while (root * root > n) --root;
    while ((root + 1) * (root + 1) <= n) ++root;
    return root * root == n;
}

}  // namespace

std::unique_ptr<Constant> SqrtConstant::make(const CatalogueEntry& entry) {
    return std::make_unique<SqrtConstant>(entry);
}

std::string SqrtConstant::refusal(upL_t n) const {
    if (n == 0) return "Argument is invalid: ";
    return is_square(n) ? "Argument is a perfect square: " : "";
}

SizeEstimate SqrtConstant::estimate(upL_t precision_words, upL_t tds) const {
    return estimate_of(Sqrt_BigFloatR<std::uint64_t>(argument(), precision_words, tds));
}

lumo::BigFloat<std::uint64_t> SqrtConstant::compute(const ComputeContext& context) const {
    print_title(context, name() + ":");
    return Sqrt_BigFloatR<std::uint64_t>(argument(), context.precision_words, context.parallel.tds)
        .run(scratch_of(context), context.status);
}

std::unique_ptr<Constant> GoldenRatioConstant::make(const CatalogueEntry& entry) {
    return std::make_unique<GoldenRatioConstant>(entry);
}

SizeEstimate GoldenRatioConstant::estimate(upL_t precision_words, upL_t tds) const {
    return estimate_of(GoldenRatio_Newton_BigFloatR<std::uint64_t>(1, precision_words, tds));
}

lumo::BigFloat<std::uint64_t> GoldenRatioConstant::compute(const ComputeContext& context) const {
    print_title(context, "GoldenRatio:");
    return GoldenRatio_Newton_BigFloatR<std::uint64_t>(1, context.precision_words, context.parallel.tds)
        .run(scratch_of(context), context.status);
}

}  // namespace velmora
