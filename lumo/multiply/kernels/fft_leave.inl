// From the array back to bits: the inverse of fft_enter.inl, then rounding and carries.
//
// Rounding adds 1.5 2^52, which leaves the integer in the low bits of the double. Beside it the distance from
// that integer is kept, and whether the sum left its binade: a value too large, infinite or not a number.
//
// Carries run within a stream from point to point, all streams at once, one in each lane. A coefficient stays
// below 2^(63 - b) for b <= 16, so two neighbours go as one of 2 b bits; longer pieces go singly. The sums
// are kept with a bias of 2^63, so that logical shifts do for signed values.

constexpr double ROUNDER = 6755399441055744.0;  // 1.5 2^52
constexpr uint64_t ROUNDER_BITS = 0x4338000000000000;
constexpr uint64_t BIAS = uint64_t(1) << 63;

// (a, b) := (a + b, (a - b) conj(w)), and with i w.
[[gnu::always_inline]] inline void meet(C& a, C& b, const C& w) {
    const C d = a - b;
    a = a + b;
    b = mul_conj(d, w);
}
[[gnu::always_inline]] inline void meet_i(C& a, C& b, const C& w) {
    const C d = a - b;
    a = a + b;
    b = {fnma(d.re, w.im, d.im * w.re), fnms(d.re, w.re, d.im * w.im)};
}

// 8 times the inverse of split8.
[[gnu::always_inline]] inline void join8(C (&z)[8]) {
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

// Rounds, carries and writes the 8 points of a column group, 16 streams of them.
template <int b>
struct Writer {
    static constexpr bool PAIRED = b <= 16;
    static constexpr int WIDTH = PAIRED ? 2 * b : b;  // bits of what is carried at once
    static constexpr int PIECES = 8 * b / WIDTH;
    static constexpr int GROUPS = int(FFT_STREAMS) / LANES;
    static constexpr uint64_t CARRY_BIAS = BIAS >> WIDTH;

    V scale, worst;
    I range;
    I digits[PIECES][GROUPS];

    [[gnu::always_inline]] I round(const V& x) {
        const V magic = V::all(ROUNDER), y = fma(x, scale, magic);
        worst = max_magnitude(worst, fms(x, scale, y - magic));
        range = or_differences(range, I::bits_of(y), I::all(ROUNDER_BITS));
        return I::bits_of(y);
    }

    // s := value + carry as biased sum; the low bits are a digit, the rest is the new carry.
    [[gnu::always_inline]] void take(const I& sum, I& carry, I& digit) {
        const I s = sum + carry;
        digit = s & I::all((uint64_t(1) << WIDTH) - 1);
        carry = s.template down<WIDTH>();
    }

    [[gnu::always_inline]] void add_points(const C (&z)[8], int h, int64_t* carries) {
        constexpr int PAIRS = LANES / 2;
#pragma GCC unroll 8
        for (int g = 0; g < GROUPS; g++) {
            I low[PAIRS], high[PAIRS];
#pragma GCC unroll 4
            for (int e = 0; e < PAIRS; e++) {
                const int s = g * LANES + 2 * e;  // streams s and s + 1
                const I first = round(s < 8 ? z[s & 7].re : z[s & 7].im);
                const I second = round(s < 8 ? z[(s + 1) & 7].re : z[(s + 1) & 7].im);
                low[e] = zip_low(first, second);
                high[e] = zip_high(first, second);
            }
            I carry = I::load(carries + g * LANES);
            if constexpr (PAIRED) {
                const I offset = I::all(BIAS - CARRY_BIAS - ROUNDER_BITS - (ROUNDER_BITS << b));
#pragma GCC unroll 4
                for (int e = 0; e < PAIRS; e++) low[e] = low[e] + high[e].template up<b>() + offset;
                I::transpose_pairs(low);
#pragma GCC unroll 4
                for (int e = 0; e < PAIRS; e++) take(low[e], carry, digits[h * PAIRS + e][g]);
            } else {
                const I offset = I::all(BIAS - CARRY_BIAS - ROUNDER_BITS);
                I::transpose_pairs(low);
                I::transpose_pairs(high);
#pragma GCC unroll 4
                for (int e = 0; e < PAIRS; e++) {
                    take(low[e] + offset, carry, digits[h * LANES + 2 * e][g]);
                    take(high[e] + offset, carry, digits[h * LANES + 2 * e + 1][g]);
                }
            }
            carry.store(carries + g * LANES);
        }
    }

    // Joins the digits from number i on into 64-bit words.
    template <int i>
    [[gnu::always_inline]] void assemble(I (&words)[3], int g) const {
        if constexpr (i < PIECES) {
            constexpr int at = i * WIDTH, word = at / 64, bit = at % 64;
            words[word] = words[word] | digits[i][g].template up<bit>();
            if constexpr (bit + WIDTH > 64)
                words[word + 1] = words[word + 1] | digits[i][g].template down<64 - bit>();
            assemble<i + 1>(words, g);
        }
    }

    // b bytes to each stream. Unless they are the last of a run, bytes behind them may be overwritten.
    [[gnu::always_inline]] void write(unsigned char* out, size_t stride, bool last) const {
#pragma GCC unroll 8
        for (int g = 0; g < GROUPS; g++, out += LANES * stride) {
            I words[3] = {I::all(0), I::all(0), I::all(0)};
            assemble<0>(words, g);
            if (last || b > 16) {
                uint64_t lanes[3][LANES];
                for (int i = 0; i < 3; i++) words[i].store(lanes[i]);
                for (int l = 0; l < LANES; l++) {
                    const uint64_t run[3] = {lanes[0][l], lanes[1][l], lanes[2][l]};
                    __builtin_memcpy(out + size_t(l) * stride, run, b);
                }
            } else {
                I::store_pairs(words[0], words[1], out, stride);
            }
        }
    }
};

// Points t .. t + 7 from 8 vectors, up to rounding.
[[gnu::always_inline]] inline void leave_points(const FftShape& shape, const double* in, size_t t, int h,
                                                C (&z)[8]) {
    const double* coarse = shape.coarse + 2 * t;
#pragma GCC unroll 4
    for (int k = 0; k < HALVES; k++) {
        V re[LANES], im[LANES];
#pragma GCC unroll 8
        for (int i = 0; i < LANES; i++) {
            const C a = load(in + FFT_VECTOR * (LANES * h + i) + LANES * k);
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
        const C c{V::all(coarse[j]), V::all(coarse[8 + j])};
        z[j] = mul_conj(z[j], mul(load(shape.fine + FFT_VECTOR * j + LANES * h), c));
    }
    join8(z);
}

// Columns i .. i + 7 of the array, with the topmost layers and the radix-m stage undone.
inline void load_tile(const FftShape& shape, const double* x, double* tile, size_t i) {
    const size_t row = FFT_VECTOR * FFT_COLUMNS, step = FFT_VECTOR * shape.columns();
    const double* y = x + FFT_VECTOR * i;
    for (size_t r = 0; r < shape.rows(); r += size_t(1) << shape.top) {
        if (shape.top == 4)
            join_node16(y + step * r, step, tile + row * r, row, shape.nodes[shape.depth - 2] + 4 * i,
                        shape.nodes[shape.depth] + 4 * i, shape.columns(), FFT_COLUMNS);
        else if (shape.top == 2)
            join_node4(y + step * r, step, tile + row * r, row, shape.nodes[shape.depth] + 4 * i,
                       FFT_COLUMNS);
        else
            __builtin_memcpy(tile + row * r, y + step * r, row * sizeof(double));
    }
    if (shape.m != 1) odd_stage<true>(shape, tile, i);
}

template <int b>
void leave_columns(const FftShape& shape, const double* x, unsigned char* bytes, FftTally& tally, size_t from,
                   size_t to) {
    const size_t rows = shape.rows(), stride = shape.vectors() / 8 * b;
    alignas(64) double tile[FFT_MAX_ROWS * FFT_VECTOR * FFT_COLUMNS];
    Writer<b> writer;
    writer.scale = V::all(shape.scale);
    writer.worst = V::all(0.0);
    writer.range = I::all(0);
    for (size_t r = 0; r < rows; r++)
        for (size_t s = 0; s < FFT_STREAMS; s++) tally.carry[r][s] = int64_t(Writer<b>::CARRY_BIAS);
    for (size_t i = from; i < to; i += FFT_COLUMNS) {
        load_tile(shape, x, tile, i);
        for (size_t r = 0; r < rows; r++) {
            const size_t t = r * shape.columns() + i;
#pragma GCC unroll 1
            for (int h = 0; h < HALVES; h++) {
                C z[8];
                leave_points(shape, tile + FFT_VECTOR * FFT_COLUMNS * r, t, h, z);
                writer.add_points(z, h, tally.carry[r]);
            }
            writer.write(bytes + t / 8 * b, stride, i + FFT_COLUMNS == to);
        }
    }
    for (size_t r = 0; r < rows; r++)
        for (size_t s = 0; s < FFT_STREAMS; s++) tally.carry[r][s] -= int64_t(Writer<b>::CARRY_BIAS);
    for (int i = 0; i < 8; i += LANES) {
        writer.worst.store(tally.worst + i);
        writer.range.store(tally.range + i);
    }
}

void leave(const FftShape& shape, const double* x, unsigned char* bytes, FftTally& tally, size_t from,
           size_t to) {
    using Leave = void (*)(const FftShape&, const double*, unsigned char*, FftTally&, size_t, size_t);
    static constexpr Leave BY_BITS[] = {
        leave_columns<10>, leave_columns<11>, leave_columns<12>, leave_columns<13>,
        leave_columns<14>, leave_columns<15>, leave_columns<16>, leave_columns<17>,
        leave_columns<18>, leave_columns<19>, leave_columns<20>,
    };
    BY_BITS[shape.b - 10](shape, x, bytes, tally, from, to);
}
