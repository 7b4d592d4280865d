#include "lumo/multiply/ntt/ntt_algorithm.h"

#include <algorithm>
#include <limits>

#include "lumo/multiply/ntt/c17/c17_family.h"
#include "lumo/multiply/ntt/n64/n64_family.h"
#include "lumo/multiply/ntt/vst/vst_family.h"
#include "lumo/multiply/ntt/vt3/vt3_family.h"

namespace lumo {

namespace {

/// Bits of `length` words; a length whose bits do not fit comes out beyond all rows.
template <typename wtype>
upL_t bits_of(upL_t length) {
    constexpr upL_t most = std::numeric_limits<upL_t>::max();
    return length > most / WordTraits<wtype>::bits ? most : length * WordTraits<wtype>::bits;
}

/// Calls f with every row that products of up to `length` words take.
template <typename wtype, typename Family, typename F>
void for_rows_up_to(upL_t length, F&& f) {
    const auto& last = Family::size_for(bits_of<wtype>(length));
    for (const auto& size : Family::sizes()) {
        f(size);
        if (size == last) return;
    }
}

}  // namespace

template <typename wtype, typename Family>
void NttAlgorithm<wtype, Family>::ensure_tables(upL_t length) const {
    for_rows_up_to<wtype, Family>(
        length, [](const auto& size) { NttDescriptor<wtype, typename Family::Transform>(size, 1); });
}

template <typename wtype, typename Family>
upL_t NttAlgorithm<wtype, Family>::max_buffer_sizes(BufferSizes& sizes, upL_t length, upL_t tds) const {
    sizes = {};
    for_rows_up_to<wtype, Family>(length, [&](const auto& size) {
        const typename Family::Footprint footprint(size, tds);
        sizes.merge({footprint.image, footprint.scratch, footprint.prime});
    });
    return sizes.total();
}

template <typename wtype, typename Family>
upL_t NttAlgorithm<wtype, Family>::max_buffer_size(upL_t length, upL_t tds) const {
    upL_t bytes = 0;
    for_rows_up_to<wtype, Family>(length, [&](const auto& size) {
        bytes = std::max(bytes, typename Family::Footprint(size, tds).small_total());
    });
    return bytes;
}

template <typename wtype, typename Family>
void NttAlgorithm<wtype, Family>::params(TransformHolder<wtype>& out, upL_t length, upL_t tds) const {
    out.template emplace<Descriptor>(Family::size_for(bits_of<wtype>(length)), tds);
}

template <typename wtype, typename Family>
void NttAlgorithm<wtype, Family>::sqr(const MultiplyContext& ctx, wtype* T, const wtype* A, upL_t AL) const {
    sqr_partial(ctx, T, 0, 2 * AL, A, AL);
}

template <typename wtype, typename Family>
void NttAlgorithm<wtype, Family>::mul(const MultiplyContext& ctx, wtype* T, const wtype* A, upL_t AL,
                                      const wtype* B, upL_t BL) const {
    mul_partial(ctx, T, 0, AL + BL, A, AL, B, BL);
}

template <typename wtype, typename Family>
void NttAlgorithm<wtype, Family>::sqr_partial(const MultiplyContext& ctx, wtype* T, upL_t s, upL_t L,
                                              const wtype* A, upL_t AL) const {
    const Descriptor descriptor(Family::size_for(bits_of<wtype>(2 * AL)), ctx.tds);
    AlignedBufferC buffer = ctx.buffer();
    void* array = buffer.spawn(descriptor.array_bytes());
    descriptor.multiply(ctx.with_scratch(buffer), T, s, L, A, AL, nullptr, 0, array, nullptr, 0);
}

template <typename wtype, typename Family>
void NttAlgorithm<wtype, Family>::multiply(const MultiplyContext& ctx, wtype* T, upL_t s, upL_t L,
                                           const wtype* A, upL_t AL, const wtype* B, upL_t BL) const {
    if (A == B && AL == BL) return sqr_partial(ctx, T, s, L, A, AL);
    const Descriptor descriptor(Family::size_for(bits_of<wtype>(AL + BL)), ctx.tds);
    AlignedBufferC buffer = ctx.buffer();
    void* array_a = buffer.spawn(descriptor.array_bytes());
    void* work = buffer.spawn(descriptor.scratch_bytes());
    descriptor.mul_in_parts(ctx.with_scratch({work, descriptor.scratch_bytes()}), T, s, L, A, AL, B, BL,
                            array_a, buffer);
}

template <typename wtype, typename Family>
void NttAlgorithm<wtype, Family>::mul_partial(const MultiplyContext& ctx, wtype* T, upL_t s, upL_t L,
                                              const wtype* A, upL_t AL, const wtype* B, upL_t BL) const {
    multiply(ctx, T, s, L, A, AL, B, BL);
}

template <typename wtype, typename Family>
void NttAlgorithm<wtype, Family>::mul_small(const MultiplyContext& ctx, wtype* T, upL_t s, upL_t L,
                                            const wtype* A, upL_t AL, const wtype* B, upL_t BL) const {
    multiply(ctx, T, s, L, A, AL, B, BL);
}

template class NttAlgorithm<std::uint32_t, C17Family>;
template class NttAlgorithm<std::uint64_t, C17Family>;
template class NttAlgorithm<std::uint32_t, N64Family>;
template class NttAlgorithm<std::uint64_t, N64Family>;
template class NttAlgorithm<std::uint32_t, VstFamily>;
template class NttAlgorithm<std::uint64_t, VstFamily>;
template class NttAlgorithm<std::uint32_t, Vt3Family>;
template class NttAlgorithm<std::uint64_t, Vt3Family>;

}  // namespace lumo
