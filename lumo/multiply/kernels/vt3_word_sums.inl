// Sums of words modulo 2^64 - 1, by which products are checked.

/// Of runs of whole words, by halves, which no carry links: good for 2^32 words in all.
class WordSums {
 public:
    void add(const void* run, size_t bytes);
    uint64_t total() const;

 private:
#if defined(__AVX512F__)
    __m512i low = _mm512_setzero_si512(), high = _mm512_setzero_si512();
#else
    uint64_t low = 0, high = 0;
#endif
};

inline uint64_t fold(uint64_t low_halves, uint64_t high_halves) {
    unsigned __int128 all = (static_cast<unsigned __int128>(high_halves) << 32) + low_halves;
    while (all >> 64) all = uint64_t(all) + (all >> 64);
    return uint64_t(all);
}

#if defined(__AVX512F__)

inline void WordSums::add(const void* run, size_t bytes) {
    const auto* words = static_cast<const unsigned char*>(run);
    const __m512i half = _mm512_set1_epi64(0xffffffff);
    for (size_t i = 0; i < bytes; i += 64) {
        const size_t left = (bytes - i) / 8;
        const __mmask8 taken = left >= 8 ? __mmask8(0xff) : __mmask8((1u << left) - 1);
        const __m512i x = _mm512_maskz_loadu_epi64(taken, words + i);
        low = _mm512_add_epi64(low, _mm512_and_si512(x, half));
        high = _mm512_add_epi64(high, _mm512_srli_epi64(x, 32));
    }
}
inline uint64_t WordSums::total() const {
    return fold(uint64_t(_mm512_reduce_add_epi64(low)), uint64_t(_mm512_reduce_add_epi64(high)));
}

#else

inline void WordSums::add(const void* run, size_t bytes) {
    const auto* words = static_cast<const unsigned char*>(run);
    for (size_t i = 0; i < bytes; i += 8) {
        uint64_t x;
        __builtin_memcpy(&x, words + i, 8);
        low += x & 0xffffffff;
        high += x >> 32;
    }
}
inline uint64_t WordSums::total() const {
    return fold(low, high);
}

#endif
