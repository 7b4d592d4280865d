/// Where a test may look at, or damage, the data of a conversion and of its output on the way.
#pragma once

#include <string>

#include "lumo/foundation/types/types.h"

namespace lumo {

/// All operations do nothing by default. They may be called from any thread, concurrently for blocks.
template <typename wtype>
class ConversionProbe {
 public:
    virtual ~ConversionProbe() = default;
    /// Words of the power of row `row`, before it is hashed.
    virtual void power(upL_t /*row*/, wtype* /*words*/, upL_t /*L*/) {}
    /// `L` words that a leaf converted, the last one most significant; `overlap` is its overlap word.
    virtual void converted(wtype* /*out*/, upL_t /*L*/, wtype& /*overlap*/) {}
    /// A digit file that was written and closed, before it is read back.
    virtual void written(const std::string& /*path*/) {}
};

}  // namespace lumo
