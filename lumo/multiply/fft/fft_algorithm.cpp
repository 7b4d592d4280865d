#include "lumo/multiply/fft/fft_algorithm.h"

#include "lumo/multiply/fft/fft_tables.h"

namespace lumo {

template <typename wtype>
void FftAlgorithm<wtype>::ensure_tables(upL_t length) const {
    ensure_fft_tables(this->bits_of(length));
}

template <typename wtype>
upL_t FftAlgorithm<wtype>::max_buffer_sizes(BufferSizes& sizes, upL_t length, upL_t) const {
    // Rows need not grow in points, so a shorter product may need more.
    sizes = {};
    for (const FftSize& size : fft_sizes_up_to(this->bits_of(length)))
        sizes.merge({size.array_bytes(), size.scratch_bytes()});
    return sizes.total();
}

template <typename wtype>
void FftAlgorithm<wtype>::params(TransformHolder<wtype>& out, upL_t length, upL_t) const {
    out.template emplace<FftDescriptor<wtype>>(this->bits_of(length));
}

template <typename wtype>
void FftAlgorithm<wtype>::sqr_partial(const MultiplyContext& ctx, wtype* T, upL_t s, upL_t L, const wtype* A,
                                      upL_t AL) const {
    const FftDescriptor<wtype> descriptor(this->bits_of(2 * AL));
    AlignedBufferC buffer = ctx.buffer();
    void* array = buffer.spawn(descriptor.array_bytes());
    const MultiplyContext inner = ctx.with_scratch(buffer.spawn_buffer(descriptor.scratch_bytes()));
    descriptor.sqr(inner, T, s, L, A, AL, array);
}

template <typename wtype>
void FftAlgorithm<wtype>::mul_partial(const MultiplyContext& ctx, wtype* T, upL_t s, upL_t L, const wtype* A,
                                      upL_t AL, const wtype* B, upL_t BL) const {
    if (A == B && AL == BL) return sqr_partial(ctx, T, s, L, A, AL);
    const FftDescriptor<wtype> descriptor(this->bits_of(AL + BL));
    AlignedBufferC buffer = ctx.buffer();
    void* array_a = buffer.spawn(descriptor.array_bytes());
    void* array_b = buffer.spawn(descriptor.array_bytes());
    const MultiplyContext inner = ctx.with_scratch(buffer.spawn_buffer(descriptor.scratch_bytes()));
    descriptor.mul(inner, T, s, L, A, AL, B, BL, array_a, array_b);
}

template class FftAlgorithm<std::uint32_t>;
template class FftAlgorithm<std::uint64_t>;

}  // namespace lumo
