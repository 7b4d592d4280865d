#define VELMORA_KERNEL_NAMESPACE portable
#define VELMORA_KERNEL_LANES 2
#define VELMORA_KERNEL_TABLE fft_kernels_portable
#define VELMORA_KERNEL_NAME "portable"

#include "lumo/multiply/kernels/fft_kernels.inl"
