#include <immintrin.h>

#include <algorithm>
#include <cstdint>

#include "lumo/multiply/kernels/mul52_kernel.h"

/// Operands are cut into limbs of 52 bits. Column c of the product is the sum of the low halves of A[c - j]
/// B[j] and of the high halves of A[c - 1 - j] B[j] over all j: a vector holds eight columns, for which eight
/// neighbours of A meet one limb of B. (Gueron and Krasnov, "Accelerating big integer arithmetic using Intel
/// IFMA extensions", 2016, use the instruction so by rows.) A column sums at most 2 * 316 halves below 2^52:
/// no sum reaches 2^62.
namespace lumo::kernels {

namespace {

constexpr std::size_t LANES = 8, LIMB_BITS = 52, VECTOR_BYTES = LANES * LIMB_BITS / 8;

constexpr std::size_t limbs_of(std::size_t digits) {
    return (64 * digits + LIMB_BITS - 1) / LIMB_BITS;
}
constexpr std::size_t vectors_of(std::size_t limbs) {
    return (limbs + LANES - 1) / LANES;
}

/// Vectors of columns that are summed at a time: so many chains of sums hide each other's latency.
constexpr std::size_t GROUP = 4;
/// Zeros around the limbs of A, where a group of columns reaches beyond them.
constexpr std::size_t MARGIN = GROUP * LANES;
constexpr std::size_t MOST_LIMBS = vectors_of(limbs_of(MUL52_MOST_DIGITS)) * LANES;

static_assert(2 * MOST_LIMBS < std::size_t(1) << 10, "a column stays below 2^62");

inline __m512i mask52() {
    return _mm512_set1_epi64((std::int64_t(1) << LIMB_BITS) - 1);
}

/// Eight limbs from 52 bytes; the rest of x is not looked at.
inline __m512i unpack(__m512i x) {
    const __m512i low = _mm512_permutexvar_epi64(_mm512_setr_epi64(0, 0, 1, 2, 3, 4, 4, 5), x);
    const __m512i high = _mm512_permutexvar_epi64(_mm512_setr_epi64(0, 1, 2, 3, 4, 5, 5, 6), x);
    const __m512i down = _mm512_srlv_epi64(low, _mm512_setr_epi64(0, 52, 40, 28, 16, 4, 56, 44));
    const __m512i up = _mm512_sllv_epi64(high, _mm512_setr_epi64(64, 12, 24, 36, 48, 60, 8, 20));
    return _mm512_and_epi64(_mm512_or_epi64(down, up), mask52());
}

/// 52 bytes from eight limbs, and anything in the 12 above them.
inline __m512i pack(__m512i x) {
    const __m512i first = _mm512_permutexvar_epi64(_mm512_setr_epi64(0, 1, 2, 3, 4, 6, 7, 7), x);
    const __m512i second = _mm512_permutexvar_epi64(_mm512_setr_epi64(1, 2, 3, 4, 5, 7, 7, 7), x);
    const __m512i third = _mm512_permutexvar_epi64(_mm512_set1_epi64(6), x);
    const __m512i a = _mm512_srlv_epi64(first, _mm512_setr_epi64(0, 12, 24, 36, 48, 8, 20, 64));
    const __m512i b = _mm512_sllv_epi64(second, _mm512_setr_epi64(52, 40, 28, 16, 4, 44, 64, 64));
    const __m512i c = _mm512_sllv_epi64(third, _mm512_setr_epi64(64, 64, 64, 64, 56, 64, 64, 64));
    return _mm512_or_epi64(_mm512_or_epi64(a, b), c);
}

/// A mask of that many bytes of a vector, of all if there are more.
inline __mmask64 first_bytes(std::size_t bytes) {
    return bytes >= 64 ? ~__mmask64(0) : (__mmask64(1) << bytes) - 1;
}

/// The limbs of n digits, filled up with zeros to whole vectors.
inline void cut(std::uint64_t* limbs, const void* operand, std::size_t n) {
    const auto* bytes = static_cast<const unsigned char*>(operand);
    const std::size_t vectors = vectors_of(limbs_of(n));
    for (std::size_t v = 0; v < vectors; v++) {
        const std::size_t at = v * VECTOR_BYTES;
        _mm512_store_si512(limbs + v * LANES,
                           unpack(_mm512_maskz_loadu_epi8(first_bytes(8 * n - at), bytes + at)));
    }
}

/// Takes columns to limbs from the lowest on. A column's part above 52 bits goes one lane up, after which a
/// lane that is full hands a carry on: the lanes that are too large, and those that a carry makes so, are
/// found by the addition of their masks.
class Limbs {
 public:
    /// From the sums of low halves, and those of high halves, which count one column further up.
    __m512i operator()(__m512i low, __m512i high) {
        const __m512i columns = _mm512_add_epi64(low, _mm512_alignr_epi64(high, last_high, 7));
        const __m512i above = _mm512_srli_epi64(columns, LIMB_BITS);
        const __m512i limbs =
            _mm512_add_epi64(_mm512_and_epi64(columns, mask52()), _mm512_alignr_epi64(above, last_above, 7));
        last_high = high;
        last_above = above;
        const unsigned over = _mm512_cmpgt_epu64_mask(limbs, mask52());
        const unsigned full = _mm512_cmpeq_epu64_mask(limbs, mask52());
        const unsigned sum = 2 * over + carry + full;
        carry = sum >> LANES;
        const auto one_more = static_cast<__mmask8>(sum ^ full);
        return _mm512_and_epi64(_mm512_mask_add_epi64(limbs, one_more, limbs, _mm512_set1_epi64(1)),
                                mask52());
    }

 private:
    __m512i last_high = _mm512_setzero_si512(), last_above = _mm512_setzero_si512();
    unsigned carry = 0;
};

/// The operands' limbs, and the product's bytes as they are made.
struct Product {
    const std::uint64_t* a;  ///< an limbs between zeros
    const std::uint64_t* b;
    std::size_t an, bn;
    unsigned char* bytes;
    std::size_t left;
    Limbs limbs;
};

inline void put(Product& x, __m512i packed) {
    _mm512_mask_storeu_epi8(x.bytes, first_bytes(x.left), packed);
    const std::size_t done = std::min(x.left, VECTOR_BYTES);
    x.bytes += done;
    x.left -= done;
}

/// Columns [first, first + LANES V).
template <std::size_t V>
inline void make_columns(Product& x, std::size_t first) {
    __m512i low[V], high[V];
    for (std::size_t v = 0; v < V; v++) low[v] = high[v] = _mm512_setzero_si512();
    const std::size_t from = first < x.an ? 0 : first - x.an + 1, to = std::min(x.bn, first + LANES * V);
    const std::uint64_t* a = x.a + first - from;
    for (std::size_t j = from; j < to; j++, a--) {
        const __m512i y = _mm512_set1_epi64(static_cast<std::int64_t>(x.b[j]));
        for (std::size_t v = 0; v < V; v++) {
            const __m512i z = _mm512_loadu_si512(a + LANES * v);
            low[v] = _mm512_madd52lo_epu64(low[v], z, y);
            high[v] = _mm512_madd52hi_epu64(high[v], z, y);
        }
    }
    for (std::size_t v = 0; v < V; v++) put(x, pack(x.limbs(low[v], high[v])));
}

}  // namespace

void mul52_ifma(void* T, const void* A, std::size_t n, const void* B, std::size_t m) {
    alignas(64) std::uint64_t a[MARGIN + MOST_LIMBS + MARGIN];
    alignas(64) std::uint64_t b[MOST_LIMBS];
    Product x{a + MARGIN, b, limbs_of(n), limbs_of(m), static_cast<unsigned char*>(T), 8 * (n + m), {}};
    const __m512i zero = _mm512_setzero_si512();
    for (std::size_t i = 0; i < MARGIN; i += LANES) {
        _mm512_store_si512(a + i, zero);
        _mm512_store_si512(a + MARGIN + vectors_of(x.an) * LANES + i, zero);
    }
    cut(a + MARGIN, A, n);
    cut(b, B, m);

    const std::size_t vectors = vectors_of(x.an + x.bn);
    std::size_t v = 0;
    for (; v + GROUP <= vectors; v += GROUP) make_columns<GROUP>(x, v * LANES);
    switch (vectors - v) {
        case 3:
            make_columns<3>(x, v * LANES);
            break;
        case 2:
            make_columns<2>(x, v * LANES);
            break;
        case 1:
            make_columns<1>(x, v * LANES);
            break;
        default:
            break;
    }
}

}  // namespace lumo::kernels
