// Chinese remaindering in 52-bit limbs, eight digits at a time.

/// 16 digits as WORDS words each: word w of digit j at values[w][j]. Source: the floating quotient as in
/// Bernstein and Sorenson (2007): the value is at most M / 4, so sum y_i / p_i + 1 / 4 has a fraction in
/// [1/4, 1/2] and the quotient is exact; it takes up what the residues, of 52 bits each, have of p, less than
/// 32 N. 2 N^2 multiply-adds for 8 digits; a limb adds up at most 2 N + 2 terms below 2^52.
template <int N, int WORDS>
class Remainders {
 public:
    Remainders(const Vt3Shape& length, const Vt3Crt& constants) : shape(length), crt(constants) {
        double offset = 0.25;
        for (int i = 0; i < N; i++) offset -= 4503599627370496.0 * crt.p_reciprocal[i];
        start = _mm512_set1_pd(offset);
    }

    void row(uint64_t* tiles, size_t r, uint64_t (*values)[VT3_COLUMNS]) const {
        for (size_t e = 0; e < VT3_COLUMNS; e += 8) half(tiles + shape.tile_place(r) + e, &values[0][e]);
    }

 private:
    void half(const uint64_t* y, uint64_t* values) const {
        __m512i limb[N + 1];
#pragma GCC unroll 16
        for (int w = 0; w <= N; w++) limb[w] = _mm512_setzero_si512();
        __m512d quotient = start;
#pragma GCC unroll 16
        for (int i = 0; i < N; i++) {
            const __m512i r = _mm512_loadu_si512(y + size_t(i) * shape.tile_words());
            quotient = _mm512_fmadd_pd(above_two52(r), _mm512_set1_pd(crt.p_reciprocal[i]), quotient);
#pragma GCC unroll 16
            for (int w = 0; w < N - 1; w++) {
                const __m512i c = _mm512_set1_epi64(int64_t(crt.cofactor52[i][w]));
                limb[w] = _mm512_madd52lo_epu64(limb[w], r, c);
                limb[w + 1] = _mm512_madd52hi_epu64(limb[w + 1], r, c);
            }
        }
        const __m512i q = _mm512_cvttpd_epi64(quotient);
#pragma GCC unroll 16
        for (int w = 0; w < N; w++) {
            const __m512i c = _mm512_set1_epi64(int64_t(crt.minus52[w]));
            limb[w] = _mm512_madd52lo_epu64(limb[w], q, c);
            limb[w + 1] = _mm512_madd52hi_epu64(limb[w + 1], q, c);
        }
        const __m512i mask = _mm512_set1_epi64((int64_t(1) << 52) - 1);
#pragma GCC unroll 16
        for (int w = 0; w + 1 < N; w++) {
            limb[w + 1] = _mm512_add_epi64(limb[w + 1], _mm512_srli_epi64(limb[w], 52));
            limb[w] = _mm512_and_si512(limb[w], mask);
        }
        limb[N - 1] = _mm512_and_si512(limb[N - 1], mask);
#pragma GCC unroll 16
        for (int w = 0; w < WORDS; w++) {
            const int first = 64 * w / 52;
            const unsigned skip = unsigned(64 * w - 52 * first);
            __m512i word = _mm512_srli_epi64(limb[first], skip);
            if (first + 1 < N) word = _mm512_or_si512(word, _mm512_slli_epi64(limb[first + 1], 52 - skip));
            if (first + 2 < N && 104 - skip < 64)
                word = _mm512_or_si512(word, _mm512_slli_epi64(limb[first + 2], 104 - skip));
            _mm512_storeu_si512(values + size_t(w) * VT3_COLUMNS, word);
        }
    }

    /// 2^52 more than the low 52 bits.
    static __m512d above_two52(__m512i x) {
        const __m512i bits = _mm512_set1_epi64((int64_t(1) << 52) - 1),
                      two52 = _mm512_set1_epi64(0x433LL << 52);
        return _mm512_castsi512_pd(_mm512_ternarylogic_epi64(x, bits, two52, 0xea));
    }

    const Vt3Shape& shape;
    const Vt3Crt& crt;
    __m512d start;  ///< of the quotient, whose terms come out 2^52 / p_i too large
};
