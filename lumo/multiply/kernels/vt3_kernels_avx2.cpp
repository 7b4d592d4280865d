#define VELMORA_KERNEL_NAMESPACE vt3_avx2
#define VELMORA_KERNEL_TABLE vt3_kernels_avx2
#define VELMORA_KERNEL_NAME "avx2"
#define VELMORA_KERNEL_FORM Vt3Form::floating
#define VELMORA_REMAINDER "lumo/multiply/kernels/vt3_remainder_double.inl"

#include "lumo/multiply/kernels/field_double.h"

#include "lumo/multiply/kernels/vt3_kernels.inl"
