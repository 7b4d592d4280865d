/// Roots of unity, correctly rounded but for about one value in a thousand, which may be the second nearest.
#pragma once

#include <vector>

#include "lumo/foundation/types/types.h"

namespace lumo {

/// Makes E(n / D) = exp(2 pi i n / D) for one D = m 2^e, e >= 3, from two tables of about sqrt(D) values in
/// 64-bit mantissas. Read-only after construction: one object may serve many threads.
class UnitRoots {
 public:
    UnitRoots(upL_t m, unsigned e);
    upL_t order() const { return D; }
    /// (cos, sin) of 2 pi n / D, any n.
    void get(upL_t n, double* out) const;

 private:
    struct Root {
        long double cos, sin;
    };
    static constexpr unsigned LOW = 10;  ///< bits of n that the fine table takes
    upL_t D;
    std::vector<Root> coarse, fine;
};

}  // namespace lumo
