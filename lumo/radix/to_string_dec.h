/// Numbers as decimal text, for display.
#pragma once

#include <string>

#include "lumo/numbers/objects/big_float.h"

namespace lumo {

/// The first `digits` >= 1 significant digits of x, rounded; low zeros are dropped. The last digit may be off
/// by one when what follows is next to a half. Numbers with an integer part of up to `digits` digits are
/// written out, others as "1.2345 *10^ 678". Takes its memory from the general allocator and may grow the
/// twiddle tables: not while products run.
template <typename wtype>
std::string to_string_dec(const BigFloat<wtype>& x, upL_t digits);

}  // namespace lumo
