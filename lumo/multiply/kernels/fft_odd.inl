// The radix-3 and radix-5 stages: discrete transforms of length m of elements at distance 2^depth, and the
// twists that make each part cyclic.

const double HALF_SQRT3 = 0.86602540378443864676;
const double COS_1_5 = 0.30901699437494742410;
const double SIN_1_5 = 0.95105651629515357212;
const double COS_2_5 = -0.80901699437494742410;
const double SIN_2_5 = 0.58778525229247312917;

// s + i r and s - i r
[[gnu::always_inline]] inline C plus_i(const C& s, const C& r) {
    return {s.re - r.im, s.im + r.re};
}
[[gnu::always_inline]] inline C minus_i(const C& s, const C& r) {
    return {s.re + r.im, s.im - r.re};
}
[[gnu::always_inline]] inline C scale(V f, const C& a) {
    return {f * a.re, f * a.im};
}
[[gnu::always_inline]] inline C add_scaled(V f, const C& a, const C& to) {
    return {fma(f, a.re, to.re), fma(f, a.im, to.im)};
}

// Discrete transforms with E(+1 / m) (forward) or E(-1 / m) (inverse) in place.
template <bool inverse>
[[gnu::always_inline]] inline void dft3(C& a, C& b, C& c) {
    C sum = b + c, diff = scale(V::all(HALF_SQRT3), b - c);
    C mid = add_scaled(V::all(-0.5), sum, a);
    a = a + sum;
    b = inverse ? minus_i(mid, diff) : plus_i(mid, diff);
    c = inverse ? plus_i(mid, diff) : minus_i(mid, diff);
}
template <bool inverse>
[[gnu::always_inline]] inline void dft5(C& a, C& b, C& c, C& d, C& e) {
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
[[gnu::always_inline]] inline void odd_columns(double* x, unsigned m, size_t step, const double* tw) {
    for (size_t i = 0; i < FFT_COLUMNS; i++)
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

// The radix-m stage over a tile whose columns start at column i of the transform.
template <bool inverse>
inline void odd_stage(const FftShape& shape, double* tile, size_t i) {
    const size_t step = FFT_TILE_ROW << shape.top;
    for (size_t j = 0; j < size_t(1) << shape.top; j++)
        odd_columns<inverse>(tile + FFT_TILE_ROW * j, shape.m, step,
                             shape.odd + (shape.m == 3 ? 2 : 4) * (j * shape.columns() + i));
}
