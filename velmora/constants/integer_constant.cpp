#include "velmora/constants/integer_constant.h"

#include <charconv>

#include "lumo/foundation/console/console.h"
#include "lumo/foundation/errors/exceptions.h"

namespace velmora {

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
    std::string reason, remark;
    if (error == std::errc::invalid_argument || end != text.data() + text.size()) {
        reason = "Argument is invalid: ";
    } else if (error == std::errc::result_out_of_range || value > largest_argument()) {
        reason = "Argument is too large: ";
        remark = "\nThe limit is " + lumo::Console::format_commas(largest_argument()) + ".";
    } else {
        reason = refusal(value);
    }
    if (!reason.empty()) throw lumo::InvalidParametersException("", reason + std::string(text) + remark);
    integer = value;
}

}  // namespace velmora
