/// The operand of a first pass: its bytes with zeros around them, and how to cut pieces from a window.
#pragma once

#include "lumo/multiply/fft/fft_sizes.h"
#include "lumo/multiply/kernels/fft_kernels.h"

namespace lumo {

/// `bytes` is at most limit_bits / 8. The integer must outlive the operand.
kernels::FftOperand make_fft_operand(const unsigned char* integer, upL_t bytes, const FftSize& size);

}  // namespace lumo
