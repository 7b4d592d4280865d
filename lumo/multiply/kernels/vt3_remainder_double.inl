// Chinese remaindering in doubles, a vector of digits at a time.

/// 16 digits as WORDS words each: word w of digit j at values[w][j]. The residues y_i are signed, at most
/// 0.6 p_i, and the value, sum y_i (M / p_i) - q M, is at most M / 4: sum y_i / p_i - 1 / 8 lies within 1 / 8
/// of the quotient q, which rounding finds.
///
/// Limbs have 48 bits, so a product stays below 0.6 2^96. For each limb the products are added to 1.5 2^100
/// one after the other, which rounds to multiples of 2^48; what that adds and what it loses, at most 2^47,
/// are both exact. Sums of these in units of 2^48: lows at most N / 2, highs 0.6 N, and q M at most |q|,
/// which is at most the whole part of 0.6 N + 5 / 8. For 9 primes that is 4.5 + 5.4 + 6, so with the carry
/// the sum of the three stays below 2^52 in size. Source: Bernstein and Sorenson (2007) for the floating
/// quotient; Dekker (1971) for exact products.
template <int N, int WORDS>
class Remainders {
 public:
    Remainders(const Vt3Shape& length, const Vt3Crt& constants) : shape(length), crt(constants) {}

    void row(uint64_t* tiles, size_t r, uint64_t (*values)[VT3_COLUMNS]) const {
        for (size_t e = 0; e < VT3_COLUMNS; e += NarrowField::LANES)
            digits(tiles + shape.tile_place(r) + e, &values[0][e]);
    }

 private:
    static_assert(N <= 9);
    using D = Doubles;
    using V = NarrowField::V;
    static constexpr double SPLITTER = 1.5 * 1267650600228229401496703205376.0;  // 2^100

    void digits(const uint64_t* y, uint64_t* values) const {
        V high[N], low[N];
#pragma GCC unroll 16
        for (int w = 0; w < N; w++) high[w] = D::all(SPLITTER), low[w] = D::all(NarrowField::ROUNDER);
        V quotient = D::all(-0.125);
#pragma GCC unroll 16
        for (int i = 0; i < N; i++) {
            const NarrowField f(*crt.primes[i]);
            const V residue = f.norm(NarrowField::load(y + size_t(i) * shape.tile_words()));
            quotient = D::fma(residue, D::all(crt.p_reciprocal[i]), quotient);
#pragma GCC unroll 16
            for (int w = 0; w < N - 1; w++) {
                const V c = D::all(crt.cofactor48[i][w]);
                const V sum = D::fma(residue, c, high[w]);
                low[w] = D::add(low[w], D::fms(residue, c, D::sub(sum, high[w])));
                high[w] = sum;
            }
        }
        quotient = D::sub(D::add(quotient, D::all(NarrowField::ROUNDER)), D::all(NarrowField::ROUNDER));

        // Limbs as the bits of the doubles that hold them, which `offset` takes off again. It adds 2^52, for
        // a limb of no sign, and takes that from the next.
        V limb[N + 1];
        V carry;
#pragma GCC unroll 16
        for (int w = 0; w < N; w++) {
            const V multiple = D::fnma(quotient, D::all(crt.product48[w]), D::all(NarrowField::ROUNDER));
            V bits = D::add_words(D::add_words(low[w], multiple), D::all_words(offset(w)));
            if (w != 0) bits = D::add_words(D::add_words(bits, high[w - 1]), carry);
            carry = D::template shift_right<48>(bits);
            limb[w] = D::and_bits(bits, D::all_words((uint64_t(1) << 48) - 1));
        }
        limb[N] = D::all_words(0);
#pragma GCC unroll 8
        for (int w = 0; w < WORDS; w++) put_word(values + size_t(w) * VT3_COLUMNS, limb, w);
    }

    static constexpr uint64_t bits_of(double x) {
        return __builtin_bit_cast(uint64_t, x);
    }
    static constexpr uint64_t offset(int w) {
        const uint64_t taken = w == 0 ? 0 : bits_of(SPLITTER) + 16;
        return (uint64_t(1) << 52) - 2 * bits_of(NarrowField::ROUNDER) - taken;
    }
    /// Word w of limbs of 48 bits.
    static void put_word(uint64_t* to, const V* limb, int w) {
        V word;
        switch (w % 3) {
            case 0:
                word = D::or_bits(limb[w / 3 * 4], D::template shift_left<48>(limb[w / 3 * 4 + 1]));
                break;
            case 1:
                word = D::or_bits(D::template shift_right<16>(limb[w / 3 * 4 + 1]),
                                  D::template shift_left<32>(limb[w / 3 * 4 + 2]));
                break;
            default:
                word = D::or_bits(D::template shift_right<32>(limb[w / 3 * 4 + 2]),
                                  D::template shift_left<16>(limb[w / 3 * 4 + 3]));
        }
        D::store(to, word);
    }

    const Vt3Shape& shape;
    const Vt3Crt& crt;
};
