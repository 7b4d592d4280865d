#include "velmora/constants/integer_constant.h"

#include <charconv>
#include <limits>

#include "lumo/foundation/errors/exceptions.h"

namespace velmora {

namespace {

/// Configuration files hold integers of 64 bits with a sign.
constexpr upL_t LARGEST = std::numeric_limits<std::int64_t>::max();

}  // namespace

std::string IntegerConstant::name() const {
    const std::string generic = entry().menu_name;
    return generic.substr(0, generic.find('(') + 1) + std::to_string(integer) + ")";
}

std::string IntegerConstant::file_name() const {
    return key() + "(" + std::to_string(integer) + ")";
}

void IntegerConstant::set_argument(std::string_view text) {
    upL_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    std::string reason;
    if (error == std::errc::invalid_argument || end != text.data() + text.size())
        reason = "Argument is invalid: ";
    else if (error == std::errc::result_out_of_range || value > LARGEST)
        reason = "Argument is too large: ";
    else
        reason = refusal(value);
    if (!reason.empty()) throw lumo::InvalidParametersException("", reason + std::string(text));
    integer = value;
}

}  // namespace velmora
