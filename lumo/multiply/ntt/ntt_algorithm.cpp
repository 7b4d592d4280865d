#include "lumo/multiply/ntt/ntt_algorithm.h"

#include <algorithm>

#include "lumo/multiply/ntt/c17/c17_transform.h"
#include "lumo/multiply/ntt/n64/n64_transform.h"
#include "lumo/multiply/ntt/vst/vst_transform.h"
#include "lumo/multiply/ntt/vt3/vt3_transform.h"

namespace lumo {

namespace {

/// Calls f with every row that products of up to `bits` take, the longest first: what its tables hold serves
/// the others.
template <typename Transform, typename F>
void for_rows_up_to(upL_t bits, F&& f) {
    const auto sizes = Transform::sizes();
    for (upL_t i = static_cast<upL_t>(&Transform::size_for(bits) - sizes.data()) + 1; i-- > 0;) f(sizes[i]);
}

}  // namespace

template <typename wtype, typename Transform>
void NttAlgorithm<wtype, Transform>::ensure_tables(upL_t length) const {
    for_rows_up_to<Transform>(this->bits_of(length), [](const auto& size) { Transform(size, 1); });
}

template <typename wtype, typename Transform>
upL_t NttAlgorithm<wtype, Transform>::max_buffer_sizes(BufferSizes& sizes, upL_t length, upL_t tds) const {
    sizes = {};
    for_rows_up_to<Transform>(this->bits_of(length), [&](const auto& size) {
        const typename Transform::Footprint footprint(size, tds);
        sizes.merge({footprint.image, footprint.scratch, footprint.prime});
    });
    return sizes.total();
}

template <typename wtype, typename Transform>
upL_t NttAlgorithm<wtype, Transform>::max_buffer_size(upL_t length, upL_t tds) const {
    upL_t bytes = 0;
    for_rows_up_to<Transform>(this->bits_of(length), [&](const auto& size) {
        bytes = std::max(bytes, typename Transform::Footprint(size, tds).small_total());
    });
    return bytes;
}

template <typename wtype, typename Transform>
void NttAlgorithm<wtype, Transform>::params(TransformHolder<wtype>& out, upL_t length, upL_t tds) const {
    out.template emplace<Descriptor>(Transform::size_for(this->bits_of(length)), tds);
}

template <typename wtype, typename Transform>
void NttAlgorithm<wtype, Transform>::sqr_partial(const MultiplyContext& ctx, wtype* T, upL_t s, upL_t L,
                                                 const wtype* A, upL_t AL) const {
    const Descriptor descriptor(Transform::size_for(this->bits_of(2 * AL)), ctx.tds);
    AlignedBufferC buffer = ctx.buffer();
    void* array = buffer.spawn(descriptor.array_bytes());
    descriptor.multiply(ctx.with_scratch(buffer), T, s, L, A, AL, nullptr, 0, array, nullptr, 0);
}

template <typename wtype, typename Transform>
void NttAlgorithm<wtype, Transform>::mul_partial(const MultiplyContext& ctx, wtype* T, upL_t s, upL_t L,
                                                 const wtype* A, upL_t AL, const wtype* B, upL_t BL) const {
    if (A == B && AL == BL) return sqr_partial(ctx, T, s, L, A, AL);
    const Descriptor descriptor(Transform::size_for(this->bits_of(AL + BL)), ctx.tds);
    AlignedBufferC buffer = ctx.buffer();
    void* array_a = buffer.spawn(descriptor.array_bytes());
    void* work = buffer.spawn(descriptor.scratch_bytes());
    descriptor.mul_in_parts(ctx.with_scratch({work, descriptor.scratch_bytes()}), T, s, L, A, AL, B, BL,
                            array_a, buffer);
}

template class NttAlgorithm<std::uint32_t, C17Transform>;
template class NttAlgorithm<std::uint64_t, C17Transform>;
template class NttAlgorithm<std::uint32_t, N64Transform>;
template class NttAlgorithm<std::uint64_t, N64Transform>;
template class NttAlgorithm<std::uint32_t, VstTransform>;
template class NttAlgorithm<std::uint64_t, VstTransform>;
template class NttAlgorithm<std::uint32_t, Vt3Transform>;
template class NttAlgorithm<std::uint64_t, Vt3Transform>;

}  // namespace lumo
