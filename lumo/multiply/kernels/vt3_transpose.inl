// Rows of a tile to and from groups, by way of the registers: TURNED_ROWS rows of LANES columns, of which a
// group has word `row` of every line.

#if defined(__AVX512F__)

constexpr size_t TURNED_ROWS = 8;

/// 8 vectors of 8 words.
[[gnu::always_inline]] inline void transpose_vectors(Field::V* v) {
    __m512i a[8], t[8], u[8];
    for (int i = 0; i < 8; i++) a[i] = Field::bits(v[i]);
    for (int i = 0; i < 4; i++) {
        t[2 * i] = _mm512_unpacklo_epi64(a[2 * i], a[2 * i + 1]);
        t[2 * i + 1] = _mm512_unpackhi_epi64(a[2 * i], a[2 * i + 1]);
    }
    for (int i = 0; i < 2; i++)
        for (int j = 0; j < 2; j++) {
            u[4 * i + j] = _mm512_shuffle_i64x2(t[4 * i + j], t[4 * i + j + 2], 0x88);
            u[4 * i + j + 2] = _mm512_shuffle_i64x2(t[4 * i + j], t[4 * i + j + 2], 0xdd);
        }
    for (int j = 0; j < 4; j++) {
        v[j] = Field::of_bits(_mm512_shuffle_i64x2(u[j], u[j + 4], 0x88));
        v[j + 4] = Field::of_bits(_mm512_shuffle_i64x2(u[j], u[j + 4], 0xdd));
    }
}

[[gnu::always_inline]] inline void load_turned(Field::V* v, const uint64_t* lines) {
#pragma GCC unroll 8
    for (size_t j = 0; j < 8; j++) v[j] = Field::load(lines + 8 * j);
    transpose_vectors(v);
}
/// STREAM: past the caches.
template <bool STREAM>
[[gnu::always_inline]] inline void store_turned(uint64_t* lines, Field::V* v) {
    transpose_vectors(v);
#pragma GCC unroll 8
    for (size_t j = 0; j < 8; j++) {
        if constexpr (STREAM)
            Field::stream(lines + 8 * j, v[j]);
        else
            Field::store(lines + 8 * j, v[j]);
    }
}

#elif defined(__AVX2__)

constexpr size_t TURNED_ROWS = 4;

/// 4 vectors of 4 words.
[[gnu::always_inline]] inline void transpose_vectors(__m256d* v) {
    const __m256d t0 = _mm256_unpacklo_pd(v[0], v[1]), t1 = _mm256_unpackhi_pd(v[0], v[1]);
    const __m256d t2 = _mm256_unpacklo_pd(v[2], v[3]), t3 = _mm256_unpackhi_pd(v[2], v[3]);
    v[0] = _mm256_permute2f128_pd(t0, t2, 0x20);
    v[1] = _mm256_permute2f128_pd(t1, t3, 0x20);
    v[2] = _mm256_permute2f128_pd(t0, t2, 0x31);
    v[3] = _mm256_permute2f128_pd(t1, t3, 0x31);
}

[[gnu::always_inline]] inline void load_turned(Field::V* v, const uint64_t* lines) {
    __m256d low[4], high[4];
#pragma GCC unroll 4
    for (size_t j = 0; j < 4; j++) {
        low[j] = Doubles::load(lines + 8 * j);
        high[j] = Doubles::load(lines + 8 * (j + 4));
    }
    transpose_vectors(low);
    transpose_vectors(high);
#pragma GCC unroll 4
    for (size_t j = 0; j < 4; j++) v[j] = {low[j], high[j]};
}
/// Halves of lines are not worth sending past the caches.
template <bool STREAM>
[[gnu::always_inline]] inline void store_turned(uint64_t* lines, Field::V* v) {
    __m256d low[4], high[4];
#pragma GCC unroll 4
    for (size_t j = 0; j < 4; j++) {
        low[j] = v[j].low;
        high[j] = v[j].high;
    }
    transpose_vectors(low);
    transpose_vectors(high);
#pragma GCC unroll 4
    for (size_t j = 0; j < 4; j++) {
        Doubles::store(lines + 8 * j, low[j]);
        Doubles::store(lines + 8 * (j + 4), high[j]);
    }
}

#else

constexpr size_t TURNED_ROWS = 1;

inline void load_turned(Field::V* v, const uint64_t* line) {
    *v = *line;
}
template <bool STREAM>
inline void store_turned(uint64_t* line, const Field::V* v) {
    *line = *v;
}

#endif
