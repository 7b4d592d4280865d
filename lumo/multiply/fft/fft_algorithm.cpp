#include "lumo/multiply/fft/fft_algorithm.h"

#include <algorithm>
#include <limits>

#include "lumo/multiply/fft/fft_tables.h"

namespace lumo {

namespace {

/// Bits of `length` words; a length whose bits do not fit comes out beyond all rows.
template <typename wtype>
upL_t bits_of(upL_t length) {
    constexpr upL_t most = std::numeric_limits<upL_t>::max();
    return length > most / WordTraits<wtype>::bits ? most : length * WordTraits<wtype>::bits;
}

}  // namespace

template <typename wtype>
void FftAlgorithm<wtype>::ensure_tables(upL_t length) const {
    ensure_fft_tables(bits_of<wtype>(length));
}

template <typename wtype>
upL_t FftAlgorithm<wtype>::max_buffer_sizes(BufferSizes& sizes, upL_t length, upL_t) const {
    // Rows need not grow in points, so a shorter product may need more.
    sizes = {};
    for (const FftSize& size : fft_sizes_up_to(bits_of<wtype>(length)))
        sizes.merge({size.array_bytes(), size.scratch_bytes()});
    return sizes.total();
}

template <typename wtype>
void FftAlgorithm<wtype>::params(TransformHolder<wtype>& out, upL_t length, upL_t) const {
    out.template emplace<FftDescriptor<wtype>>(bits_of<wtype>(length));
}

template <typename wtype>
void FftAlgorithm<wtype>::sqr_partial(const MultiplyContext& ctx, wtype* T, upL_t s, upL_t L, const wtype* A,
                                      upL_t AL) const {
    const FftDescriptor<wtype> descriptor(bits_of<wtype>(2 * AL));
    AlignedBufferC buffer = ctx.buffer();
    void* array = buffer.spawn(descriptor.array_bytes());
    const MultiplyContext inner = ctx.with_scratch(buffer.spawn_buffer(descriptor.scratch_bytes()));
    descriptor.sqr(inner, T, s, L, A, AL, array);
}

template <typename wtype>
void FftAlgorithm<wtype>::mul_partial(const MultiplyContext& ctx, wtype* T, upL_t s, upL_t L, const wtype* A,
                                      upL_t AL, const wtype* B, upL_t BL) const {
    if (A == B && AL == BL) return sqr_partial(ctx, T, s, L, A, AL);
    const FftDescriptor<wtype> descriptor(bits_of<wtype>(AL + BL));
    AlignedBufferC buffer = ctx.buffer();
    void* array_a = buffer.spawn(descriptor.array_bytes());
    void* array_b = buffer.spawn(descriptor.array_bytes());
    const MultiplyContext inner = ctx.with_scratch(buffer.spawn_buffer(descriptor.scratch_bytes()));
    descriptor.mul(inner, T, s, L, A, AL, B, BL, array_a, array_b);
}

template class FftAlgorithm<std::uint32_t>;
template class FftAlgorithm<std::uint64_t>;

}  // namespace lumo
