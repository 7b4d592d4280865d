#include "lumo/multiply/ntt/ntt_descriptor.h"

#include <algorithm>

#include "lumo/multiply/ntt/c17/c17_transform.h"
#include "lumo/multiply/ntt/crt_mulp.h"
#include "lumo/multiply/ntt/n64/n64_transform.h"
#include "lumo/multiply/ntt/vst/vst_transform.h"
#include "lumo/multiply/ntt/vt3/vt3_transform.h"

namespace lumo {

namespace {

/// Modulo 2^64 - 1.
std::uint64_t multiply_sums(std::uint64_t a, std::uint64_t b) {
    const unsigned __int128 t = static_cast<unsigned __int128>(a) * b;
    const auto low = static_cast<std::uint64_t>(t), high = static_cast<std::uint64_t>(t >> 64);
    return low + high + (low + high < low);
}

bool same_sum(std::uint64_t a, std::uint64_t b) {
    return a == b || (a + 1 <= 1 && b + 1 <= 1);
}

template <typename wtype>
const unsigned char* bytes_of(const wtype* A) {
    return reinterpret_cast<const unsigned char*>(A);
}

}  // namespace

template <typename wtype, typename Transform>
NttDescriptor<wtype, Transform>::NttDescriptor(const typename Transform::Size& size, upL_t tds)
    : NttDescriptor(Transform(size, tds)) {}

template <typename wtype, typename Transform>
NttDescriptor<wtype, Transform>::NttDescriptor(const Transform& made)
    : TransformDescriptor<wtype>(made.size().bits(), made.footprint().image, made.footprint().scratch),
      transform(made) {}

template <typename wtype, typename Transform>
bool NttDescriptor<wtype, Transform>::same_transform(const TransformDescriptor<wtype>& other) const {
    const auto* same = dynamic_cast<const NttDescriptor*>(&other);
    return same && same->transform.shares_images_with(transform);
}

/// Behind the residues an image keeps the sum of its operand's words.
template <typename wtype, typename Transform>
std::uint64_t& NttDescriptor<wtype, Transform>::sum_of(void* image) const {
    return *reinterpret_cast<std::uint64_t*>(static_cast<unsigned char*>(image) + this->array_bytes() -
                                             ALIGNMENT_BYTES);
}

template <typename wtype, typename Transform>
void NttDescriptor<wtype, Transform>::check_length(upL_t AL) const {
    if (AL > this->words())
        throw ConvolutionTooSmallException(Transform::IDENTITY.tag, "Convolution length is too small.",
                                           this->length_bits(), AL * WordTraits<wtype>::bits);
}

template <typename wtype, typename Transform>
void NttDescriptor<wtype, Transform>::forward(const MultiplyContext& ctx, const wtype* A, upL_t AL,
                                              void* image) const {
    check_length(AL);
    auto* residues = static_cast<std::uint64_t*>(image);
    const PrimeRange primes{0, transform.primes()};
    const std::uint64_t sum =
        transform.columns(ctx.parallel(), ctx.buffer(), residues, bytes_of(A), AL * sizeof(wtype), primes);
    transform.rows(ctx.parallel(), ctx.buffer(), residues, primes);
    sum_of(image) = sum;
}

template <typename wtype, typename Transform>
void NttDescriptor<wtype, Transform>::inverse_fsqr(const MultiplyContext& ctx, wtype* T, upL_t s, upL_t L,
                                                   void* out, const void* F) const {
    inverse_fmul(ctx, T, s, L, out, F, F);
}

template <typename wtype, typename Transform>
void NttDescriptor<wtype, Transform>::inverse_fmul(const MultiplyContext& ctx, wtype* T, upL_t s, upL_t L,
                                                   void* out, const void* F, const void* G) const {
    require(s <= L && L <= this->words(), "Invalid Function Parameters:   ", "NttDescriptor::inverse_fmul()");
    // Images through rows() are only read.
    auto *f = const_cast<void*>(F), *g = const_cast<void*>(G);
    const std::uint64_t expected = multiply_sums(sum_of(f), sum_of(g));
    transform.products(ctx.parallel(), ctx.buffer(), static_cast<std::uint64_t*>(out),
                       static_cast<std::uint64_t*>(f), false, static_cast<std::uint64_t*>(g), false,
                       {0, transform.primes()});
    check(same_sum(leave(ctx, T, s, L, out), expected));
}

template <typename wtype, typename Transform>
std::uint64_t NttDescriptor<wtype, Transform>::leave(const MultiplyContext& ctx, wtype* T, upL_t s, upL_t L,
                                                     const void* image) const {
    const NttWindow window{reinterpret_cast<unsigned char*>(T), s * sizeof(wtype), L * sizeof(wtype)};
    const NttOutcome outcome =
        transform.leave(ctx.parallel(), ctx.buffer(), static_cast<const std::uint64_t*>(image), window);
    if (!outcome.plausible)
        throw ConvolutionFailedException(Transform::IDENTITY.tag, "Coefficient is too large.");
    return outcome.sum;
}

template <typename wtype, typename Transform>
void NttDescriptor<wtype, Transform>::check(bool right) {
    if (!right)
        throw ConvolutionFailedException(Transform::IDENTITY.tag, "Convolution failed the modular check.");
}

template <typename wtype, typename Transform>
void NttDescriptor<wtype, Transform>::multiply(const MultiplyContext& ctx, wtype* T, upL_t s, upL_t L,
                                               const wtype* A, upL_t AL, const wtype* B, upL_t BL,
                                               void* array_a, void* array_b, unsigned group) const {
    check_length(AL);
    check_length(BL);
    check_crt_mulp(this->words(), AL, B ? BL : AL);
    const ParallelContext parallel = ctx.parallel();
    const AlignedBufferC work = ctx.buffer();
    auto* a = static_cast<std::uint64_t*>(array_a);
    auto* b = static_cast<std::uint64_t*>(array_b);
    const std::uint64_t sum_a =
        transform.columns(parallel, work, a, bytes_of(A), AL * sizeof(wtype), {0, transform.primes()});
    std::uint64_t sum_b = sum_a;
    if (B) {
        for (unsigned from = 0; from < transform.primes(); from += group) {
            const PrimeRange primes{from, std::min(from + group, transform.primes())};
            std::uint64_t* part = a + from * (prime_bytes() / 8);
            sum_b = transform.columns(parallel, work, b, bytes_of(B), BL * sizeof(wtype), primes);
            transform.products(parallel, work, part, part, true, b, true, primes);
        }
    } else {
        transform.products(parallel, work, a, a, true, a, true, {0, transform.primes()});
    }
    check(same_sum(leave(ctx, T, s, L, a), multiply_sums(sum_a, sum_b)));
}

template <typename wtype, typename Transform>
upL_t NttDescriptor<wtype, Transform>::fitting_primes(upL_t room) const {
    const upL_t n = transform.primes();
    const upL_t fitting = Transform::PRIME_BY_PRIME ? 1 : std::clamp(room / prime_bytes(), upL_t(1), n);
    const upL_t rounds = (n + fitting - 1) / fitting;
    return (n + rounds - 1) / rounds;
}

template <typename wtype, typename Transform>
void NttDescriptor<wtype, Transform>::mul_in_parts(const MultiplyContext& ctx, wtype* T, upL_t s, upL_t L,
                                                   const wtype* A, upL_t AL, const wtype* B, upL_t BL,
                                                   void* image, AlignedBufferC part) const {
    const upL_t group = fitting_primes(part.size());
    void* residues = part.spawn(group * prime_bytes());
    multiply(ctx, T, s, L, A, AL, B, BL, image, residues, unsigned(group));
}

template class NttDescriptor<std::uint32_t, C17Transform>;
template class NttDescriptor<std::uint64_t, C17Transform>;
template class NttDescriptor<std::uint32_t, N64Transform>;
template class NttDescriptor<std::uint64_t, N64Transform>;
template class NttDescriptor<std::uint32_t, VstTransform>;
template class NttDescriptor<std::uint64_t, VstTransform>;
template class NttDescriptor<std::uint32_t, Vt3Transform>;
template class NttDescriptor<std::uint64_t, Vt3Transform>;

}  // namespace lumo
