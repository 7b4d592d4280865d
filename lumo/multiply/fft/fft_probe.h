/// A look into one product, for tests and benchmarks. The product calls it from the caller's thread, between
/// passes, when nothing else touches the array.
#pragma once

#include "lumo/foundation/types/types.h"

namespace lumo {

enum class FftPass { first, forward, inverse };

class FftProbe {
 public:
    virtual ~FftProbe() = default;
    /// The array as a pass left it; what is written here goes into the next pass. Fault tests flip bits.
    virtual void after(FftPass, double* /*array*/, upL_t /*doubles*/) {}
    /// Largest distance of a coefficient from an integer in the last inverse, 0 .. 0.5.
    double largest_error = 0;
};

}  // namespace lumo
