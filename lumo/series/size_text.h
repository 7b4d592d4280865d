/// Sizes of numbers as status lines show them.
#pragma once

#include <string>

#include "lumo/foundation/console/console.h"
#include "lumo/foundation/types/double_double.h"

namespace lumo {

/// Decimal digits of a number of `words` words, with separators.
template <typename wtype>
std::string digits_text(upL_t words) {
    static const DoubleDouble LOG10_2 = DoubleDouble::parse("0.3010299956639811952137388947244930267682");
    const upL_t bits = words * WordTraits<wtype>::bits;
    return Console::format_commas((DoubleDouble::from_count(bits) * LOG10_2).truncate());
}

}  // namespace lumo
