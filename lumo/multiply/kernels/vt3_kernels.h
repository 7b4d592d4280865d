/// Passes of the number-theoretic transform, one table of them for each instruction set.
///
/// Layout. N = m 2^k points stand as R rows of C columns, R = m h, point r C + c in row r. A column transform
/// of length R leaves row (s, i), s < m, i < h, at place s h + i; what remains of it is the ring
/// x^C = w_m^s w_h^f with f the bits of i reversed, made cyclic by a twist. The 8 rows of a group stand in
/// the 8 lanes: word 8 c + (row mod 8) of the group, and some padding in long rows. Groups are `group_words`
/// apart.
///
/// Plain data and plain functions only: translation units with wide-vector flags include this header and
/// nothing that defines a shared inline function.
#pragma once

#include <stddef.h>
#include <stdint.h>

namespace lumo::kernels {

inline constexpr size_t VT3_COLUMNS = 16;       ///< columns of a tile
inline constexpr size_t VT3_PADDED_LOG_C = 10;  ///< rows from here on are padded by up to 16 lines
/// Rows of a part of a tile of 2^12 rows, whose 16 elements of a topmost node would all take the same place
/// of the first cache if no gap stood between the parts.
inline constexpr size_t VT3_TILE_PART = 256;
inline constexpr size_t VT3_TILE_GAP = 8;
inline constexpr size_t VT3_MAX_PRIMES = 10;
inline constexpr size_t VT3_CARRY_WORDS = 4;  ///< what a digit leaves to the places above it

/// A constant factor and its quotient by p: in the integer fields w < p and floor(w 2^B / p), with B = 52 or
/// 64; in the fields of doubles |w| <= p / 2 and w / p, as bits.
struct Vt3Factor {
    uint64_t w;
    uint64_t q;
};

/// How a field writes residues.
enum class Vt3Form { integer64, integer52, floating };

/// One prime below 2^48 in the form of one field.
struct Vt3Prime {
    uint64_t p;
    uint64_t p_inverse;  ///< p^-1 modulo 2^B
    uint64_t unit;       ///< the factor 1 as mul_var() takes it: 2^B mod p, or 1.0
    Vt3Factor one;
    Vt3Factor pieces[4];      ///< 2^48, 2^96, ...
    Vt3Factor cosines[3][3];  ///< for m = 3, 5, 7: (w^j + w^-j) / 2, w of order m
    Vt3Factor sines[3][3];    ///< (w^j - w^-j) / 2
    const Vt3Factor* roots;   ///< [t] = E(reversed(t) / 2), reversed(t) = 0.b0 b1 b2 ... of t = ... b2 b1 b0
    const Vt3Factor* inverse_roots;  ///< [h + j] = E(-j / 2 h) for j < h, h a power of two
    const uint64_t* order;           ///< [k]: the element E(1 / 2^k) itself, k <= 40
    const uint64_t* inverse_order;
    uint64_t odd_order[3];  ///< elements of order 3, 5, 7
};

/// One length.
struct Vt3Shape {
    unsigned n;      ///< primes, 6 .. 10; join() takes up to 9
    unsigned m;      ///< 1, 3, 5 or 7
    unsigned log_h;  ///< >= 3
    unsigned log_c;  ///< >= 5
    unsigned b;      ///< bits a digit, 24 (n - 1) or 8 more
    size_t group_words;
    bool distant;         ///< images are so long that what a pass needs next is better fetched beforehand
    bool streaming;       ///< and so long that their groups are written past the caches
    size_t tile_gap = 0;  ///< words behind every VT3_TILE_PART rows of a tile

    size_t h() const { return size_t(1) << log_h; }
    size_t rows() const { return m << log_h; }
    size_t columns() const { return size_t(1) << log_c; }
    size_t tile_words() const { return tile_place(rows()); }
    /// Word of a row of a tile.
    size_t tile_place(size_t row) const { return row * VT3_COLUMNS + row / VT3_TILE_PART * tile_gap; }
    size_t array_words() const { return rows() / 8 * group_words; }  ///< of one prime
    size_t pieces() const { return (b + 47) / 48; }                  ///< of 48 bits in a digit
    size_t run_bytes() const { return 2 * size_t(b); }               ///< 16 digits
};

/// Factors of the twist of one prime: power[f] = w^f and power_inverse[f] = w^-f, w = E(1 / 2^k); the part
/// of residue class s in `part`. The twist back multiplies by `last`, too. In the form of mul_var().
struct Vt3Twist {
    const uint64_t* power;
    const uint64_t* power_inverse;
    uint64_t last;
    uint64_t part[7];
    uint64_t part_inverse[7];
};

/// A group of a factor in the middle pass.
struct Vt3Rows {
    const uint64_t* from;  ///< as the columns left it, or null if its rows are transformed already
    uint64_t* to;          ///< its rows transformed; may be where it comes from
};

/// Lines of 8 words to be fetched while a group is worked on, from two places.
struct Vt3Ahead {
    const uint64_t* first = nullptr;
    size_t first_lines = 0;
    const uint64_t* second = nullptr;
    size_t second_lines = 0;
};

/// Chinese remaindering: value = sum y_i (M / p_i) - q M, y_i the residues that the last pass leaves, of the
/// value times the inverse of M / p_i.
struct Vt3Crt {
    const Vt3Prime* primes[VT3_MAX_PRIMES];
    double p_reciprocal[VT3_MAX_PRIMES];
    uint64_t cofactor52[VT3_MAX_PRIMES][10];  ///< M / p_i in 52-bit limbs
    uint64_t minus52[10];                     ///< 2^(52 n) - M
    double cofactor48[VT3_MAX_PRIMES][10];    ///< M / p_i in 48-bit limbs
    double product48[10];                     ///< M
    uint64_t cofactor64[VT3_MAX_PRIMES][8];
    uint64_t minus64[8];  ///< modulo 2^512
};

/// Where 16 digits of every row go, and what they leave: CARRY words a row. The product's bytes [begin, end)
/// are wanted.
template <size_t CARRY>
struct DigitOutput {
    unsigned char* bytes;  ///< byte `begin` of the product
    uint64_t begin, end;
    uint64_t place;  ///< first byte of the digits of row 0
    uint64_t row_bytes;
    bool first;                ///< first tile of a segment: carries start at zero, heads are kept
    uint64_t (*carry)[CARRY];  ///< by row
    uint64_t (*head)[CARRY];   ///< lowest words of the row's segment
    unsigned char* ones;       ///< all words of the segment above the head are ~0
    bool below_ones;           ///< so are those up to `begin` of the segment in which it lies
    uint64_t top;              ///< OR of the highest words of all digits
    uint64_t sum;              ///< of all words modulo 2^64 - 1
};
using Vt3Output = DigitOutput<VT3_CARRY_WORDS>;

struct Vt3Kernels {
    const char* name;
    Vt3Form form;
    unsigned node_bits;  ///< levels of its longest nodes; tiles have gaps only if it is 4

    /// pieces[(row * pieces + i) * 16 + j] := piece i of digit j of the row, for rows [0, rows), as enter()
    /// of this set takes them. The first digit of row 0 stands at byte `place` of the operand, those of the
    /// next at row_bytes more. Returns the sum of the words taken, modulo 2^64 - 1.
    uint64_t (*cut)(const Vt3Shape& shape, uint64_t* pieces, const unsigned char* operand, size_t size,
                    uint64_t place, uint64_t row_bytes, size_t rows);
    /// Column transforms of 16 columns from `column` on into x; the operand is zero from row `used` on.
    void (*enter)(const Vt3Shape& shape, const Vt3Prime& prime, const uint64_t* pieces, size_t used,
                  uint64_t* tile, uint64_t* x, size_t column);
    /// Twist and row transforms of a group of x, in place.
    void (*rows_forward)(const Vt3Shape& shape, const Vt3Prime& prime, const Vt3Twist& twist, uint64_t* x,
                         const Vt3Ahead& ahead, size_t group);
    /// out := rows of the product of f and g, untwisted. `out`, f.to and g.to may be the same.
    void (*rows_product)(const Vt3Shape& shape, const Vt3Prime& prime, const Vt3Twist& twist, uint64_t* out,
                         const Vt3Rows& f, const Vt3Rows& g, const Vt3Ahead& ahead, size_t group);
    /// Inverse column transforms of 16 columns of x into the tile.
    void (*leave)(const Vt3Shape& shape, const Vt3Prime& prime, const uint64_t* x, uint64_t* tile,
                  size_t column);
    /// Digits from the tiles of all primes (spoilt), tile_words() apart.
    void (*join)(const Vt3Shape& shape, const Vt3Crt& crt, uint64_t* tiles, Vt3Output& output);
};

extern const Vt3Kernels vt3_kernels_portable;
extern const Vt3Kernels vt3_kernels_avx2;
extern const Vt3Kernels vt3_kernels_avx512;
extern const Vt3Kernels vt3_kernels_ifma;

}  // namespace lumo::kernels
