/// Digits for digit files.
#pragma once

#include <random>
#include <string>

namespace DigitViewer2 {

/// Values below the radix, not characters.
inline std::string random_values(std::size_t count, std::size_t radix, unsigned seed) {
    std::mt19937 random(seed);
    std::string values(count, '\0');
    for (char& v : values) v = static_cast<char>(random() % radix);
    return values;
}

}  // namespace DigitViewer2
