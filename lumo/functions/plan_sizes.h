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

/// Bytes for any product of at most `length` words.
template <typename wtype>
upL_t product_bytes(upL_t length, upL_t tds) {
    return align_bytes(Multiply::max_buffer_size<wtype>(length, tds));
}

/// Bytes for set_mul() and set_sqr() at precision p.
template <typename wtype>
upL_t float_product_bytes(upL_t p, upL_t tds) {
    return product_bytes<wtype>(2 * p + 6, tds);
}

/// Bytes for `arrays` images and the work area of the transform for `length` words.
template <typename wtype>
upL_t transform_bytes(upL_t length, upL_t tds, upL_t arrays) {
    TransformHolder<wtype> transform;
    Multiply::params(transform, length, tds);
    return TransformHelper<wtype>::bytes(*transform, arrays);
}

/// What a memory estimate reports for a plan: the last term is a bare count, not bytes.
template <typename wtype>
constexpr upL_t plan_total(upL_t byte_scratch, upL_t word_scratch, upL_t output_words) {
    return byte_scratch + sizeof(wtype) * word_scratch + align_words<wtype>(output_words);
}

}  // namespace lumo
