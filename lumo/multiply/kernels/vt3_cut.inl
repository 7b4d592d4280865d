// Digits to pieces of 48 bits, 16 digits at a time. Up to two bytes beyond the last digit are read.

inline void cut_digits(const Vt3Shape& shape, uint64_t* pieces, const unsigned char* from) {
    const size_t bytes = shape.b / 8, count = shape.pieces();
    const uint64_t mask = (uint64_t(1) << 48) - 1;
    const uint64_t top_mask = (uint64_t(1) << (shape.b - 48 * (count - 1))) - 1;
    for (size_t i = 0; i < count; i++)
        for (size_t j = 0; j < VT3_COLUMNS; j++) {
            uint64_t word;
            __builtin_memcpy(&word, from + j * bytes + 6 * i, 8);
            pieces[i * VT3_COLUMNS + j] = word & (i + 1 < count ? mask : top_mask);
        }
}

#if defined(__AVX512F__)

inline void cut_run(const Vt3Shape& shape, uint64_t* pieces, const unsigned char* from) {
    if (shape.b != 128) return cut_digits(shape, pieces, from);
    // Digits of two words: eight low and eight high ones, and the three pieces from them.
    const __m512i low_words = _mm512_setr_epi64(0, 2, 4, 6, 8, 10, 12, 14);
    const __m512i high_words = _mm512_setr_epi64(1, 3, 5, 7, 9, 11, 13, 15);
    const __m512i mask = _mm512_set1_epi64((int64_t(1) << 48) - 1);
#pragma GCC unroll 2
    for (size_t e = 0; e < VT3_COLUMNS; e += 8) {
        const __m512i first = _mm512_loadu_si512(from + 16 * e),
                      second = _mm512_loadu_si512(from + 16 * e + 64);
        const __m512i low = _mm512_permutex2var_epi64(first, low_words, second);
        const __m512i high = _mm512_permutex2var_epi64(first, high_words, second);
        const __m512i middle = _mm512_or_si512(_mm512_srli_epi64(low, 48), _mm512_slli_epi64(high, 16));
        _mm512_storeu_si512(pieces + e, _mm512_and_si512(low, mask));
        _mm512_storeu_si512(pieces + VT3_COLUMNS + e, _mm512_and_si512(middle, mask));
        _mm512_storeu_si512(pieces + 2 * VT3_COLUMNS + e, _mm512_srli_epi64(high, 32));
    }
}

#else

inline void cut_run(const Vt3Shape& shape, uint64_t* pieces, const unsigned char* from) {
    cut_digits(shape, pieces, from);
}

#endif
