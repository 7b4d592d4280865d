#include "lumo/radix/output/word_text.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "lumo/foundation/errors/exceptions.h"
#include "lumo/numbers/words/hash61.h"
#include "lumo/radix/cbrv2/fraction_view.h"

namespace lumo {

namespace {

constexpr std::uint64_t TEN_8 = 100000000;

/// The 8 decimal digits of x in the bytes of a word, the first in the lowest: halves, quarters and eighths
/// are split by multiplication in all lanes at once.
std::uint64_t eight_digits(std::uint64_t x) {
    const std::uint64_t halves = x / 10000 | x % 10000 << 32;
    const std::uint64_t hundreds = (halves * 10486 >> 20) & 0x7f0000007f;
    const std::uint64_t quarters = hundreds | (halves - 100 * hundreds) << 16;
    const std::uint64_t tens = (quarters * 103 >> 10) & 0xf000f000f000f;
    return tens | (quarters - 10 * tens) << 8;
}

void put_decimal(char* out, std::uint64_t word) {
    const std::uint64_t top = word / (TEN_8 * TEN_8);
    const std::uint64_t rest = word % (TEN_8 * TEN_8);
    out[0] = static_cast<char>('0' + top / 100);
    out[1] = static_cast<char>('0' + top / 10 % 10);
    out[2] = static_cast<char>('0' + top % 10);
    const std::uint64_t parts[2] = {eight_digits(rest / TEN_8) | 0x3030303030303030,
                                    eight_digits(rest % TEN_8) | 0x3030303030303030};
    std::memcpy(out + 3, parts, sizeof(parts));
}

/// The 8 hexadecimal digits of x in text, the first in the lowest byte: halves, bytes and digits of x move
/// apart, the higher one first.
std::uint64_t eight_hexadecimal_digits(std::uint64_t x) {
    const std::uint64_t halves = x >> 16 | (x & 0xffff) << 32;
    const std::uint64_t bytes = (halves >> 8 & 0x000000ff000000ff) | (halves & 0x000000ff000000ff) << 16;
    const std::uint64_t digits = (bytes >> 4 & 0x000f000f000f000f) | (bytes & 0x000f000f000f000f) << 8;
    const std::uint64_t above_9 = (digits + 0x0606060606060606) >> 4 & 0x0101010101010101;
    return digits + 0x3030303030303030 + above_9 * ('a' - '0' - 10);
}

void put_hexadecimal(char* out, std::uint64_t word) {
    const std::uint64_t parts[2] = {eight_hexadecimal_digits(word >> 32),
                                    eight_hexadecimal_digits(word & 0xffffffff)};
    std::memcpy(out, parts, sizeof(parts));
}

std::uint64_t load_8(const char* values) {
    std::uint64_t x;
    std::memcpy(&x, values, sizeof(x));
    return x;
}

/// The number whose 8 decimal digits are the bytes of x, the first in the lowest. Pairs of digits gather in
/// every second byte; two products add four pairs up at once.
std::uint64_t join_decimal(std::uint64_t x) {
    const std::uint64_t pairs = 10 * x + (x >> 8);
    return ((pairs & 0x000000ff000000ff) * (100 + (1000000ull << 32)) +
            (pairs >> 16 & 0x000000ff000000ff) * (1 + (10000ull << 32))) >>
           32;
}

std::uint64_t join_hexadecimal(std::uint64_t x) {
    const std::uint64_t pairs = (x << 4 | x >> 8) & 0x00ff00ff00ff00ff;
    const std::uint64_t fours = (pairs << 8 | pairs >> 16) & 0x0000ffff0000ffff;
    return (fours << 16 | fours >> 32) & 0xffffffff;
}

/// The word of so many digit values, the last the least significant.
template <upL_t Radix>
std::uint64_t joined(const char* values, upL_t count) {
    std::uint64_t word = 0;
    upL_t i = 0;
    for (; i < count % 8; i++) word = word * Radix + static_cast<unsigned char>(values[i]);
    for (; i < count; i += 8) {
        const std::uint64_t digits = load_8(values + i);
        if constexpr (Radix == 10)
            word = word * TEN_8 + join_decimal(digits);
        else
            word = word << 32 | join_hexadecimal(digits);
    }
    return word;
}

}  // namespace

const DigitPacking& DigitPacking::of(upL_t radix) {
    static const DigitPacking decimal{10, 19, Hash61::pow(10, 19)};
    static const DigitPacking hexadecimal{16, 16, Hash61::pow(16, 16)};
    if (radix != 10 && radix != 16) throw InvalidParametersException("DigitPacking::of()", "Invalid radix.");
    return radix == 10 ? decimal : hexadecimal;
}

void words_to_text(const DigitPacking& packing, char* out, const std::uint64_t* words_end, upL_t words) {
    if (packing.radix == 10) {
        for (upL_t i = 0; i < words; i++) put_decimal(out + 19 * i, *--words_end);
    } else {
        for (upL_t i = 0; i < words; i++) put_hexadecimal(out + 16 * i, *--words_end);
    }
}

std::uint64_t values_to_word(upL_t radix, const char* values, upL_t count) {
    return radix == 10 ? joined<10>(values, count) : joined<16>(values, count);
}

void values_to_words(const DigitPacking& packing, std::uint64_t* words_end, const char* values, upL_t words) {
    if (packing.radix == 10) {
        for (upL_t i = 0; i < words; i++) *--words_end = joined<10>(values + 19 * i, 19);
    } else {
        for (upL_t i = 0; i < words; i++) *--words_end = joined<16>(values + 16 * i, 16);
    }
}

std::string integer_text(const BigFloat<std::uint64_t>& x, upL_t radix) {
    const BigFloat<std::uint64_t> part = words_between(x, 0, x.top());
    if (part.is_zero()) return "0";
    std::vector<std::uint64_t> words(static_cast<upL_t>(part.top()));
    std::copy_n(part.T, part.L, words.begin() + part.exp);
    std::string text;
    while (!words.empty()) {
        unsigned __int128 rest = 0;
        for (upL_t i = words.size(); i-- > 0;) {
            rest = rest << 64 | words[i];
            words[i] = static_cast<std::uint64_t>(rest / radix);
            rest %= radix;
        }
        text += "0123456789abcdef"[static_cast<unsigned>(rest)];
        if (words.back() == 0) words.pop_back();
    }
    std::reverse(text.begin(), text.end());
    return text;
}

std::uint64_t integer_hash(const BigFloat<std::uint64_t>& x) {
    const BigFloat<std::uint64_t> part = words_between(x, 0, x.top());
    return Hash61::mul(bp_hash<std::uint64_t>(0, part.T, part.L),
                       Hash61::word_power<std::uint64_t>(part.exp));
}

}  // namespace lumo
