/// The parts of one range, and the storage they are cut from.
#pragma once

#include "lumo/numbers/objects/exact_float.h"
#include "lumo/series/series_common_p2b3.h"

namespace lumo {

/// Terms [s, e). An empty range throws InvalidParametersException "Invalid Range - Failed: s < e".
struct Region {
    upL_t s;
    upL_t e;
    Region(upL_t start, upL_t end);
    upL_t terms() const { return e - s; }
};

/// P, Q and R of a range; R stays untouched where nobody will need it (the last range of a sum, and every
/// range of a hyperdescent series).
template <typename wtype>
struct Parts {
    ExactFloat<wtype> P;
    ExactFloat<wtype> Q;
    ExactFloat<wtype> R;
    bool need_R = true;
};

/// The storage above `used` inside the same buffer, from the next alignment unit on.
template <typename wtype>
ExactFloat<wtype> free_space_above(const ExactFloat<wtype>& used);
/// The upper half of a buffer, cut at a multiple of the alignment unit.
template <typename wtype>
ExactFloat<wtype> upper_half(const ExactFloat<wtype>& whole);
template <typename wtype>
ExactFloat<wtype> lower_half(const ExactFloat<wtype>& whole);
/// The number with the whole buffer again as its capacity.
template <typename wtype>
void widen(ExactFloat<wtype>& number, const ExactFloat<wtype>& whole) {
    number.base = whole.base;
    number.capacity = whole.capacity;
}

}  // namespace lumo
