#define VELMORA_KERNEL_NAMESPACE count_avx2
#define VELMORA_KERNEL_FUNCTION count_digits_avx2

#include "lumo/radix/counting/count_digits.inl"
