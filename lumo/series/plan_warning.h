/// What the user is told of a block plan that is too long to be sensible.
#pragma once

#include "lumo/foundation/types/types.h"

namespace lumo {

/// Plans of more blocks than this deserve a warning: the series converges too slowly.
inline constexpr upL_t BLOCK_PLAN_WARNING = 10000;

/// Called for each block as it joins the plan; speaks up once.
void watch_plan(upL_t blocks);
/// Called for the finished plan. Advises against a long one and waits for the user.
void check_plan(upL_t blocks);

}  // namespace lumo
