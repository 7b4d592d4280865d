/// The final digits of an output, kept as text.
#pragma once

#include <string>
#include <string_view>

#include "lumo/foundation/types/types.h"

namespace lumo {

class LastDigits {
 public:
    static constexpr upL_t DIGITS = 50;

    /// Keeps the last min(DIGITS, total) digits of `block`, the end of `total` digits.
    /// InvalidParametersException "Block is too short." when the block does not hold them.
    void set(std::string_view block, upL_t total);
    const std::string& text() const { return digits; }
    /// Position after the point of the last digit kept, from 1; 0 when there are none.
    upL_t position() const { return end; }
    bool operator==(const LastDigits&) const = default;

 private:
    std::string digits;
    upL_t end = 0;
};

}  // namespace lumo
