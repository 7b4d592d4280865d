// Everything of one instruction set: included once a translation unit, which defines the field first and sets
// VELMORA_KERNEL_NAMESPACE and the remainder file by its choice of includes.

namespace lumo::kernels::VELMORA_KERNEL_NAMESPACE {
namespace {

// In this order: each uses those before it.
#include "lumo/multiply/kernels/vt3_nodes.inl"

#include "lumo/multiply/kernels/vt3_transpose.inl"

#include "lumo/multiply/kernels/vt3_cut.inl"
#include "lumo/multiply/kernels/vt3_word_sums.inl"

#include "lumo/multiply/kernels/vt3_columns.inl"
#include "lumo/multiply/kernels/vt3_rows.inl"

#include VELMORA_REMAINDER

#include "lumo/multiply/kernels/vt3_join.inl"

}  // namespace
}  // namespace lumo::kernels::VELMORA_KERNEL_NAMESPACE

namespace lumo::kernels {

const Vt3Kernels VELMORA_KERNEL_TABLE = {
    VELMORA_KERNEL_NAME,
    VELMORA_KERNEL_FORM,
    VELMORA_KERNEL_NAMESPACE::Field::RADIX_BITS,
    VELMORA_KERNEL_NAMESPACE::cut,
    VELMORA_KERNEL_NAMESPACE::enter,
    VELMORA_KERNEL_NAMESPACE::rows_forward,
    VELMORA_KERNEL_NAMESPACE::rows_product,
    VELMORA_KERNEL_NAMESPACE::leave,
    VELMORA_KERNEL_NAMESPACE::join,
};

}  // namespace lumo::kernels
