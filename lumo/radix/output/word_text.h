/// Digits between words that pack them and text or values. The first digit of a word is its most significant.
#pragma once

#include <string>

#include "lumo/numbers/objects/big_float.h"

namespace lumo {

/// How digits are packed into words of 64 bits: 19 decimal or 16 hexadecimal ones.
struct DigitPacking {
    upL_t radix;  ///< 10 or 16
    upL_t digits_per_word;
    std::uint64_t residue;  ///< of radix^digits_per_word modulo 2^61 - 1
    /// InvalidParametersException "Invalid radix." for any other radix.
    static const DigitPacking& of(upL_t radix);
};

/// Text of the digits of words_end[-1], words_end[-2], ...: digits_per_word characters each.
void words_to_text(const DigitPacking& packing, char* out, const std::uint64_t* words_end, upL_t words);
/// The word of `count` <= digits_per_word digit values, the last the least significant.
std::uint64_t values_to_word(upL_t radix, const char* values, upL_t count);
/// words_end[-1], words_end[-2], ... := the words of digits_per_word digit values each.
void values_to_words(const DigitPacking& packing, std::uint64_t* words_end, const char* values, upL_t words);

/// Integer part of |x| in text, "0" if there is none.
std::string integer_text(const BigFloat<std::uint64_t>& x, upL_t radix);
/// Hash modulo 2^61 - 1 of the integer part of |x|.
std::uint64_t integer_hash(const BigFloat<std::uint64_t>& x);

}  // namespace lumo
