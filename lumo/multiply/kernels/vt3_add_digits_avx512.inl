// Sums of digits of two words, eight at a time.

/// As add_digits(), for digits 128 bits apart: the low word of a place takes word 0 of its own digit, word 2
/// of the one before and word 4 of the one before that, the high word takes words 1 and 3. Carries go one
/// place up at once; where one would run further, which needs a low word of nearly all ones, it returns false
/// and leaves the carry as it was.
template <>
struct VectorDigits<128, 5> {
    static constexpr bool ANY = true;

    static bool add(const uint64_t (*values)[VT3_COLUMNS], uint64_t* carry, uint64_t* run) {
        const __m512i one = _mm512_set1_epi64(1);
        const __m512i low_first = _mm512_setr_epi64(0, 8, 1, 9, 2, 10, 3, 11);
        const __m512i high_first = _mm512_setr_epi64(4, 12, 5, 13, 6, 14, 7, 15);
        __m512i before2 = _mm512_maskz_set1_epi64(0x80, int64_t(carry[0]));
        __m512i before3 = _mm512_maskz_set1_epi64(0x80, int64_t(carry[1]));
        __m512i before4 = _mm512_maskz_set1_epi64(0x80, int64_t(carry[2]));
        __m512i carries_before = _mm512_setzero_si512();
        __mmask8 far = 0, up1 = 0, up2 = 0;
#pragma GCC unroll 2
        for (size_t e = 0; e < VT3_COLUMNS; e += 8) {
            __m512i word[5];
#pragma GCC unroll 5
            for (size_t w = 0; w < 5; w++) word[w] = _mm512_load_si512(&values[w][e]);
            const __m512i second = _mm512_alignr_epi64(word[2], before2, 7);
            const __m512i third = _mm512_alignr_epi64(word[3], before3, 7);
            const __m512i fourth = _mm512_alignr_epi64(word[4], before4, 6);
            before2 = word[2];
            before3 = word[3];
            before4 = word[4];

            __m512i low = _mm512_add_epi64(word[0], second);
            __m512i up = _mm512_maskz_mov_epi64(_mm512_cmplt_epu64_mask(low, second), one);
            low = _mm512_add_epi64(low, fourth);
            up = _mm512_mask_add_epi64(up, _mm512_cmplt_epu64_mask(low, fourth), up, one);
            __m512i high = _mm512_add_epi64(word[1], third);
            up1 = _mm512_cmplt_epu64_mask(high, third);
            high = _mm512_add_epi64(high, up);
            up2 = _mm512_cmplt_epu64_mask(high, up);
            const __m512i carries = _mm512_mask_add_epi64(_mm512_maskz_mov_epi64(up1, one), up2,
                                                          _mm512_maskz_mov_epi64(up1, one), one);

            const __m512i taken = _mm512_alignr_epi64(carries, carries_before, 7);
            carries_before = carries;
            low = _mm512_add_epi64(low, taken);
            far |= _mm512_cmplt_epu64_mask(low, taken);
            _mm512_store_si512(run + 2 * e, _mm512_permutex2var_epi64(low, low_first, high));
            _mm512_store_si512(run + 2 * e + 8, _mm512_permutex2var_epi64(low, high_first, high));
        }
        if (far != 0) return false;
        unsigned long long sum;
        const uint64_t last = VT3_COLUMNS - 1, last_carry = uint64_t(up1 >> 7) + uint64_t(up2 >> 7);
        unsigned char out = _addcarry_u64(0, values[2][last], values[4][last - 1], &sum);
        unsigned char more = _addcarry_u64(0, sum, last_carry, &sum);
        carry[0] = sum;
        out = _addcarry_u64(out, values[3][last], 0, &sum);
        more = _addcarry_u64(more, sum, 0, &sum);
        carry[1] = sum;
        carry[2] = values[4][last] + out + more;
        carry[3] = 0;
        return true;
    }
};
