#include "digitviewer/files/digit_text.h"

namespace DigitViewer2 {

namespace {

using Byte = unsigned char;

Byte decimal_value(Byte c) {
    return static_cast<Byte>(c - '0');
}

/// Above 15 for what is no digit.
Byte hexadecimal_value(Byte c) {
    const Byte number = decimal_value(c);
    const Byte letter = static_cast<Byte>((c | 0x20) - 'a');
    const Byte from_letter = letter < 6 ? static_cast<Byte>(letter + 10) : Byte(255);
    return number < 10 ? number : from_letter;
}

}  // namespace

// The loops carry one flag and have no early exit, so that they become vector code.

bool values_of_text(upL_t radix, char* out, const char* text, upL_t count) {
    Byte bad = 0;
    if (radix == 10) {
        for (upL_t i = 0; i < count; i++) {
            const Byte v = decimal_value(static_cast<Byte>(text[i]));
            bad |= v > 9;
            out[i] = static_cast<char>(v);
        }
    } else {
        for (upL_t i = 0; i < count; i++) {
            const Byte v = hexadecimal_value(static_cast<Byte>(text[i]));
            bad |= v > 15;
            out[i] = static_cast<char>(v);
        }
    }
    return bad == 0;
}

bool text_of_values(upL_t radix, char* out, const char* values, upL_t count) {
    Byte bad = 0;
    for (upL_t i = 0; i < count; i++) {
        const Byte v = static_cast<Byte>(values[i]);
        bad |= v >= radix;
        out[i] = static_cast<char>(v < 10 ? v + '0' : v - 10 + 'a');
    }
    return bad == 0;
}

}  // namespace DigitViewer2
