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

// (a, b) := (a + b, (a - b) (1 - i tan)), which is conj(w) but for the factor cos; the same times -i; and the
// same for E(1/8), whose tangent is 1, with b scaled by r before.
[[gnu::always_inline]] inline void meet(C& a, C& b, const V& tan) {
    const C d = a - b;
    a = a + b;
    b = {fma(tan, d.im, d.re), fnma(tan, d.re, d.im)};
}
[[gnu::always_inline]] inline void meet_i(C& a, C& b, const V& tan) {
    const C d = a - b;
    a = a + b;
    b = {fnma(tan, d.re, d.im), fnms(tan, d.im, d.re)};
}
[[gnu::always_inline]] inline void meet_8(C& a, C& b) {
    const C d = a - b;
    a = a + b;
    b = {d.re + d.im, d.im - d.re};
}
[[gnu::always_inline]] inline void meet_8(C& a, C& b, const V& r) {
    const C d{fnma(r, b.re, a.re), fnma(r, b.im, a.im)};
    a = {fma(r, b.re, a.re), fma(r, b.im, a.im)};
    b = {d.re + d.im, d.im - d.re};
}

// The inverse of split8, but for a factor in each part: 8 times LEAVE_FACTOR[j] puts it right. Cosines are
// left out on the way; where parts with different ones meet, their ratio goes into the sum.
const double COS_8 = ROOT_8[0], COS_16 = ROOT_16[0], COS_32 = ROOT_32[0], COS_5_32 = ROOT_5_32[0];
const double LEAVE_FACTOR[8] = {1.0,   COS_32,        COS_16,        COS_16* COS_32,
                                COS_8, COS_8* COS_32, COS_8* COS_16, COS_8* COS_16* COS_32};

[[gnu::always_inline]] inline void join8(C (&z)[8]) {
    const V tan32 = V::all(ROOT_32[1] / ROOT_32[0]), tan5 = V::all(ROOT_5_32[1] / ROOT_5_32[0]);
    const V tan16 = V::all(ROOT_16[1] / ROOT_16[0]), ratio = V::all(COS_5_32 / COS_32);
    meet(z[0], z[1], tan32);
    meet_i(z[2], z[3], tan32);
    meet(z[4], z[5], tan5);
    meet_i(z[6], z[7], tan5);
    meet(z[0], z[2], tan16);
    meet(z[1], z[3], tan16);
    meet_i(z[4], z[6], tan16);
    meet_i(z[5], z[7], tan16);
    meet_8(z[0], z[4]);
    meet_8(z[1], z[5], ratio);
    meet_8(z[2], z[6]);
    meet_8(z[3], z[7], ratio);
}

// Rounds, carries and writes the 8 points of a column group, 16 streams of them.
template <int b>
struct Writer {
    static constexpr bool PAIRED = b <= 16;
    static constexpr int WIDTH = PAIRED ? 2 * b : b;  // bits of what is carried at once
    static constexpr int PIECES = 8 * b / WIDTH;
    static constexpr int GROUPS = int(FFT_STREAMS) / LANES;
    static constexpr uint64_t CARRY_BIAS = BIAS >> WIDTH;

    double scale[8];  // by part
    V worst;
    I range;
    I digits[PIECES][GROUPS];

    [[gnu::always_inline]] I round(const V& x, const V& factor) {
        const V magic = V::all(ROUNDER), y = fma(x, factor, magic);
        worst = max_magnitude(worst, fms(x, factor, y - magic));
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
                const int s = g * LANES + 2 * e, j = s & 7;  // streams s and s + 1
                const I first = round(s < 8 ? z[j].re : z[j].im, V::all(scale[j]));
                const I second = round(s < 8 ? z[j + 1].re : z[j + 1].im, V::all(scale[j + 1]));
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
            if (last) {
                uint64_t lanes[3][LANES];
                for (int i = 0; i < 3; i++) words[i].store(lanes[i]);
                for (int l = 0; l < LANES; l++) {
                    const uint64_t run[3] = {lanes[0][l], lanes[1][l], lanes[2][l]};
                    __builtin_memcpy(out + size_t(l) * stride, run, b);
                }
            } else {
                I::store_pairs(words[0], words[1], out, stride);
                if constexpr (b > 16) {
                    uint64_t rest[LANES];
                    words[2].store(rest);
                    for (int l = 0; l < LANES; l++)
                        __builtin_memcpy(out + size_t(l) * stride + 16, rest + l, 4);
                }
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

template <int b>
void leave_columns(const FftShape& shape, const double* x, unsigned char* bytes, double* tile,
                   FftTally& tally, size_t from, size_t to) {
    const size_t rows = shape.rows(), step = FFT_VECTOR * shape.columns(), stride = shape.vectors() / 8 * b;
    Writer<b> writer;
    for (int j = 0; j < 8; j++) writer.scale[j] = shape.scale * LEAVE_FACTOR[j];
    writer.worst = V::all(0.0);
    writer.range = I::all(0);
    for (size_t r = 0; r < rows; r++)
        for (size_t s = 0; s < FFT_STREAMS; s++) tally.carry[r][s] = int64_t(Writer<b>::CARRY_BIAS);
    for (size_t i = from; i < to; i += FFT_COLUMNS) {
        for (size_t r = 0; r < rows; r += size_t(1) << shape.top)
            tile_inverse(x + FFT_VECTOR * i + step * r, step, tile + FFT_TILE_ROW * r, shape.top, shape.depth,
                         shape.nodes, i);
        if (shape.m != 1) odd_stage<true>(shape, tile, i);
        for (size_t r = 0; r < rows; r++) {
            const size_t t = r * shape.columns() + i;
#pragma GCC unroll 1
            for (int h = 0; h < HALVES; h++) {
                C z[8];
                leave_points(shape, tile + FFT_TILE_ROW * r, t, h, z);
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

void leave(const FftShape& shape, const double* x, unsigned char* bytes, double* tile, FftTally& tally,
           size_t from, size_t to) {
    static constexpr decltype(&leave_columns<10>) BY_BITS[] = {
        leave_columns<10>, leave_columns<11>, leave_columns<12>, leave_columns<13>,
        leave_columns<14>, leave_columns<15>, leave_columns<16>, leave_columns<17>,
        leave_columns<18>, leave_columns<19>, leave_columns<20>,
    };
    BY_BITS[shape.b - 10](shape, x, bytes, tile, tally, from, to);
}
