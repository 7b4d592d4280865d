#include "lumo/radix/last_digits.h"

#include <algorithm>

#include "lumo/foundation/errors/exceptions.h"

namespace lumo {

void LastDigits::set(std::string_view block, upL_t total) {
    const upL_t count = std::min(DIGITS, total);
    if (block.size() < count) throw InvalidParametersException("LastDigits::set()", "Block is too short.");
    digits = block.substr(block.size() - count);
    end = total;
}

}  // namespace lumo
