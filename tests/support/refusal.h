/// What an exception said, as text to compare.
#pragma once

#include <string>

#include "lumo/foundation/errors/exceptions.h"

namespace lumo::testing {

/// Location and message of what f throws.
template <typename F>
std::pair<std::string, std::string> thrown_by(F&& f) {
    try {
        f();
    } catch (const StringException& e) {
        return {e.function, e.message};
    } catch (const FileIO::FileException& e) {
        return {e.function, e.message};
    }
    return {"nothing", "nothing thrown"};
}
template <typename F>
std::string message_of(F&& f) {
    return thrown_by(f).second;
}
template <typename F>
std::string refusal(F&& f) {
    const auto [function, message] = thrown_by(f);
    return function + " " + message;
}

}  // namespace lumo::testing
