/// Schoolbook products by 52-bit multiply-adds, eight columns a vector: for operands that a few hundred words
/// hold, where the processor has AVX-512 IFMA.
#pragma once

#include <cstddef>

namespace lumo {

namespace kernels {

/// Longest operand in digits of 64 bits; its limbs stand on the stack.
inline constexpr std::size_t MUL52_MOST_DIGITS = 256;

/// T[0 .. n + m) := A B in digits of 64 bits, with n and m from 1 to MUL52_MOST_DIGITS, at any byte address.
/// T may overlap the operands.
using Mul52 = void(void* T, const void* A, std::size_t n, const void* B, std::size_t m);

Mul52 mul52_ifma;

}  // namespace kernels

/// The kernel for this machine and the active set of kernels, null if there is none.
kernels::Mul52* mul52_kernel();

}  // namespace lumo
