/// How often each digit occurs, by vectors of bytes: one source, compiled once an instruction set.
#pragma once

#include <cstddef>
#include <cstdint>

namespace lumo::kernels {

/// Adds the occurrences of the digits 0 .. radix - 1, with radix 10 or 16, in `count` bytes to counts[0 ..
/// radix). A byte stands for a digit as its value or as its character, letters in lower case; no other byte
/// is counted.
using CountDigits = void(std::uint64_t* counts, const char* digits, std::size_t count, unsigned radix);

CountDigits count_digits_portable, count_digits_avx2, count_digits_avx512;

}  // namespace lumo::kernels
