/// The four numbers of one range, and working numbers of a merge.
#pragma once

#include "lumo/series/bsr_objects.h"

namespace lumo {

/// C stays untouched where nobody will need it: in the last range of a sum.
template <typename wtype>
struct PartsAB {
    ExactFloat<wtype> T;
    ExactFloat<wtype> V;
    ExactFloat<wtype> C;
    ExactFloat<wtype> D;
    bool need_C = true;
};

/// Capacities, in words.
struct SizesAB {
    upL_t T = 0;
    upL_t V = 0;
    upL_t C = 0;
    upL_t D = 0;
    upL_t sum() const { return T + V + C + D; }
};

/// Cuts the four numbers from a buffer; the sizes are multiples of the alignment unit.
template <typename wtype>
PartsAB<wtype> cut_parts(LinearWordBuffer<wtype>& buffer, const SizesAB& sizes) {
    const auto number = [&](upL_t words) { return ExactFloat<wtype>(buffer.cut_from_bottom(words), words); };
    PartsAB<wtype> parts;
    parts.T = number(sizes.T);
    parts.V = number(sizes.V);
    parts.C = number(sizes.C);
    parts.D = number(sizes.D);
    return parts;
}

/// Seam for tests: sees the parts before they are checked.
template <typename wtype>
class ObserverAB {
 public:
    virtual ~ObserverAB() = default;
    virtual void block_done(const Region&, PartsAB<wtype>&) {}
    virtual void sum_done(const Region&, PartsAB<wtype>&) {}
};

}  // namespace lumo
