/// Sizes that the plans of the functions share.
#pragma once

#include <algorithm>

#include "lumo/multiply/multiply.h"
#include "lumo/numbers/objects/transform_helper.h"

namespace lumo {

/// n and one alignment unit, rounded down: aligned room for more than n words.
template <typename wtype>
constexpr upL_t aligned_room(upL_t n) {
    constexpr upL_t unit = WordTraits<wtype>::align_words;
    return (n + unit) / unit * unit;
}

/// Bytes for any product of at most `length` words, and for two images and the work area of any of their
/// transforms.
template <typename wtype>
upL_t product_bytes(upL_t length, upL_t tds) {
    BufferSizes sizes;
    const upL_t product = Multiply::max_buffer_sizes<wtype>(sizes, length, tds);
    return std::max(align_bytes(product),
                    2 * align_bytes(sizes.array_bytes) + align_bytes(sizes.scratch_bytes));
}

/// Bytes for set_mul() and set_sqr() at precision p.
template <typename wtype>
upL_t float_product_bytes(upL_t p, upL_t tds) {
    return product_bytes<wtype>(2 * p + 6, tds);
}

}  // namespace lumo
