// The passes of fft_kernels.h over Vec<double, LANES>, compiled once for each instruction set. The including
// unit defines VELMORA_KERNEL_NAMESPACE, _LANES, _TABLE and _NAME.
//
// Cost: a layer of the nodes and leaves is 3 fused operations a complex vector, both ways: products by roots
// are fused into the sums, and differences are formed as 2 x - y. Exactness: every value is a sum of products
// of balanced pieces with roots of unity; the last pass measures how far the results are from integers, and
// nothing else depends on rounding. All arrays are aligned to 64 bytes.

#include "lumo/multiply/kernels/fft_kernels.h"
#include "lumo/multiply/kernels/vec.h"

namespace lumo::kernels::VELMORA_KERNEL_NAMESPACE {

namespace {

// Each uses what stands above it.
// clang-format off
#include "lumo/multiply/kernels/fft_math.inl"
#include "lumo/multiply/kernels/fft_forward.inl"
#include "lumo/multiply/kernels/fft_inverse.inl"
#include "lumo/multiply/kernels/fft_odd.inl"
#include "lumo/multiply/kernels/fft_enter.inl"
#include "lumo/multiply/kernels/fft_leave.inl"
// clang-format on

}  // namespace

}  // namespace lumo::kernels::VELMORA_KERNEL_NAMESPACE

namespace lumo::kernels {

const FftKernels VELMORA_KERNEL_TABLE = {
    VELMORA_KERNEL_NAME,
    VELMORA_KERNEL_NAMESPACE::enter,
    VELMORA_KERNEL_NAMESPACE::forward_block,
    VELMORA_KERNEL_NAMESPACE::inverse_block,
    VELMORA_KERNEL_NAMESPACE::multiply_block,
    VELMORA_KERNEL_NAMESPACE::leave,
    VELMORA_KERNEL_NAMESPACE::forward_node,
    VELMORA_KERNEL_NAMESPACE::inverse_node,
};

}  // namespace lumo::kernels
