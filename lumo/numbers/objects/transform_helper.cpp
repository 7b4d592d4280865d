#include "lumo/numbers/objects/transform_helper.h"

namespace lumo {

template <typename wtype>
TransformHelper<wtype>::TransformHelper(const MultiplyContext& ctx,
                                        const TransformDescriptor<wtype>& descriptor, upL_t arrays)
    : d(&descriptor), arrays_start(static_cast<char*>(ctx.scratch)), array_count(arrays) {
    require_capacity("TransformHelper::TransformHelper()", ctx.scratch_bytes, bytes(descriptor, arrays));
    const upL_t array_bytes = arrays * align_bytes(descriptor.array_bytes());
    work = ctx.with_scratch({arrays_start + array_bytes, ctx.scratch_bytes - array_bytes});
}

template <typename wtype>
void* TransformHelper<wtype>::array(upL_t i) const {
    require(i < array_count, "Array index is out of range.", "TransformHelper::array()");
    return arrays_start + i * align_bytes(d->array_bytes());
}

template class TransformHelper<std::uint32_t>;
template class TransformHelper<std::uint64_t>;

}  // namespace lumo
