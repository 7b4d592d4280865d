// Last pass: residues to digits, digits to words.

/// Adds up the digits of a row into its words. `run` has room for a word more.
template <unsigned B, int WORDS>
inline void add_digits(const uint64_t (*values)[VT3_COLUMNS], uint64_t* carry, unsigned char* run) {
    constexpr int WHOLE = B / 64;
    constexpr unsigned SHIFT = B % 64;
    uint64_t c[VT3_CARRY_WORDS];
    for (size_t i = 0; i < VT3_CARRY_WORDS; i++) c[i] = carry[i];
    for (size_t j = 0; j < VT3_COLUMNS; j++) {
        uint64_t s[WORDS + 1];
        unsigned char carry_in = 0;
#pragma GCC unroll 8
        for (int w = 0; w < WORDS; w++) {
            unsigned long long sum;
            carry_in = _addcarry_u64(carry_in, values[w][j], w < int(VT3_CARRY_WORDS) ? c[w] : 0, &sum);
            s[w] = sum;
        }
        s[WORDS] = 0;
#pragma GCC unroll 4
        for (int w = 0; w < WHOLE + (SHIFT ? 1 : 0); w++)
            __builtin_memcpy(run + j * (B / 8) + 8 * w, &s[w], 8);
#pragma GCC unroll 4
        for (int w = 0; w < int(VT3_CARRY_WORDS); w++) {
            const uint64_t low = WHOLE + w <= WORDS ? s[WHOLE + w] : 0;
            const uint64_t high = WHOLE + w + 1 <= WORDS ? s[WHOLE + w + 1] : 0;
            c[w] = SHIFT ? (low >> SHIFT) | (high << ((64 - SHIFT) & 63)) : low;
        }
    }
    for (size_t i = 0; i < VT3_CARRY_WORDS; i++) carry[i] = c[i];
}

/// add_digits() for several digits at a time, where a set of kernels has it.
template <unsigned B, int WORDS>
struct VectorDigits {
    static constexpr bool ANY = false;
};

#if defined(__AVX512F__)
#include "lumo/multiply/kernels/vt3_add_digits_avx512.inl"
#endif

template <unsigned B, int WORDS>
inline void add_row(const uint64_t (*values)[VT3_COLUMNS], uint64_t* carry, uint64_t* run) {
    if constexpr (VectorDigits<B, WORDS>::ANY)
        if (VectorDigits<B, WORDS>::add(values, carry, run)) return;
    add_digits<B, WORDS>(values, carry, reinterpret_cast<unsigned char*>(run));
}

/// Copies what of the run lies in the window.
template <size_t BYTES>
inline void put_run(const Vt3Output& output, uint64_t place, const unsigned char* run) {
    if (place >= output.begin && place + BYTES <= output.end) {
        unsigned char* to = output.bytes + (place - output.begin);
        for (size_t i = 0; i < BYTES; i += 16) __builtin_memcpy(to + i, run + i, 16);
        return;
    }
    const uint64_t from = place > output.begin ? place : output.begin;
    const uint64_t to = place + BYTES < output.end ? place + BYTES : output.end;
    if (from < to) __builtin_memcpy(output.bytes + (from - output.begin), run + (from - place), to - from);
}

/// Looks at what of the run lies below the window. A word may be cut in half.
inline void note_words_below(Vt3Output& output, uint64_t place, const uint64_t* run, size_t words) {
    const uint64_t bytes = output.begin - place;
    for (size_t i = output.first ? VT3_CARRY_WORDS : 0; i < words && 8 * i < bytes; i++) {
        const uint64_t wanted = bytes - 8 * i >= 8 ? ~uint64_t(0) : 0xffffffff;
        if ((run[i] & wanted) != wanted) output.below_ones = false;
    }
}

/// The store buffer would fill up waiting for the lines of a row.
inline void fetch_run(const Vt3Output& output, uint64_t place, size_t bytes) {
    if (place < output.begin || place + bytes > output.end) return;
    for (size_t i = 0; i < bytes; i += 64)
        __builtin_prefetch(output.bytes + (place - output.begin) + i, 1, 3);
}

/// What happens to the words of a row once they stand in memory. It waits until those of the next row are
/// there too: wide loads would wait for the narrow stores.
template <unsigned B>
class FinishedRows {
 public:
    explicit FinishedRows(Vt3Output& all) : output(all), row_of_begin(all.begin / all.row_bytes) {}

    void take(size_t r, const uint64_t* run) {
        const bool first = output.first;
        if (first) {
            for (size_t i = 0; i < VT3_CARRY_WORDS; i++) output.head[r][i] = run[i];
            output.ones[r] = 1;
        }
        for (size_t i = first ? VT3_CARRY_WORDS : 0; output.ones[r] && i < BYTES / 8; i++)
            if (~run[i]) output.ones[r] = 0;
        sums.add(run, BYTES);
        const uint64_t place = output.place + r * output.row_bytes;
        if (r == row_of_begin && place < output.begin) note_words_below(output, place, run, BYTES / 8);
        put_run<BYTES>(output, place, reinterpret_cast<const unsigned char*>(run));
    }
    /// Of all words modulo 2^64 - 1.
    uint64_t sum() const { return sums.total(); }

 private:
    static constexpr size_t BYTES = 2 * B;
    Vt3Output& output;
    uint64_t row_of_begin;
    WordSums sums;
};

template <int N, unsigned B>
void join_rows(const Vt3Shape& shape, const Vt3Crt& crt, uint64_t* tiles, Vt3Output& output) {
    constexpr int WORDS = (48 * N + 63) / 64;
    constexpr size_t BYTES = 2 * B;
    const size_t rows = shape.rows();
    // The remainders of a row overlap with the additions of the one before.
    alignas(64) uint64_t values[2][WORDS][VT3_COLUMNS];
    alignas(64) uint64_t run[2][(BYTES / 8 + 2 + 7) / 8 * 8];
    uint64_t tops[VT3_COLUMNS] = {};
    const Remainders<N, WORDS> remainders(shape, crt);
    FinishedRows<B> finished(output);
    remainders.row(tiles, 0, values[0]);
    for (size_t r = 0; r < rows; r++) {
        if (r + 1 < rows) remainders.row(tiles, r + 1, values[(r + 1) % 2]);
        fetch_run(output, output.place + (r + 2 * AHEAD) * output.row_bytes, BYTES);
        const auto& digits = values[r % 2];
        for (size_t j = 0; j < VT3_COLUMNS; j++) tops[j] |= digits[WORDS - 1][j];
        if (output.first)
            for (size_t i = 0; i < VT3_CARRY_WORDS; i++) output.carry[r][i] = 0;
        add_row<B, WORDS>(digits, output.carry[r], run[r % 2]);
        if (r != 0) finished.take(r - 1, run[(r + 1) % 2]);
    }
    finished.take(rows - 1, run[(rows - 1) % 2]);
    for (uint64_t top : tops) output.top |= top;
    const uint64_t sum = output.sum + finished.sum();
    output.sum = sum + (sum < output.sum);
}

void join(const Vt3Shape& shape, const Vt3Crt& crt, uint64_t* tiles, Vt3Output& output) {
    const bool wide = shape.b % 24 != 0;
    switch (shape.n) {
        case 6:
            return wide ? join_rows<6, 128>(shape, crt, tiles, output)
                        : join_rows<6, 120>(shape, crt, tiles, output);
        case 7:
            return wide ? join_rows<7, 152>(shape, crt, tiles, output)
                        : join_rows<7, 144>(shape, crt, tiles, output);
        case 8:
            return wide ? join_rows<8, 176>(shape, crt, tiles, output)
                        : join_rows<8, 168>(shape, crt, tiles, output);
        default:
            return wide ? join_rows<9, 200>(shape, crt, tiles, output)
                        : join_rows<9, 192>(shape, crt, tiles, output);
    }
}
