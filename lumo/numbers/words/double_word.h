/// Products of two words.
#pragma once

#include "lumo/foundation/types/types.h"

namespace lumo {

template <typename wtype>
using DoubleWord = std::conditional_t<sizeof(wtype) == 4, std::uint64_t, unsigned __int128>;

template <typename wtype>
constexpr wtype high_word(DoubleWord<wtype> x) {
    return static_cast<wtype>(x >> WordTraits<wtype>::bits);
}
template <typename wtype>
constexpr wtype mul_high(wtype a, wtype b) {
    return high_word<wtype>(static_cast<DoubleWord<wtype>>(a) * b);
}

}  // namespace lumo
