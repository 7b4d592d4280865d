#define VELMORA_KERNEL_NAMESPACE count_portable
#define VELMORA_KERNEL_FUNCTION count_digits_portable

#include "lumo/radix/counting/count_digits.inl"
