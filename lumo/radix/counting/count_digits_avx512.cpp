#define VELMORA_KERNEL_NAMESPACE count_avx512
#define VELMORA_KERNEL_FUNCTION count_digits_avx512

#include "lumo/radix/counting/count_digits.inl"
