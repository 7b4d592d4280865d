#include "digitviewer/files/lmd/packed_words.h"

#include <algorithm>
#include <cstring>

#include "lumo/foundation/errors/fatal.h"

namespace DigitViewer2 {

namespace {

using Lanes = std::uint64_t;

constexpr Lanes TEN_8 = 100000000;
constexpr upL_t MOST_DIGITS = 19;

Lanes load(const char* bytes) {
    Lanes v;
    std::memcpy(&v, bytes, sizeof v);
    return v;
}

void store(char* bytes, Lanes v) {
    std::memcpy(bytes, &v, sizeof v);
}

/// Values of eight characters, one a byte.
Lanes decimal_values(Lanes text) {
    return text & 0x0f0f0f0f0f0f0f0f;
}

/// The letters of either case have bit 6 and a low half that begins with 1.
Lanes hexadecimal_values(Lanes text) {
    return (text & 0x0f0f0f0f0f0f0f0f) + 9 * (text >> 6 & 0x0101010101010101);
}

/// Not zero if a byte is above 9. A carry into the next byte comes only from one that is flagged itself.
Lanes above_nine(Lanes values) {
    return (values | (values + 0x7676767676767676)) & 0x8080808080808080;
}

/// The number of eight decimal digits, the first in the lowest byte.
Lanes join_decimal(Lanes v) {
    v = (v * 10 + (v >> 8)) & 0x00ff00ff00ff00ff;
    v = (v * 100 + (v >> 16)) & 0x0000ffff0000ffff;
    return (v * 10000 + (v >> 32)) & 0xffffffff;
}

Lanes join_hexadecimal(Lanes v) {
    v = (v << 4 | v >> 8) & 0x00ff00ff00ff00ff;
    v = (v << 8 | v >> 16) & 0x0000ffff0000ffff;
    return (v << 16 | v >> 32) & 0xffffffff;
}

/// The inverse of join_decimal(), by multiplications that stand for divisions in their range.
Lanes cut_decimal(Lanes x) {
    const Lanes halves = x / 10000 | x % 10000 << 32;
    const Lanes hundreds = (halves * 10486 >> 20) & 0x7f0000007f;
    const Lanes quarters = hundreds | (halves - 100 * hundreds) << 16;
    const Lanes tens = (quarters * 103 >> 10) & 0xf000f000f000f;
    return tens | (quarters - 10 * tens) << 8;
}

Lanes cut_hexadecimal(Lanes x) {
    x = x >> 16 | (x & 0xffff) << 32;
    x = (x >> 8 & 0x000000ff000000ff) | (x & 0x000000ff000000ff) << 16;
    return (x >> 4 & 0x000f000f000f000f) | (x & 0x000f000f000f000f) << 8;
}

template <DigitForm form>
bool pack_decimal(std::uint64_t* words, const char* digits, upL_t count) {
    Lanes bad = 0;
    for (upL_t i = 0; i < count; i++, digits += 19) {
        Lanes top = 0;
        for (int j = 0; j < 3; j++) {
            const Lanes value =
                static_cast<unsigned char>(digits[j]) & (form == DigitForm::text ? 0x0f : 0xff);
            bad |= Lanes(value > 9);
            top = top * 10 + value;
        }
        Lanes middle = load(digits + 3), low = load(digits + 11);
        if (form == DigitForm::text) {
            middle = decimal_values(middle);
            low = decimal_values(low);
        }
        bad |= above_nine(middle) | above_nine(low);
        words[i] = (top * TEN_8 + join_decimal(middle)) * TEN_8 + join_decimal(low);
    }
    return form == DigitForm::text || bad == 0;
}

template <DigitForm form>
bool pack_hexadecimal(std::uint64_t* words, const char* digits, upL_t count) {
    Lanes bad = 0;
    for (upL_t i = 0; i < count; i++, digits += 16) {
        Lanes high = load(digits), low = load(digits + 8);
        if (form == DigitForm::text) {
            high = hexadecimal_values(high);
            low = hexadecimal_values(low);
        }
        bad |= (high | low) & 0xf0f0f0f0f0f0f0f0;
        words[i] = join_hexadecimal(high) << 32 | join_hexadecimal(low);
    }
    return form == DigitForm::text || bad == 0;
}

}  // namespace

const WordPacking& WordPacking::of(upL_t radix) {
    static constexpr WordPacking decimal{10, 19, 0x8ac7230489e7ffff};
    static constexpr WordPacking hexadecimal{16, 16, 0xffffffffffffffff};
    if (radix != 10 && radix != 16) lumo::fatal_error("Invalid Base");
    return radix == 10 ? decimal : hexadecimal;
}

bool pack_digits(const WordPacking& packing, DigitForm form, std::uint64_t* words, const char* digits,
                 upL_t count) {
    if (packing.radix == 10)
        return form == DigitForm::text ? pack_decimal<DigitForm::text>(words, digits, count)
                                       : pack_decimal<DigitForm::values>(words, digits, count);
    return form == DigitForm::text ? pack_hexadecimal<DigitForm::text>(words, digits, count)
                                   : pack_hexadecimal<DigitForm::values>(words, digits, count);
}

bool unpack_values(const WordPacking& packing, char* values, const std::uint64_t* words, upL_t count) {
    Lanes bad = 0;
    if (packing.radix == 10) {
        for (upL_t i = 0; i < count; i++, values += 19) {
            const std::uint64_t word = words[i];
            bad |= Lanes(word > packing.largest_word);
            const std::uint64_t top = word / (TEN_8 * TEN_8) % 1000;
            const std::uint64_t rest = word % (TEN_8 * TEN_8);
            values[0] = static_cast<char>(top / 100);
            values[1] = static_cast<char>(top / 10 % 10);
            values[2] = static_cast<char>(top % 10);
            store(values + 3, cut_decimal(rest / TEN_8));
            store(values + 11, cut_decimal(rest % TEN_8));
        }
    } else {
        for (upL_t i = 0; i < count; i++, values += 16) {
            store(values, cut_hexadecimal(words[i] >> 32));
            store(values + 8, cut_hexadecimal(words[i] & 0xffffffff));
        }
    }
    return bad == 0;
}

bool unpack_part(const WordPacking& packing, char* values, std::uint64_t word, upL_t skip, upL_t count) {
    char all[MOST_DIGITS];
    const bool good = unpack_values(packing, all, &word, 1);
    std::copy_n(all + skip, count, values);
    return good;
}

}  // namespace DigitViewer2
