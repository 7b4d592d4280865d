#define VELMORA_KERNEL_NAMESPACE avx512
#define VELMORA_KERNEL_LANES 8
#define VELMORA_KERNEL_TABLE fft_kernels_avx512
#define VELMORA_KERNEL_NAME "avx512"

#include "lumo/multiply/kernels/fft_kernels.inl"
