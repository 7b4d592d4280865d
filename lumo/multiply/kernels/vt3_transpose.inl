// 8 x 8 words. Where a vector holds eight they are turned in registers, elsewhere on the way from
// src[i src_step + j] to dst[j dst_step + i]. Templates: what a set does not have it does not name.

#if defined(__AVX512F__)

/// 8 vectors of 8 words in registers.
template <int>
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

template <int>
void transpose8(const uint64_t* src, size_t src_step, uint64_t* dst, size_t dst_step) = delete;

#elif defined(__AVX2__)

template <int>
void transpose_vectors(Field::V* v) = delete;

inline void transpose4(const uint64_t* src, size_t src_step, uint64_t* dst, size_t dst_step) {
    __m256i a[4];
    for (int i = 0; i < 4; i++)
        a[i] = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(src + size_t(i) * src_step));
    const __m256i t0 = _mm256_unpacklo_epi64(a[0], a[1]), t1 = _mm256_unpackhi_epi64(a[0], a[1]);
    const __m256i t2 = _mm256_unpacklo_epi64(a[2], a[3]), t3 = _mm256_unpackhi_epi64(a[2], a[3]);
    auto put = [&](size_t j, __m256i row) {
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(dst + j * dst_step), row);
    };
    put(0, _mm256_permute2x128_si256(t0, t2, 0x20));
    put(1, _mm256_permute2x128_si256(t1, t3, 0x20));
    put(2, _mm256_permute2x128_si256(t0, t2, 0x31));
    put(3, _mm256_permute2x128_si256(t1, t3, 0x31));
}

template <int>
inline void transpose8(const uint64_t* src, size_t src_step, uint64_t* dst, size_t dst_step) {
    for (size_t i = 0; i < 8; i += 4)
        for (size_t j = 0; j < 8; j += 4)
            transpose4(src + i * src_step + j, src_step, dst + j * dst_step + i, dst_step);
}

#else

template <int>
void transpose_vectors(Field::V* v) = delete;

template <int>
inline void transpose8(const uint64_t* src, size_t src_step, uint64_t* dst, size_t dst_step) {
    for (size_t i = 0; i < 8; i++)
        for (size_t j = 0; j < 8; j++) dst[j * dst_step + i] = src[i * src_step + j];
}

#endif
