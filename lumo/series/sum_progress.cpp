#include "lumo/series/sum_progress.h"

#include <cmath>

namespace lumo {

namespace {

/// A tree of products over n terms has log n levels, of which those above cost more by about as much.
double work_of(const Region& block) {
    const double log_terms = std::log2(static_cast<double>(block.terms()) + 1);
    return static_cast<double>(block.terms()) * log_terms * log_terms;
}

}  // namespace

SumProgress::SumProgress(std::span<const Region> plan) : blocks(plan), all(0) {
    for (const Region& block : blocks) all += work_of(block);
}

double SumProgress::work_behind(upL_t i) const {
    double work = 0;
    for (const Region& block : blocks.subspan(i + 1)) work += work_of(block);
    return work / all;
}

ColorString SumProgress::text(upL_t i, std::chrono::duration<double> elapsed) const {
    const double share = work_behind(i);
    ColorString text = {{'w', "Summing: "}, {'Y', std::to_string(static_cast<int>(100 * share)) + " %"}};
    if (share >= 0.1 && elapsed.count() >= 1)
        text.push_back({'g', ", " + format_elapsed(elapsed.count() * (1 / share - 1)) + " left"});
    text.push_back(
        {'w', "  block " + std::to_string(blocks.size() - i) + " / " + std::to_string(blocks.size()) + "  "});
    return text;
}

}  // namespace lumo
