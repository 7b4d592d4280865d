/// What a statement throws, as text.
#pragma once

#include <string>

#include "lumo/foundation/errors/exceptions.h"

namespace lumo {

/// All that an exception of the usual kinds tells; empty if nothing is thrown.
struct Thrown {
    std::string type, function, message, path;
    int error_code = 0;
};

template <typename F>
Thrown thrown_by(F&& f) {
    try {
        f();
    } catch (const StringException& e) {
        return {e.get_typename(), e.function, e.message, ""};
    } catch (const FileIO::FileException& e) {
        return {e.get_typename(), e.function, e.message, e.path, e.error_code};
    } catch (const Exception& e) {
        return {e.get_typename(), "", "", ""};
    } catch (const std::exception& e) {
        return {"std::exception", "", e.what(), ""};
    }
    return {};
}

template <typename F>
std::string message_of(F&& f) {
    return thrown_by(f).message;
}

/// "<location> <message>".
template <typename F>
std::string refusal(F&& f) {
    const Thrown thrown = thrown_by(f);
    return thrown.function + (thrown.function.empty() ? "" : " ") + thrown.message;
}

/// "<type> <location>: <message> [<path>]", without what is empty.
template <typename F>
std::string failure_of(F&& f) {
    const Thrown thrown = thrown_by(f);
    if (thrown.message.empty()) return thrown.type;
    return thrown.type + (thrown.function.empty() ? "" : " ") + thrown.function + ": " + thrown.message +
           (thrown.path.empty() ? "" : " [" + thrown.path + "]");
}

}  // namespace lumo
