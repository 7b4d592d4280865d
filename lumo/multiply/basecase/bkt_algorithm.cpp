#include "lumo/multiply/basecase/bkt_algorithm.h"

#include "lumo/multiply/basecase/bkt_descriptor.h"
#include "lumo/multiply/basecase/bkt_sizes.h"
#include "lumo/multiply/basecase/karatsuba.h"
#include "lumo/numbers/words/words.h"

namespace lumo {

namespace {

/// The shortest products need no scratch, so their callers need not have any.
template <typename wtype>
wtype* take(AlignedBufferC& buffer, upL_t words) {
    return words == 0 ? nullptr : buffer.spawn_words<wtype>(words);
}

}  // namespace

template <typename wtype>
upL_t BktAlgorithm<wtype>::max_buffer_sizes(BufferSizes& sizes, upL_t length, upL_t) const {
    sizes = {bkt_array_bytes<wtype>(length), bkt_scratch_bytes<wtype>(length)};
    return sizes.total();
}

template <typename wtype>
void BktAlgorithm<wtype>::params(TransformHolder<wtype>& out, upL_t length, upL_t) const {
    out.template emplace<BktDescriptor<wtype>>(length);
}

template <typename wtype>
void BktAlgorithm<wtype>::sqr(const MultiplyContext& ctx, wtype* T, const wtype* A, upL_t AL) const {
    AlignedBufferC buffer = ctx.buffer();
    Basecase::sqrK(T, A, AL, take<wtype>(buffer, Basecase::sqr_scratch<wtype>(AL)));
}

template <typename wtype>
void BktAlgorithm<wtype>::mul(const MultiplyContext& ctx, wtype* T, const wtype* A, upL_t AL, const wtype* B,
                              upL_t BL) const {
    if (A == B && AL == BL) return sqr(ctx, T, A, AL);
    AlignedBufferC buffer = ctx.buffer();
    Basecase::mulK(T, A, AL, B, BL, take<wtype>(buffer, Basecase::mul_scratch<wtype>(AL, BL)));
}

template <typename wtype>
void BktAlgorithm<wtype>::sqr_partial(const MultiplyContext& ctx, wtype* T, upL_t s, upL_t L, const wtype* A,
                                      upL_t AL) const {
    if (s == 0 && L == 2 * AL) return sqr(ctx, T, A, AL);
    AlignedBufferC buffer = ctx.buffer();
    auto* product = buffer.spawn_words<wtype>(2 * AL);
    sqr(ctx.with_scratch(buffer), product, A, AL);
    bp_copy(T, product + s, L - s);
}

template <typename wtype>
void BktAlgorithm<wtype>::mul_partial(const MultiplyContext& ctx, wtype* T, upL_t s, upL_t L, const wtype* A,
                                      upL_t AL, const wtype* B, upL_t BL) const {
    if (s == 0 && L == AL + BL) return mul(ctx, T, A, AL, B, BL);
    AlignedBufferC buffer = ctx.buffer();
    auto* product = buffer.spawn_words<wtype>(AL + BL);
    mul(ctx.with_scratch(buffer), product, A, AL, B, BL);
    bp_copy(T, product + s, L - s);
}

template class BktAlgorithm<std::uint32_t>;
template class BktAlgorithm<std::uint64_t>;

}  // namespace lumo
