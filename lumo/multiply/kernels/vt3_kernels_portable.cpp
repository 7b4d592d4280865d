#define VELMORA_KERNEL_NAMESPACE vt3_portable
#define VELMORA_KERNEL_TABLE vt3_kernels_portable
#define VELMORA_KERNEL_NAME "portable"
#define VELMORA_KERNEL_FORM Vt3Form::integer64
#define VELMORA_REMAINDER "lumo/multiply/kernels/vt3_remainder_scalar.inl"

#include "lumo/multiply/kernels/field_int.h"

#include "lumo/multiply/kernels/vt3_kernels.inl"
