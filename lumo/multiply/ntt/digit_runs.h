/// Words of 16 digits of one row on their way into the product.
#pragma once

#include "lumo/foundation/types/types.h"
#include "lumo/multiply/kernels/vt3_kernels.h"

namespace lumo {

/// Puts the finished words of row r at output.place into the product, as far as they are wanted, and notes
/// what the carries still to come must know of them. Needs words > CARRY. For CARRY of 4 and 5.
template <std::size_t CARRY>
void take_run(kernels::DigitOutput<CARRY>& output, std::size_t r, const std::uint64_t* run,
              std::size_t words);

}  // namespace lumo
