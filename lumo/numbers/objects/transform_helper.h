/// Cuts the arrays and the work area of one transform from a caller's buffer.
#pragma once

#include "lumo/multiply/multiply.h"

namespace lumo {

/// Array i of `arrays`, then the work area. Too small a buffer: BufferTooSmallException
/// "TransformHelper::TransformHelper()".
template <typename wtype>
class TransformHelper {
 public:
    TransformHelper(const MultiplyContext& ctx, const TransformDescriptor<wtype>& descriptor, upL_t arrays);
    static upL_t bytes(const TransformDescriptor<wtype>& descriptor, upL_t arrays) {
        return arrays * align_bytes(descriptor.array_bytes()) + align_bytes(descriptor.scratch_bytes());
    }
    const TransformDescriptor<wtype>& descriptor() const { return *d; }
    void* array(upL_t i) const;  ///< i < arrays
    /// The caller's threads with the work area as scratch.
    const MultiplyContext& context() const { return work; }

 private:
    const TransformDescriptor<wtype>* d;
    char* arrays_start;
    upL_t array_count;
    MultiplyContext work;
};

}  // namespace lumo
