/// Passes of the floating-point FFT, one table of them for each instruction set.
///
/// Data. A transform of N real points is M = N / 2 complex points in the ring x^M = i. Part j of 8 holds the
/// points z[t + j V], t < V = M / 8; the first pass splits them into 8 cyclic transforms of length V, one in
/// each lane. The array is V complex vectors of 128 bytes: 8 real parts, then 8 imaginary parts. No pass
/// between the first and the last moves data between lanes. Lanes may be processed in any grouping, so
/// images do not depend on the instruction set in anything but rounding.
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

/// Factors that bring the ring of each part to the cyclic one: E(c_j t / 2N), c = 1, 17, 9, 25, 5, 21,
/// 13, 29.
struct FftTwist {
    const double* coarse;  ///< for every 8 points t: 8 cosines and 8 sines, one a part, at t = 8 u
    const double* fine;    ///< for each part: 8 cosines and 8 sines at t = 0 .. 7
};

/// Bytes of the operand's integer, readable in windows of 32 bytes that may stick out at both ends.
struct FftOperand {
    const unsigned char* bytes;
    size_t size;
    unsigned char head[64];   ///< one zero byte, then the first bytes, then zeros
    unsigned char tail[192];  ///< bytes from tail_start on, then at least 64 zeros
    size_t tail_start;
    unsigned b;      ///< bits a piece, 9 .. 21
    bool wraps;      ///< the highest piece of a full operand borrows 1 from piece 0 (x^N = -1)
    bool real_only;  ///< all imaginary streams are zero
};

/// What a range of the last pass reports beside the bytes it writes.
struct FftTally {
    int64_t carry[FFT_STREAMS];  ///< into the place after the range, stream by stream
    double error;                ///< largest distance from an integer, 0 .. 0.5
    uint64_t overflow;           ///< not 0: a value beyond 2^51, infinite or not a number
};

struct FftOutput {
    unsigned char* bytes;  ///< ceil(b N / 8) bytes and 64 bytes of room behind
    double scale;          ///< 1 / M
    unsigned b;
};

struct FftKernels {
    const char* name;

    /// Cuts points [t0, t1) (multiples of 8) of all streams into balanced pieces, splits, twists, stores.
    void (*first_pass)(double* x, size_t V, const FftOperand& a, const FftTwist& twist, size_t t0, size_t t1);
    /// Undoes the first pass: untwists, joins, rounds, carries within each stream, writes 8 pieces at a time.
    void (*last_pass)(const double* x, size_t V, const FftOutput& out, const FftTwist& twist, FftTally& tally,
                      size_t t0, size_t t1);

    /// Radix-m stage (m = 3, 5) over parts of `quarter` vectors, columns [i0, i1). `tw`: w^t, and for m = 5
    /// also w^(2t), w = E(1 / (m quarter)), as (cos, sin).
    void (*odd_forward)(double* x, unsigned m, size_t part, const double* tw, size_t i0, size_t i1);
    void (*odd_inverse)(double* x, unsigned m, size_t part, const double* tw, size_t i0, size_t i1);

    /// Radix-4 node of index p over quarters of `quarter` vectors, columns [i0, i1).
    void (*forward_node)(double* x, size_t quarter, size_t p, const double* roots, size_t i0, size_t i1);
    /// Splits a block of 2^depth vectors (depth >= 3) of index p down to points.
    void (*forward_block)(double* x, unsigned depth, size_t p, const double* roots);

    /// Joins four transformed quarters, columns [i0, i1). `tw`: (w_2q^i, w_4q^i) for i < quarter.
    void (*inverse_node)(double* x, size_t quarter, const double* tw, size_t i0, size_t i1);
    /// out := inverse transform of f g over a block of 2^depth vectors (depth >= 3); out may be f or g, and
    /// f == g squares. nodes[d] is the table of the node of 2^d vectors, d >= 3.
    void (*inverse_block)(double* out, const double* f, const double* g, unsigned depth,
                          const double* const* nodes);
};

extern const FftKernels fft_kernels_portable;
extern const FftKernels fft_kernels_avx2;
extern const FftKernels fft_kernels_avx512;

}  // namespace lumo::kernels
