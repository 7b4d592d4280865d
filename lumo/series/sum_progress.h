/// What a series summed block by block tells of its progress.
#pragma once

#include <chrono>
#include <span>

#include "lumo/foundation/status/color_string.h"
#include "lumo/series/block_plan.h"

namespace lumo {

/// Of blocks that are summed from the last to the first. Counts time from when it is made.
class SumProgress {
 public:
    explicit SumProgress(std::span<const Region> plan);

    /// Text of block i of the plan: the share of the work that is behind it, and once that is a tenth, and a
    /// second has passed, how long the rest will take at this rate.
    ColorString text(upL_t i) const { return text(i, std::chrono::steady_clock::now() - start); }
    ColorString text(upL_t i, std::chrono::duration<double> elapsed) const;

 private:
    double work_behind(upL_t i) const;

    std::span<const Region> blocks;
    double all;
    std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();
};

}  // namespace lumo
