#define VELMORA_KERNEL_NAMESPACE vt3_ifma
#define VELMORA_KERNEL_TABLE vt3_kernels_ifma
#define VELMORA_KERNEL_NAME "ifma"
#define VELMORA_KERNEL_FORM Vt3Form::integer52
#define VELMORA_REMAINDER "lumo/multiply/kernels/vt3_remainder_ifma.inl"

#include "lumo/multiply/kernels/field_ifma.h"

#include "lumo/multiply/kernels/vt3_kernels.inl"
