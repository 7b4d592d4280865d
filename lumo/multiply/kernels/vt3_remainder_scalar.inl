// Chinese remaindering in 64-bit words, one digit at a time.

/// 16 digits as WORDS words each: word w of digit j at values[w][j]. Source: the floating quotient as in
/// Bernstein and Sorenson (2007): the value is at most M / 4, so sum y_i / p_i + 1 / 4 has a fraction in
/// [1/4, 1/2] and the quotient is exact.
template <int N, int WORDS>
class Remainders {
 public:
    Remainders(const Vt3Shape& length, const Vt3Crt& constants) : shape(length), crt(constants) {}

    void row(uint64_t* tiles, size_t r, uint64_t (*values)[VT3_COLUMNS]) const {
        uint64_t* at = tiles + shape.tile_place(r);
        for (size_t i = 0; i < N; i++) {
            const Field f(*crt.primes[i]);
            uint64_t* y = at + i * shape.tile_words();
            for (size_t e = 0; e < VT3_COLUMNS; e += Field::LANES)
                f.store_canonical(y + e, Field::load(y + e));
        }
        for (size_t j = 0; j < VT3_COLUMNS; j++) digit(at + j, j, values);
    }

 private:
    void digit(const uint64_t* y, size_t j, uint64_t (*values)[VT3_COLUMNS]) const {
        uint64_t value[WORDS] = {};
        auto accumulate = [&value](uint64_t factor, const uint64_t* limbs) {
            uint64_t carry = 0;
#pragma GCC unroll 8
            for (int w = 0; w < WORDS; w++) {
                const unsigned __int128 t =
                    static_cast<unsigned __int128>(factor) * limbs[w] + value[w] + carry;
                value[w] = uint64_t(t);
                carry = uint64_t(t >> 64);
            }
        };
        double quotient = 0.25;
        for (size_t i = 0; i < N; i++) {
            const uint64_t residue = y[i * shape.tile_words()];
            quotient += double(int64_t(residue)) * crt.p_reciprocal[i];
            accumulate(residue, crt.cofactor64[i]);
        }
        accumulate(uint64_t(int64_t(quotient)), crt.minus64);
        for (int w = 0; w < WORDS; w++) values[w][j] = value[w];
    }

    const Vt3Shape& shape;
    const Vt3Crt& crt;
};
