/// Passes of the floating-point FFT, one table of them for each instruction set.
///
/// Data. A transform of N real points is M = N / 2 complex points in the ring x^M = i. Part j of 8 holds the
/// points z[t + j V], t < V = M / 8; the first pass splits them into 8 cyclic transforms of length V, one in
/// each lane. The array is V = m 2^depth complex vectors of 128 bytes: 8 real parts, then 8 imaginary parts.
/// No pass between the first and the last moves data between lanes, and lanes may be processed in any
/// grouping, so images of different instruction sets differ in nothing but rounding.
///
/// The first pass, the radix-m stage and the topmost `top` layers of the transforms of length 2^depth run
/// together, by columns, in a tile of m 2^top rows that stays in cache; the inverse ends likewise. What is
/// between them are blocks of 2^(depth - top) vectors, each transformed on its own.
///
/// Everything here is plain data and plain functions: translation units with wide-vector flags include this
/// header and nothing that defines a shared inline function.
#pragma once

#include <stddef.h>
#include <stdint.h>

namespace lumo::kernels {

/// Doubles of one complex vector.
inline constexpr size_t FFT_VECTOR = 16;
/// Streams of coefficients in the order of the integer: real parts of the 8 parts, then imaginary parts.
inline constexpr size_t FFT_STREAMS = 16;
/// Columns that a tile takes at once.
inline constexpr size_t FFT_COLUMNS = 8;
/// Doubles of one row of a tile.
inline constexpr size_t FFT_TILE_ROW = FFT_VECTOR * FFT_COLUMNS;

/// One length and its tables. E(x) = exp(2 pi i x).
struct FftShape {
    unsigned m;      ///< 1, 3 or 5
    unsigned depth;  ///< >= 3
    unsigned top;    ///< 0, 2 or 4; depth - top >= 3
    unsigned b;      ///< bits a piece, 10 .. 20
    double scale;    ///< 1 / M
    /// Twists that make the ring of part j cyclic: E(c_j t / 2N), c = 1, 17, 9, 25, 5, 21, 13, 29, as a
    /// product of two: for every 8 points t, 8 cosines and 8 sines, one a part, at t = 8 u; and for each part
    /// 8 cosines and 8 sines at t = 0 .. 7.
    const double* coarse;
    const double* fine;
    const double* odd;           ///< radix m: w^t (and w^2t if m = 5), w = E(1 / V), for t < 2^depth
    const double* roots;         ///< forward: root of the node of index p
    const double* const* nodes;  ///< inverse, by depth of the node: w_2q^i, w_4q^i for i < q = 2^(depth - 2)

    size_t vectors() const { return size_t(m) << depth; }
    size_t columns() const { return size_t(1) << (depth - top); }
    size_t rows() const { return size_t(m) << top; }
};

/// Bytes of an operand, readable in windows of 32 bytes that may stick out at both ends.
struct FftOperand {
    const unsigned char* bytes;
    size_t size;
    size_t tail_start;
    unsigned char head[64];   ///< one zero byte, then the first bytes, then zeros
    unsigned char tail[192];  ///< bytes from tail_start on, then at least 64 zeros, zeros from 128 on
    /// For the 8 pieces that start at bit 8 of a window: the pair of 32-bit words in which a piece and the
    /// bit below it lie, how far down to shift those 64 bits so that this field of b + 1 bits stands at bit
    /// 1, the field's mask there, and what to flip to make it a double (see vec.h).
    int32_t piece_words[16];
    int64_t shift_down[8];
    int64_t field_mask;
    int64_t field_frame;
    bool real_only;  ///< all imaginary streams are zero but for what follows
    /// Balanced pieces borrow from the next one. What the highest piece of a full operand borrows goes to
    /// piece 0 as -1 (x^N = -1), what the highest real piece borrows goes to the first imaginary one.
    bool borrows;
    double first_re, first_im;
};

/// What a range of columns reports beside the bytes it writes.
struct FftTally {
    double worst[8];    ///< distances from an integer; the largest counts
    uint64_t range[8];  ///< bits 52 and up of any: a value beyond 2^51, infinite or not a number
    /// Into the place after the range, for each row of the tile and each stream. Set by the caller.
    int64_t (*carry)[FFT_STREAMS];
};

struct FftKernels {
    const char* name;

    /// x := first pass over the operand, radix-m stage and `top` layers, for columns [from, to), multiples
    /// of 8.
    void (*enter)(const FftShape& shape, double* x, const FftOperand& a, double* tile, size_t from,
                  size_t to);
    /// Splits a block of 2^depth vectors (depth >= 3) of index p down to points.
    void (*forward_block)(double* x, unsigned depth, size_t p, const double* roots);
    /// out := inverse transform of f g over a block of 2^depth vectors (depth >= 3); out may be f or g, and
    /// f == g squares.
    void (*inverse_block)(double* out, const double* f, const double* g, unsigned depth,
                          const double* const* nodes);
    /// a := inverse transform of the product of the transforms of a and b, over a block of index p: the two
    /// above in one. b is overwritten; a == b squares.
    void (*multiply_block)(double* a, double* b, unsigned depth, size_t p, const double* roots,
                           const double* const* nodes);
    /// Undoes enter() for columns [from, to): joins, untwists, rounds, carries within each run of points that
    /// the columns form in a row and stream, and writes their pieces at `bytes` as one integer of b N bits.
    void (*leave)(const FftShape& shape, const double* x, unsigned char* bytes, double* tile, FftTally& tally,
                  size_t from, size_t to);

    /// Single levels of a block, for blocks that are shared out: columns [from, to) of the radix-4 node of
    /// index p over four quarters of `quarter` vectors, in place. `tw` is nodes[log2(4 quarter)].
    void (*forward_node)(double* x, size_t quarter, size_t p, const double* roots, size_t from, size_t to);
    void (*inverse_node)(double* x, size_t quarter, const double* tw, size_t from, size_t to);
};

extern const FftKernels fft_kernels_portable;
extern const FftKernels fft_kernels_avx2;
extern const FftKernels fft_kernels_avx512;

}  // namespace lumo::kernels
