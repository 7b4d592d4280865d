// The passes of fft_kernels.h over Vec<double, LANES>, compiled once for each instruction set. The including
// unit defines VELMORA_KERNEL_NAMESPACE and VELMORA_KERNEL_LANES.
//
// Cost: a layer of the radix-4 nodes and leaves is 3 fused operations a complex vector, both ways: products
// by roots are fused into the sums, and differences are formed as 2 x - y. Exactness: every value is a sum of
// products of balanced pieces with roots of unity; the last pass measures how far the results are from
// integers, and nothing else depends on rounding.

#include "lumo/multiply/kernels/fft_kernels.h"
#include "lumo/multiply/kernels/vec.h"

namespace lumo::kernels::VELMORA_KERNEL_NAMESPACE {

namespace {

using V = Vec<double, VELMORA_KERNEL_LANES>;
constexpr int LANES = V::lanes;
constexpr int HALVES = 8 / LANES;  // registers that one row of 8 lanes takes

// A complex vector in registers; the root of a butterfly likewise.
struct C {
    V re, im;
};

inline __attribute__((always_inline)) C load(const double* p) {
    return {V::load(p), V::load(p + 8)};
}
inline __attribute__((always_inline)) void store(double* p, const C& a) {
    a.re.store(p);
    a.im.store(p + 8);
}
inline __attribute__((always_inline)) C root(const double* w) {
    return {V::all(w[0]), V::all(w[1])};
}
inline __attribute__((always_inline)) C operator+(const C& a, const C& b) {
    return {a.re + b.re, a.im + b.im};
}
inline __attribute__((always_inline)) C operator-(const C& a, const C& b) {
    return {a.re - b.re, a.im - b.im};
}

inline __attribute__((always_inline)) C mul(const C& a, const C& b) {
    return {fnma(a.im, b.im, a.re * b.re), fma(a.re, b.im, a.im * b.re)};
}
// a conj(w)
inline __attribute__((always_inline)) C mul_conj(const C& a, const C& w) {
    return {fma(a.im, w.im, a.re * w.re), fnma(a.re, w.im, a.im * w.re)};
}

// 2 a - s
inline __attribute__((always_inline)) C mirror(const C& a, const C& s) {
    V two = V::all(2.0);
    return {fms(two, a.re, s.re), fms(two, a.im, s.im)};
}
// (a, b) := (a + w b, a - w b), and the same with i w, conj(w) and -i conj(w).
inline __attribute__((always_inline)) void turn(C& a, C& b, const C& w) {
    C s{fnma(w.im, b.im, fma(w.re, b.re, a.re)), fma(w.im, b.re, fma(w.re, b.im, a.im))};
    b = mirror(a, s);
    a = s;
}
inline __attribute__((always_inline)) void turn_i(C& a, C& b, const C& w) {
    C s{fnma(w.re, b.im, fnma(w.im, b.re, a.re)), fnma(w.im, b.im, fma(w.re, b.re, a.im))};
    b = mirror(a, s);
    a = s;
}
inline __attribute__((always_inline)) void turn_conj(C& a, C& b, const C& w) {
    C s{fma(w.im, b.im, fma(w.re, b.re, a.re)), fnma(w.im, b.re, fma(w.re, b.im, a.im))};
    b = mirror(a, s);
    a = s;
}
inline __attribute__((always_inline)) void turn_conj_i(C& a, C& b, const C& w) {
    C s{fnma(w.im, b.re, fma(w.re, b.im, a.re)), fnma(w.im, b.im, fnma(w.re, b.re, a.im))};
    b = mirror(a, s);
    a = s;
}
// (a + b, a - b), (a + i b, a - i b), (a - i b, a + i b)
inline __attribute__((always_inline)) void cross(C& a, C& b) {
    C s = a + b;
    b = a - b;
    a = s;
}
inline __attribute__((always_inline)) void cross_i(C& a, C& b) {
    C s{a.re - b.im, a.im + b.re};
    b = {a.re + b.im, a.im - b.re};
    a = s;
}
inline __attribute__((always_inline)) void cross_conj_i(C& a, C& b) {
    C s{a.re + b.im, a.im - b.re};
    b = {a.re - b.im, a.im + b.re};
    a = s;
}

// Forward splitting.

inline __attribute__((always_inline)) void split4(C& a, C& b, C& c, C& d, const C& w1, const C& w2) {
    turn(a, c, w1);
    turn(b, d, w1);
    turn(a, b, w2);
    turn_i(c, d, w2);
}

void forward_node(double* x, size_t quarter, size_t p, const double* roots, size_t i0, size_t i1) {
    const size_t step = FFT_VECTOR * quarter;
    if (p == 0) {
        for (double *y = x + FFT_VECTOR * i0, *end = x + FFT_VECTOR * i1; y < end; y += FFT_VECTOR)
            for (int h = 0; h < 8; h += LANES) {
                C a = load(y + h), b = load(y + step + h), c = load(y + 2 * step + h),
                  d = load(y + 3 * step + h);
                cross(a, c);
                cross(b, d);
                cross(a, b);
                cross_i(c, d);
                store(y + h, a);
                store(y + step + h, b);
                store(y + 2 * step + h, c);
                store(y + 3 * step + h, d);
            }
        return;
    }
    const C w1 = root(roots + 2 * p), w2 = root(roots + 4 * p);
    for (double *y = x + FFT_VECTOR * i0, *end = x + FFT_VECTOR * i1; y < end; y += FFT_VECTOR)
        for (int h = 0; h < 8; h += LANES) {
            C a = load(y + h), b = load(y + step + h), c = load(y + 2 * step + h), d = load(y + 3 * step + h);
            split4(a, b, c, d, w1, w2);
            store(y + h, a);
            store(y + step + h, b);
            store(y + 2 * step + h, c);
            store(y + 3 * step + h, d);
        }
}

inline void forward_leaf3(double* x, size_t p, const double* roots) {
    for (int h = 0; h < 8; h += LANES) {
        C z[8];
#pragma GCC unroll 8
        for (int i = 0; i < 8; i++) z[i] = load(x + FFT_VECTOR * i + h);
        C w1 = root(roots + 2 * p), w2 = root(roots + 4 * p);
        split4(z[0], z[2], z[4], z[6], w1, w2);
        split4(z[1], z[3], z[5], z[7], w1, w2);
        C w3 = root(roots + 8 * p), w4 = root(roots + 8 * p + 4);
        turn(z[0], z[1], w3);
        turn_i(z[2], z[3], w3);
        turn(z[4], z[5], w4);
        turn_i(z[6], z[7], w4);
#pragma GCC unroll 8
        for (int i = 0; i < 8; i++) store(x + FFT_VECTOR * i + h, z[i]);
    }
}

inline void forward_leaf4(double* x, size_t p, const double* roots) {
    for (int h = 0; h < 8; h += LANES) {
        C z[16];
        {
            C w1 = root(roots + 2 * p), w2 = root(roots + 4 * p);
#pragma GCC unroll 4
            for (int i = 0; i < 4; i++) {
#pragma GCC unroll 4
                for (int j = 0; j < 4; j++) z[i + 4 * j] = load(x + FFT_VECTOR * (i + 4 * j) + h);
                split4(z[i], z[i + 4], z[i + 8], z[i + 12], w1, w2);
            }
        }
#pragma GCC unroll 4
        for (int j = 0; j < 4; j++) {
            C w1 = root(roots + 8 * p + 2 * j), w2 = root(roots + 16 * p + 4 * j);
            split4(z[4 * j], z[4 * j + 1], z[4 * j + 2], z[4 * j + 3], w1, w2);
#pragma GCC unroll 4
            for (int i = 0; i < 4; i++) store(x + FFT_VECTOR * (4 * j + i) + h, z[4 * j + i]);
        }
    }
}

void forward_block(double* x, unsigned depth, size_t p, const double* roots) {
    if (depth == 3) return forward_leaf3(x, p, roots);
    if (depth == 4) return forward_leaf4(x, p, roots);
    const size_t quarter = size_t(1) << (depth - 2);
    forward_node(x, quarter, p, roots, 0, quarter);
    for (size_t j = 0; j < 4; j++) forward_block(x + FFT_VECTOR * quarter * j, depth - 2, 4 * p + j, roots);
}

// Inverse joining.

inline __attribute__((always_inline)) void join4(C& a, C& b, C& c, C& d, const C& u, const C& v) {
    turn_conj(a, b, u);
    turn_conj(c, d, u);
    turn_conj(a, c, v);
    turn_conj_i(b, d, v);
}
inline __attribute__((always_inline)) void join4(C& a, C& b, C& c, C& d) {
    cross(a, b);
    cross(c, d);
    cross(a, c);
    cross_conj_i(b, d);
}

void inverse_node(double* x, size_t quarter, const double* tw, size_t i0, size_t i1) {
    const size_t step = FFT_VECTOR * quarter;
    for (size_t i = i0; i < i1; i++) {
        double* y = x + FFT_VECTOR * i;
        const C u = root(tw + 4 * i), v = root(tw + 4 * i + 2);
        for (int h = 0; h < 8; h += LANES) {
            C a = load(y + h), b = load(y + step + h), c = load(y + 2 * step + h), d = load(y + 3 * step + h);
            join4(a, b, c, d, u, v);
            store(y + h, a);
            store(y + step + h, b);
            store(y + 2 * step + h, c);
            store(y + 3 * step + h, d);
        }
    }
}

template <bool square>
inline __attribute__((always_inline)) C product(const double* f, const double* g) {
    C a = load(f);
    if constexpr (square) {
        V twice = a.re + a.re;
        return {fnma(a.im, a.im, a.re * a.re), twice * a.im};
    } else {
        return mul(a, load(g));
    }
}

template <bool square>
inline void inverse_leaf3(double* x, const double* f, const double* g, const double* node3) {
    for (int h = 0; h < 8; h += LANES) {
        C z[8];
#pragma GCC unroll 8
        for (int i = 0; i < 8; i++) z[i] = product<square>(f + FFT_VECTOR * i + h, g + FFT_VECTOR * i + h);
        join4(z[0], z[1], z[2], z[3]);
        join4(z[4], z[5], z[6], z[7]);
        const C w = root(node3);
        cross(z[0], z[4]);
        turn_conj(z[1], z[5], w);
        cross_conj_i(z[2], z[6]);
        turn_conj_i(z[3], z[7], w);
#pragma GCC unroll 8
        for (int i = 0; i < 8; i++) store(x + FFT_VECTOR * i + h, z[i]);
    }
}

template <bool square>
inline void inverse_leaf4(double* x, const double* f, const double* g, const double* node4) {
    for (int h = 0; h < 8; h += LANES) {
        C z[16];
#pragma GCC unroll 4
        for (int j = 0; j < 4; j++) {
#pragma GCC unroll 4
            for (int i = 4 * j; i < 4 * j + 4; i++)
                z[i] = product<square>(f + FFT_VECTOR * i + h, g + FFT_VECTOR * i + h);
            join4(z[4 * j], z[4 * j + 1], z[4 * j + 2], z[4 * j + 3]);
        }
        join4(z[0], z[4], z[8], z[12]);
#pragma GCC unroll 3
        for (int i = 1; i < 4; i++)
            join4(z[i], z[i + 4], z[i + 8], z[i + 12], root(node4 + 4 * i), root(node4 + 4 * i + 2));
#pragma GCC unroll 16
        for (int i = 0; i < 16; i++) store(x + FFT_VECTOR * i + h, z[i]);
    }
}

template <bool square>
void inverse_tree(double* out, const double* f, const double* g, unsigned depth, const double* const* nodes) {
    if (depth == 3) return inverse_leaf3<square>(out, f, g, nodes[3]);
    if (depth == 4) return inverse_leaf4<square>(out, f, g, nodes[4]);
    const size_t quarter = size_t(1) << (depth - 2), step = FFT_VECTOR * quarter;
    for (size_t j = 0; j < 4; j++)
        inverse_tree<square>(out + step * j, f + step * j, g + step * j, depth - 2, nodes);
    inverse_node(out, quarter, nodes[depth], 0, quarter);
}

void inverse_block(double* out, const double* f, const double* g, unsigned depth,
                   const double* const* nodes) {
    if (f == g)
        inverse_tree<true>(out, f, g, depth, nodes);
    else
        inverse_tree<false>(out, f, g, depth, nodes);
}

// Radix 3 and 5.

const double HALF_SQRT3 = 0.86602540378443864676;
const double COS_1_5 = 0.30901699437494742410;
const double SIN_1_5 = 0.95105651629515357212;
const double COS_2_5 = -0.80901699437494742410;
const double SIN_2_5 = 0.58778525229247312917;

// s + i r and s - i r
inline __attribute__((always_inline)) C plus_i(const C& s, const C& r) {
    return {s.re - r.im, s.im + r.re};
}
inline __attribute__((always_inline)) C minus_i(const C& s, const C& r) {
    return {s.re + r.im, s.im - r.re};
}
inline __attribute__((always_inline)) C scale(V f, const C& a) {
    return {f * a.re, f * a.im};
}
inline __attribute__((always_inline)) C add_scaled(V f, const C& a, const C& to) {
    return {fma(f, a.re, to.re), fma(f, a.im, to.im)};
}

// Discrete transforms with E(+1 / m) (forward) or E(-1 / m) (inverse) in place.
template <bool inverse>
inline __attribute__((always_inline)) void dft3(C& a, C& b, C& c) {
    C sum = b + c, diff = scale(V::all(HALF_SQRT3), b - c);
    C mid = add_scaled(V::all(-0.5), sum, a);
    a = a + sum;
    b = inverse ? minus_i(mid, diff) : plus_i(mid, diff);
    c = inverse ? plus_i(mid, diff) : minus_i(mid, diff);
}
template <bool inverse>
inline __attribute__((always_inline)) void dft5(C& a, C& b, C& c, C& d, C& e) {
    C s1 = b + e, d1 = b - e, s2 = c + d, d2 = c - d;
    C m1 = add_scaled(V::all(COS_1_5), s1, add_scaled(V::all(COS_2_5), s2, a));
    C m2 = add_scaled(V::all(COS_2_5), s1, add_scaled(V::all(COS_1_5), s2, a));
    C r1 = add_scaled(V::all(SIN_1_5), d1, scale(V::all(SIN_2_5), d2));
    C r2 = add_scaled(V::all(SIN_2_5), d1, scale(V::all(-SIN_1_5), d2));
    a = a + s1 + s2;
    b = inverse ? minus_i(m1, r1) : plus_i(m1, r1);
    c = inverse ? minus_i(m2, r2) : plus_i(m2, r2);
    d = inverse ? plus_i(m2, r2) : minus_i(m2, r2);
    e = inverse ? plus_i(m1, r1) : minus_i(m1, r1);
}

template <bool inverse>
inline __attribute__((always_inline)) void odd_stage(double* x, unsigned m, size_t part, const double* tw,
                                                     size_t i0, size_t i1) {
    const size_t step = FFT_VECTOR * part;
    for (size_t i = i0; i < i1; i++)
        for (int h = 0; h < 8; h += LANES) {
            double* y = x + FFT_VECTOR * i + h;
            if (m == 3) {
                C a = load(y), b = load(y + step), c = load(y + 2 * step), w = root(tw + 2 * i);
                if constexpr (inverse) {
                    b = mul_conj(b, w);
                    c = mul(c, w);
                }
                dft3<inverse>(a, b, c);
                if constexpr (!inverse) {
                    b = mul(b, w);
                    c = mul_conj(c, w);
                }
                store(y, a);
                store(y + step, b);
                store(y + 2 * step, c);
            } else {
                C a = load(y), b = load(y + step), c = load(y + 2 * step), d = load(y + 3 * step);
                C e = load(y + 4 * step), w = root(tw + 4 * i), w2 = root(tw + 4 * i + 2);
                if constexpr (inverse) {
                    b = mul_conj(b, w);
                    c = mul_conj(c, w2);
                    d = mul(d, w2);
                    e = mul(e, w);
                }
                dft5<inverse>(a, b, c, d, e);
                if constexpr (!inverse) {
                    b = mul(b, w);
                    c = mul(c, w2);
                    d = mul_conj(d, w2);
                    e = mul_conj(e, w);
                }
                store(y, a);
                store(y + step, b);
                store(y + 2 * step, c);
                store(y + 3 * step, d);
                store(y + 4 * step, e);
            }
        }
}

void odd_forward(double* x, unsigned m, size_t part, const double* tw, size_t i0, size_t i1) {
    odd_stage<false>(x, m, part, tw, i0, i1);
}
void odd_inverse(double* x, unsigned m, size_t part, const double* tw, size_t i0, size_t i1) {
    odd_stage<true>(x, m, part, tw, i0, i1);
}

// First and last pass. Part j lies in the ring x^V = E(c_j / 32) after three layers whose roots are
// E(1/8); E(1/16) and i times it; E(1/32), i times it, E(5/32), i times it.

const double ROOT_8[2] = {0.70710678118654752440, 0.70710678118654752440};
const double ROOT_16[2] = {0.92387953251128675613, 0.38268343236508977173};
const double ROOT_32[2] = {0.98078528040323044913, 0.19509032201612826785};
const double ROOT_5_32[2] = {0.55557023301960222474, 0.83146961230254523708};

inline __attribute__((always_inline)) void split8(C (&z)[8]) {
    const C w8 = root(ROOT_8), w16 = root(ROOT_16), w32 = root(ROOT_32), w5 = root(ROOT_5_32);
#pragma GCC unroll 4
    for (int j = 0; j < 4; j++) turn(z[j], z[j + 4], w8);
    turn(z[0], z[2], w16);
    turn(z[1], z[3], w16);
    turn_i(z[4], z[6], w16);
    turn_i(z[5], z[7], w16);
    turn(z[0], z[1], w32);
    turn_i(z[2], z[3], w32);
    turn(z[4], z[5], w5);
    turn_i(z[6], z[7], w5);
}

// (a, b) := (a + b, (a - b) conj(w)), and with i w.
inline __attribute__((always_inline)) void meet(C& a, C& b, const C& w) {
    C d = a - b;
    a = a + b;
    b = mul_conj(d, w);
}
inline __attribute__((always_inline)) void meet_i(C& a, C& b, const C& w) {
    C d = a - b;
    a = a + b;
    b = {fnma(d.re, w.im, d.im * w.re), fnms(d.re, w.re, d.im * w.im)};
}

// 8 times the inverse of split8.
inline __attribute__((always_inline)) void join8(C (&z)[8]) {
    const C w8 = root(ROOT_8), w16 = root(ROOT_16), w32 = root(ROOT_32), w5 = root(ROOT_5_32);
    meet(z[0], z[1], w32);
    meet_i(z[2], z[3], w32);
    meet(z[4], z[5], w5);
    meet_i(z[6], z[7], w5);
    meet(z[0], z[2], w16);
    meet(z[1], z[3], w16);
    meet_i(z[4], z[6], w16);
    meet_i(z[5], z[7], w16);
#pragma GCC unroll 4
    for (int j = 0; j < 4; j++) meet(z[j], z[j + 4], w8);
}

inline const unsigned char* window(const FftOperand& a, size_t byte) {
    if (byte == 0) return a.head;
    byte--;
    if (byte + 32 <= a.size) return a.bytes + byte;
    if (byte >= a.size) return a.tail + 128;
    return a.tail + (byte - a.tail_start);
}

template <bool real_only>
inline void first_pass_of(double* x, size_t vectors, const FftOperand& a, const FftTwist& twist, size_t t0,
                          size_t t1) {
    const V::Cutter cutter(a.b);
    const size_t stride = vectors / 8 * a.b;
    for (size_t t = t0; t < t1; t += 8) {
        const unsigned char* from[FFT_STREAMS];
        for (size_t s = 0; s < (real_only ? 8 : FFT_STREAMS); s++)
            from[s] = window(a, s * stride + t / 8 * a.b);
        const double* coarse = twist.coarse + 2 * t;
#pragma GCC unroll 1
        for (int h = 0; h < HALVES; h++) {
            C z[8];
#pragma GCC unroll 8
            for (int j = 0; j < 8; j++) {
                z[j].re = cutter.cut(from[j], h);
                z[j].im = real_only ? V::all(0.0) : cutter.cut(from[j + 8], h);
            }
            if (t == 0 && h == 0 && a.wraps) {
                double first[8] = {1.0};
                z[0].re = z[0].re - V::load(first);
            }
            split8(z);
#pragma GCC unroll 8
            for (int j = 0; j < 8; j++) {
                C c{V::all(coarse[j]), V::all(coarse[8 + j])};
                z[j] = mul(z[j], mul(load(twist.fine + FFT_VECTOR * j + LANES * h), c));
            }
            double* y = x + FFT_VECTOR * (t + LANES * h);
#pragma GCC unroll 4
            for (int k = 0; k < HALVES; k++) {
                V re[LANES], im[LANES];
#pragma GCC unroll 8
                for (int i = 0; i < LANES; i++) {
                    re[i] = z[LANES * k + i].re;
                    im[i] = z[LANES * k + i].im;
                }
                V::transpose(re);
                V::transpose(im);
#pragma GCC unroll 8
                for (int i = 0; i < LANES; i++) store(y + FFT_VECTOR * i + LANES * k, C{re[i], im[i]});
            }
        }
    }
}

void first_pass(double* x, size_t vectors, const FftOperand& a, const FftTwist& twist, size_t t0, size_t t1) {
    if (a.real_only)
        first_pass_of<true>(x, vectors, a, twist, t0, t1);
    else
        first_pass_of<false>(x, vectors, a, twist, t0, t1);
}

// Adds 8 coefficients of less than 2^49 at distances of b bits to the carry, writes the low b bytes, keeps
// the rest as carry. Four coefficients at once stay within 128 bits: 3 b + 49 <= 112.
template <unsigned b>
inline __attribute__((always_inline)) int64_t emit(unsigned char* out, const int64_t* v, int64_t carry) {
    using i128 = __int128;
    using u128 = unsigned __int128;
    const u128 mask = (u128(1) << (4 * b)) - 1;
    i128 low = i128(v[0]) + carry + (i128(v[1]) << b) + (i128(v[2]) << (2 * b)) + (i128(v[3]) << (3 * b));
    i128 high =
        i128(v[4]) + (low >> (4 * b)) + (i128(v[5]) << b) + (i128(v[6]) << (2 * b)) + (i128(v[7]) << (3 * b));
    u128 first = u128(low) & mask, second = u128(high) & mask;
    u128 bytes = first | (second << (4 * b));
    uint64_t lo = uint64_t(bytes), hi = uint64_t(bytes >> 64);
    __builtin_memcpy(out, &lo, 8);
    if constexpr (b <= 16) {
        __builtin_memcpy(out + 8, &hi, b - 8);
    } else {
        uint64_t top = uint64_t(second >> (128 - 4 * b));
        __builtin_memcpy(out + 8, &hi, 8);
        __builtin_memcpy(out + 16, &top, b - 16);
    }
    return int64_t(high >> (4 * b));
}

using Emitter = void (*)(unsigned char* out, size_t stride, const int64_t* v, int64_t* carry);

template <unsigned b>
void emit_streams(unsigned char* out, size_t stride, const int64_t* v, int64_t* carry) {
    for (size_t s = 0; s < FFT_STREAMS; s++) carry[s] = emit<b>(out + s * stride, v + 8 * s, carry[s]);
}

constexpr Emitter EMITTERS[] = {emit_streams<9>,  emit_streams<10>, emit_streams<11>, emit_streams<12>,
                                emit_streams<13>, emit_streams<14>, emit_streams<15>, emit_streams<16>,
                                emit_streams<17>, emit_streams<18>, emit_streams<19>, emit_streams<20>,
                                emit_streams<21>};

void last_pass(const double* x, size_t vectors, const FftOutput& out, const FftTwist& twist, FftTally& tally,
               size_t t0, size_t t1) {
    const Emitter emitter = EMITTERS[out.b - 9];
    const V factor = V::all(out.scale);
    const size_t stride = vectors / 8 * out.b;
    V::Rounder rounder;
    alignas(64) int64_t values[FFT_STREAMS * 8];
    for (size_t s = 0; s < FFT_STREAMS; s++) tally.carry[s] = 0;
    for (size_t t = t0; t < t1; t += 8) {
        const double* coarse = twist.coarse + 2 * t;
#pragma GCC unroll 1
        for (int h = 0; h < HALVES; h++) {
            C z[8];
            const double* y = x + FFT_VECTOR * (t + LANES * h);
#pragma GCC unroll 4
            for (int k = 0; k < HALVES; k++) {
                V re[LANES], im[LANES];
#pragma GCC unroll 8
                for (int i = 0; i < LANES; i++) {
                    C a = load(y + FFT_VECTOR * i + LANES * k);
                    re[i] = a.re;
                    im[i] = a.im;
                }
                V::transpose(re);
                V::transpose(im);
#pragma GCC unroll 8
                for (int i = 0; i < LANES; i++) z[LANES * k + i] = C{re[i], im[i]};
            }
#pragma GCC unroll 8
            for (int j = 0; j < 8; j++) {
                C c{V::all(coarse[j]), V::all(coarse[8 + j])};
                z[j] = mul_conj(z[j], mul(load(twist.fine + FFT_VECTOR * j + LANES * h), c));
            }
            join8(z);
#pragma GCC unroll 8
            for (int j = 0; j < 8; j++) {
                rounder.round(z[j].re, factor, values + 8 * j + LANES * h);
                rounder.round(z[j].im, factor, values + 8 * (j + 8) + LANES * h);
            }
        }
        emitter(out.bytes + t / 8 * out.b, stride, values, tally.carry);
    }
    tally.error = rounder.error();
    tally.overflow = rounder.overflow();
}

}  // namespace

}  // namespace lumo::kernels::VELMORA_KERNEL_NAMESPACE

namespace lumo::kernels {

extern const FftKernels VELMORA_KERNEL_TABLE;
const FftKernels VELMORA_KERNEL_TABLE = {
    VELMORA_KERNEL_NAME,
    VELMORA_KERNEL_NAMESPACE::first_pass,
    VELMORA_KERNEL_NAMESPACE::last_pass,
    VELMORA_KERNEL_NAMESPACE::odd_forward,
    VELMORA_KERNEL_NAMESPACE::odd_inverse,
    VELMORA_KERNEL_NAMESPACE::forward_node,
    VELMORA_KERNEL_NAMESPACE::forward_block,
    VELMORA_KERNEL_NAMESPACE::inverse_node,
    VELMORA_KERNEL_NAMESPACE::inverse_block,
};

}  // namespace lumo::kernels
