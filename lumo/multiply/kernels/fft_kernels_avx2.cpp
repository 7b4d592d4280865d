#define VELMORA_KERNEL_NAMESPACE avx2
#define VELMORA_KERNEL_LANES 4
#define VELMORA_KERNEL_TABLE fft_kernels_avx2
#define VELMORA_KERNEL_NAME "avx2"

#include "lumo/multiply/kernels/fft_kernels.inl"
