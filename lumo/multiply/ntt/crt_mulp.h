/// What a convolution of residues must hold before it starts.
#pragma once

#include "lumo/foundation/errors/fatal.h"
#include "lumo/foundation/types/types.h"

namespace lumo {

/// A convolution of `words` words, a multiple of 32, takes operands of at most twice as many together.
/// Otherwise an assertion.
inline void check_crt_mulp(upL_t words, upL_t AL, upL_t BL) {
    require(words % 32 == 0, "Convolution length is not divisible by the word-size.", "CRT_mulp()");
    require(2 * words >= AL + BL, "Convolution length is not long enough.", "CRT_mulp()");
}

}  // namespace lumo
