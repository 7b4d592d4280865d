/// Digits packed in words of 64 bits, the first digit of a word the most significant.
///
/// Eight digits at a time are joined, or cut, by multiplication in all lanes of a word: no loop over single
/// digits.
#pragma once

#include <cstdint>

#include "lumo/foundation/types/types.h"

namespace DigitViewer2 {

using lumo::upL_t;

struct WordPacking {
    upL_t radix;                 ///< 10 or 16
    upL_t digits_per_word;       ///< 19 or 16
    std::uint64_t largest_word;  ///< radix^digits_per_word - 1

    /// Any other radix is fatal: "Invalid Base".
    static const WordPacking& of(upL_t radix);
    /// Words that `digits` take, the last one perhaps in part.
    upL_t words_for(upL_t digits) const { return digits / digits_per_word + (digits % digits_per_word != 0); }
};

/// What the bytes of digits are.
enum class DigitForm {
    values,  ///< 0 to 15
    text     ///< '0'-'9', 'a'-'f', 'A'-'F'
};

/// words[0 .. count) := count * digits_per_word digits. False if a value is no digit of the radix; text is
/// not checked.
bool pack_digits(const WordPacking& packing, DigitForm form, std::uint64_t* words, const char* digits,
                 upL_t count);
/// The inverse, to values. False if a word is above the largest.
bool unpack_values(const WordPacking& packing, char* values, const std::uint64_t* words, upL_t count);

/// values[0 .. count) := the digits of one word from digit `skip` on.
bool unpack_part(const WordPacking& packing, char* values, std::uint64_t word, upL_t skip, upL_t count);

}  // namespace DigitViewer2
