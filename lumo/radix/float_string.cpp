#include "lumo/radix/float_string.h"

#include "lumo/foundation/errors/exceptions.h"
#include "lumo/foundation/errors/fatal.h"

namespace lumo {

FloatString::FloatString(upL_t radix, std::string_view digits) : buffer(digits), base(radix) {
    if (radix != 10 && radix != 16)
        throw InvalidParametersException("FloatString::FloatString()", "Invalid radix.");
    const std::string_view valid = radix == 10 ? "0123456789" : "0123456789abcdef";
    if (digits.empty() || digits.find_first_not_of(valid) != std::string_view::npos)
        throw InvalidParametersException("FloatString::FloatString()", "Invalid Digit");
}

void FloatString::require_digits_only(const char* location) const {
    require(!finished, "Cannot truncate after exp.", location);
    require(!has_sign, "Cannot truncate after sign.", location);
    require(!has_dot, "Cannot truncate after dot.", location);
}

void FloatString::truncate(upL_t digits) {
    require_digits_only("FloatString::truncate()");
    if (digits < buffer.size()) buffer.resize(digits);
}

bool FloatString::round(upL_t digits) {
    require_digits_only("FloatString::round()");
    if (digits >= buffer.size()) return false;
    const bool up = 2 * digit_value(buffer[digits]) >= base;
    buffer.resize(digits);
    if (!up) return false;
    for (upL_t i = digits; i-- > 0;) {
        const upL_t value = digit_value(buffer[i]) + 1;
        buffer[i] = digit_character(value % base);
        if (value < base) return false;
    }
    // All digits were the largest, and are zeros now.
    buffer.insert(buffer.begin(), '1');
    if (digits != 0) buffer.pop_back();
    return true;
}

void FloatString::apply_dot(upL_t digits) {
    const char* const location = "FloatString::apply_dot()";
    require(!finished, "Cannot apply dot after exp.", location);
    require(!has_sign, "Cannot apply dot after sign.", location);
    require(!has_dot, "Dot has already been applied.", location);
    require(digits <= buffer.size(), "Cannot apply dot after end of string.", location);
    buffer.insert(digits, digits == 0 ? "0." : ".");
    has_dot = true;
}

void FloatString::strip_lzs() {
    const char* const location = "FloatString::strip_lzs()";
    require(!finished, "Cannot strip zeros after applying exp.", location);
    require(!has_sign, "Cannot strip zeros after applying sign.", location);
    const upL_t last = buffer.find_last_not_of('0');
    require(last != std::string::npos, "ptr <= base_ptr", location);
    buffer.resize(buffer[last] == '.' ? last : last + 1);
}

void FloatString::apply_sign(bool positive) {
    require(!finished && !has_sign, "Formatting has already been set.", "FloatString::apply_sign()");
    if (!positive) buffer.insert(buffer.begin(), '-');
    has_sign = true;
}

void FloatString::set_integer() {
    require(!finished, "Formatting has already been set.", "FloatString::set_integer()");
    finished = true;
}

void FloatString::set_scientific(spL_t exponent) {
    require(!finished, "Formatting has already been set.", "FloatString::set_scientific()");
    buffer += (base == 10 ? " *10^ " : " *16^ ") + std::to_string(exponent);
    finished = true;
}

}  // namespace lumo
