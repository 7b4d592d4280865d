#include "lumo/multiply/fft/fft_descriptor.h"

#include <algorithm>
#include <cstring>

namespace lumo {

template <typename wtype>
FftDescriptor<wtype>::FftDescriptor(const FftSize& size)
    : TransformDescriptor<wtype>(size.limit_bits, size.array_bytes(), size.scratch_bytes()),
      transform(size) {}

template <typename wtype>
bool FftDescriptor<wtype>::same_transform(const TransformDescriptor<wtype>& other) const {
    const auto* same = dynamic_cast<const FftDescriptor*>(&other);
    return same && same->size().limit_bits == size().limit_bits;
}

template <typename wtype>
void FftDescriptor<wtype>::require_operand(const char* location, const MultiplyContext& ctx,
                                           upL_t length) const {
    if (length > this->words())
        throw ConvolutionTooSmallException("FFT", "Convolution length is too small.", this->length_bits(),
                                           length * WordTraits<wtype>::bits);
    require_capacity(location, ctx.scratch_bytes, this->scratch_bytes());
}

template <typename wtype>
void FftDescriptor<wtype>::require_window(const char* location, const MultiplyContext& ctx, upL_t s,
                                          upL_t L) const {
    require(s <= L && L <= this->words(), "Invalid Function Parameters:   ", location);
    require_capacity(location, ctx.scratch_bytes, this->scratch_bytes());
}

template <typename wtype>
void FftDescriptor<wtype>::forward(const MultiplyContext& ctx, const wtype* A, upL_t AL, void* image) const {
    require_operand("FftDescriptor::forward()", ctx, AL);
    transform.forward(ctx.parallel(), static_cast<double*>(image), A, AL * sizeof(wtype),
                      static_cast<unsigned char*>(ctx.scratch), probe);
}

template <typename wtype>
void FftDescriptor<wtype>::inverse_fsqr(const MultiplyContext& ctx, wtype* T, upL_t s, upL_t L, void* out,
                                        const void* F) const {
    inverse_fmul(ctx, T, s, L, out, F, F);
}

template <typename wtype>
void FftDescriptor<wtype>::inverse_fmul(const MultiplyContext& ctx, wtype* T, upL_t s, upL_t L, void* out,
                                        const void* F, const void* G) const {
    require_window("FftDescriptor::inverse_fmul()", ctx, s, L);
    transform.inverse(ctx.parallel(), static_cast<double*>(out), static_cast<const double*>(F),
                      static_cast<const double*>(G), static_cast<unsigned char*>(ctx.scratch), probe);
    copy_window(ctx, T, s, L);
}

template <typename wtype>
void FftDescriptor<wtype>::sqr(const MultiplyContext& ctx, wtype* T, upL_t s, upL_t L, const wtype* A,
                               upL_t AL, void* a) const {
    require_operand("FftDescriptor::sqr()", ctx, AL);
    require_window("FftDescriptor::sqr()", ctx, s, L);
    transform.square(ctx.parallel(), static_cast<double*>(a), A, AL * sizeof(wtype),
                     static_cast<unsigned char*>(ctx.scratch));
    copy_window(ctx, T, s, L);
}

template <typename wtype>
void FftDescriptor<wtype>::mul(const MultiplyContext& ctx, wtype* T, upL_t s, upL_t L, const wtype* A,
                               upL_t AL, const wtype* B, upL_t BL, void* a, void* b) const {
    require_operand("FftDescriptor::mul()", ctx, AL);
    require_operand("FftDescriptor::mul()", ctx, BL);
    require_window("FftDescriptor::mul()", ctx, s, L);
    transform.multiply(ctx.parallel(), static_cast<double*>(a), static_cast<double*>(b), A,
                       AL * sizeof(wtype), B, BL * sizeof(wtype), static_cast<unsigned char*>(ctx.scratch));
    copy_window(ctx, T, s, L);
}

template <typename wtype>
void FftDescriptor<wtype>::copy_window(const MultiplyContext& ctx, wtype* T, upL_t s, upL_t L) const {
    if (s == L) return;
    const auto* from = static_cast<const unsigned char*>(ctx.scratch) + s * sizeof(wtype);
    const upL_t bytes = (L - s) * sizeof(wtype);
    auto* to = reinterpret_cast<unsigned char*>(T);
    constexpr upL_t CHUNK = upL_t(1) << 18;
    const upL_t pieces = std::min(ctx.tds, bytes / CHUNK);
    if (pieces <= 1) {
        std::memcpy(to, from, bytes);
    } else {
        parallel_for(*ctx.parallelizer, 0, pieces, [&](upL_t i) {
            const upL_t begin = bytes * i / pieces, end = bytes * (i + 1) / pieces;
            std::memcpy(to + begin, from + begin, end - begin);
        });
    }
}

template class FftDescriptor<std::uint32_t>;
template class FftDescriptor<std::uint64_t>;

}  // namespace lumo
