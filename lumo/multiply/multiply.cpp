#include "lumo/multiply/multiply.h"

#include "lumo/multiply/algorithm_registry.h"
#include "lumo/multiply/algorithm_table.h"
#include "lumo/multiply/fft/fft_tables.h"
#include "lumo/multiply/ntt/vt3/vt3_prime_table.h"
#include "lumo/multiply/ntt/vt3/vt3_sizes.h"
#include "lumo/multiply/partial_cut.h"

namespace lumo::Multiply {

template <typename wtype>
void sqr(const MultiplyContext& ctx, wtype* T, const wtype* A, upL_t L) {
    get_algorithm<wtype>(2 * L).sqr(ctx, T, A, L);
}

template <typename wtype>
void mul(const MultiplyContext& ctx, wtype* T, const wtype* A, upL_t AL, const wtype* B, upL_t BL) {
    get_algorithm<wtype>(AL + BL).mul(ctx, T, A, AL, B, BL);
}

template <typename wtype>
void sqr_partial(const MultiplyContext& ctx, wtype* T, upL_t s, upL_t L, const wtype* A, upL_t AL) {
    if (s >= L) return;
    const SqrCut<wtype> cut(s, L, A, AL);
    get_algorithm<wtype>(cut.key()).sqr_partial(ctx, T, cut.s, cut.L, cut.A, cut.AL);
}

template <typename wtype>
void mul_partial(const MultiplyContext& ctx, wtype* T, upL_t s, upL_t L, const wtype* A, upL_t AL,
                 const wtype* B, upL_t BL) {
    if (s >= L) return;
    const MulCut<wtype> cut(s, L, A, AL, B, BL);
    get_algorithm<wtype>(cut.key()).mul_partial(ctx, T, cut.s, cut.L, cut.A, cut.AL, cut.B, cut.BL);
}

template <typename wtype>
void mul_small(const MultiplyContext& ctx, wtype* T, upL_t s, upL_t L, const wtype* A, upL_t AL,
               const wtype* B, upL_t BL) {
    if (s >= L) return;
    const MulCut<wtype> cut(s, L, A, AL, B, BL);
    get_algorithm<wtype>(cut.key()).mul_small(ctx, T, cut.s, cut.L, cut.A, cut.AL, cut.B, cut.BL);
}

template <typename wtype>
const BasicAlgorithm<wtype>& get_algorithm(upL_t length) {
    return basic_algorithm_table<wtype>().get_algorithm(length);
}

template <typename wtype>
void params(TransformHolder<wtype>& out, upL_t length, upL_t tds) {
    get_algorithm<wtype>(length).params(out, length, tds);
}

template <typename wtype>
upL_t max_buffer_sizes(BufferSizes& sizes, upL_t length, upL_t tds) {
    return basic_algorithm_table<wtype>().max_buffer_sizes(sizes, length, tds);
}

template <typename wtype>
upL_t max_buffer_size(upL_t length, upL_t tds, bool small) {
    return basic_algorithm_table<wtype>().max_buffer_size(length, tds, small);
}

template <typename wtype>
upL_t partial_buffer_size(upL_t p, upL_t AL, upL_t BL, upL_t tds) {
    const upL_t L = AL + BL;
    const upL_t kept = std::min(L, p + 2);
    if (kept == 0) return 0;
    const MulCut<wtype> cut(L - kept, L, nullptr, AL, nullptr, BL);
    BufferSizes sizes;
    max_buffer_sizes<wtype>(sizes, cut.key(), tds);
    return sizes.total();
}

template <typename wtype>
upL_t max_length() {
    return basic_algorithm_table<wtype>().max_length();
}

upL_t table_bytes(upL_t bits) {
    return fft_table_bytes(std::min(bits, FFT_TABLE_BITS)) +
           (bits > FFT_TABLE_BITS ? vt3_table_bytes(std::min(bits, VT3_MAX_BITS)) : 0);
}

void build_tables(AlignedBufferC buffer, upL_t bits, const ParallelContext& ctx) {
    const upL_t fft_bits = std::min(bits, FFT_TABLE_BITS);
    build_fft_tables(buffer.spawn_buffer(fft_table_bytes(fft_bits)), fft_bits, ctx);
    if (bits > FFT_TABLE_BITS) build_vt3_tables(buffer, std::min(bits, VT3_MAX_BITS), ctx);
    ensure_tables(bits);
}

void release_tables() {
    release_fft_tables();
    release_vt3_tables();
}

void ensure_tables(upL_t bits) {
    basic_algorithm_table<std::uint64_t>().ensure_tables((bits + 63) / 64);
}

template void sqr(const MultiplyContext&, std::uint32_t*, const std::uint32_t*, upL_t);
template void mul(const MultiplyContext&, std::uint32_t*, const std::uint32_t*, upL_t, const std::uint32_t*,
                  upL_t);
template void sqr_partial(const MultiplyContext&, std::uint32_t*, upL_t, upL_t, const std::uint32_t*, upL_t);
template void mul_partial(const MultiplyContext&, std::uint32_t*, upL_t, upL_t, const std::uint32_t*, upL_t,
                          const std::uint32_t*, upL_t);
template void mul_small(const MultiplyContext&, std::uint32_t*, upL_t, upL_t, const std::uint32_t*, upL_t,
                        const std::uint32_t*, upL_t);
template const BasicAlgorithm<std::uint32_t>& get_algorithm(upL_t);
template void params(TransformHolder<std::uint32_t>&, upL_t, upL_t);
template upL_t max_buffer_sizes<std::uint32_t>(BufferSizes&, upL_t, upL_t);
template upL_t max_buffer_size<std::uint32_t>(upL_t, upL_t, bool);
template upL_t partial_buffer_size<std::uint32_t>(upL_t, upL_t, upL_t, upL_t);
template upL_t max_length<std::uint32_t>();

template void sqr(const MultiplyContext&, std::uint64_t*, const std::uint64_t*, upL_t);
template void mul(const MultiplyContext&, std::uint64_t*, const std::uint64_t*, upL_t, const std::uint64_t*,
                  upL_t);
template void sqr_partial(const MultiplyContext&, std::uint64_t*, upL_t, upL_t, const std::uint64_t*, upL_t);
template void mul_partial(const MultiplyContext&, std::uint64_t*, upL_t, upL_t, const std::uint64_t*, upL_t,
                          const std::uint64_t*, upL_t);
template void mul_small(const MultiplyContext&, std::uint64_t*, upL_t, upL_t, const std::uint64_t*, upL_t,
                        const std::uint64_t*, upL_t);
template const BasicAlgorithm<std::uint64_t>& get_algorithm(upL_t);
template void params(TransformHolder<std::uint64_t>&, upL_t, upL_t);
template upL_t max_buffer_sizes<std::uint64_t>(BufferSizes&, upL_t, upL_t);
template upL_t max_buffer_size<std::uint64_t>(upL_t, upL_t, bool);
template upL_t partial_buffer_size<std::uint64_t>(upL_t, upL_t, upL_t, upL_t);
template upL_t max_length<std::uint64_t>();

}  // namespace lumo::Multiply
