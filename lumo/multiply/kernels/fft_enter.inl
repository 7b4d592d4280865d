// From the operand's bits to the array: pieces, three layers of splitting over the 8 parts, twists, and the
// one transposition that puts the parts into lanes. Part j lies in the ring x^V = E(c_j / 32) after layers
// whose roots are E(1/8); E(1/16) and i times it; E(1/32), i times it, E(5/32), i times it.

const double ROOT_8[2] = {0.70710678118654752440, 0.70710678118654752440};
const double ROOT_16[2] = {0.92387953251128675613, 0.38268343236508977173};
const double ROOT_32[2] = {0.98078528040323044913, 0.19509032201612826785};
const double ROOT_5_32[2] = {0.55557023301960222474, 0.83146961230254523708};

template <bool real_only>
[[gnu::always_inline]] inline void split8(C (&z)[8]) {
    const C w8 = root(ROOT_8), w16 = root(ROOT_16), w32 = root(ROOT_32), w5 = root(ROOT_5_32);
#pragma GCC unroll 4
    for (int j = 0; j < 4; j++) {
        if constexpr (real_only) {
            const V a = z[j].re, c = z[j + 4].re;
            z[j] = {fma(w8.re, c, a), w8.im * c};
            z[j + 4] = {fnma(w8.re, c, a), V::all(-ROOT_8[1]) * c};
        } else {
            turn(z[j], z[j + 4], w8);
        }
    }
    turn(z[0], z[2], w16);
    turn(z[1], z[3], w16);
    turn_i(z[4], z[6], w16);
    turn_i(z[5], z[7], w16);
    turn(z[0], z[1], w32);
    turn_i(z[2], z[3], w32);
    turn(z[4], z[5], w5);
    turn_i(z[6], z[7], w5);
}

// 32 bytes of which byte 1 is byte `byte` of the operand.
inline const unsigned char* window(const FftOperand& a, size_t byte) {
    if (byte == 0) return a.head;
    byte--;
    if (byte + 32 <= a.size) return a.bytes + byte;
    if (byte >= a.size) return a.tail + 128;
    return a.tail + (byte - a.tail_start);
}

// Points t .. t + 7 of all streams, to 8 vectors.
template <bool real_only>
[[gnu::always_inline]] inline void enter_points(const FftShape& shape, const FftOperand& a,
                                                const V::Cutter& cutter, size_t t, double* out) {
    const size_t stride = shape.vectors() / 8 * shape.b;
    constexpr size_t STREAMS = real_only ? 8 : FFT_STREAMS;
    const size_t first = t / 8 * shape.b;
    const unsigned char* from[STREAMS];
    if (first > 0 && first + (STREAMS - 1) * stride + 31 <= a.size) [[likely]] {
#pragma GCC unroll 16
        for (size_t s = 0; s < STREAMS; s++) from[s] = a.bytes + first - 1 + s * stride;
    } else {
        for (size_t s = 0; s < STREAMS; s++) from[s] = window(a, first + s * stride);
    }
    const double* coarse = shape.coarse + 2 * t;
#pragma GCC unroll 1
    for (int h = 0; h < HALVES; h++) {
        C z[8];
#pragma GCC unroll 8
        for (int j = 0; j < 8; j++) {
            z[j].re = cutter.cut(from[j], h);
            if constexpr (!real_only) z[j].im = cutter.cut(from[j + 8], h);
        }
        split8<real_only>(z);
        if (t == 0 && h == 0 && a.borrows) {
            // A constant is the same in all rings.
            const double re[8] = {a.first_re}, im[8] = {a.first_im};
            for (int j = 0; j < 8; j++) z[j] = z[j] + C{V::load(re), V::load(im)};
        }
#pragma GCC unroll 8
        for (int j = 0; j < 8; j++) {
            const C c{V::all(coarse[j]), V::all(coarse[8 + j])};
            z[j] = mul(z[j], mul(load(shape.fine + FFT_VECTOR * j + LANES * h), c));
        }
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
            for (int i = 0; i < LANES; i++)
                store(out + FFT_VECTOR * (LANES * h + i) + LANES * k, C{re[i], im[i]});
        }
    }
}

template <bool real_only>
void enter_columns(const FftShape& shape, double* x, const FftOperand& a, double* tile, size_t from,
                   size_t to) {
    const V::Cutter cutter(a, shape.b);
    const size_t step = FFT_VECTOR * shape.columns(), rows = shape.rows();
    for (size_t i = from; i < to; i += FFT_COLUMNS) {
        for (size_t r = 0; r < rows; r++)
            enter_points<real_only>(shape, a, cutter, r * shape.columns() + i, tile + FFT_TILE_ROW * r);
        if (shape.m != 1) odd_stage<false>(shape, tile, i);
        for (size_t r = 0; r < rows; r += size_t(1) << shape.top)
            tile_forward<true>(tile + FFT_TILE_ROW * r, x + FFT_VECTOR * i + step * r, step, shape.top, 0,
                               shape.roots);
    }
}

void enter(const FftShape& shape, double* x, const FftOperand& a, double* tile, size_t from, size_t to) {
    if (a.real_only)
        enter_columns<true>(shape, x, a, tile, from, to);
    else
        enter_columns<false>(shape, x, a, tile, from, to);
}
