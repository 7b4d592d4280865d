/// What a statement throws, as text.
#pragma once

#include <string>

#include "lumo/foundation/errors/exceptions.h"

namespace lumo {

/// "<type> <location>: <message>"; without a location "<type>: <message>". "" if nothing is thrown.
template <typename F>
std::string failure_of(F&& f) {
    const auto text = [](const auto& e) {
        return e.get_typename() + (e.function.empty() ? "" : " " + e.function) + ": " + e.message;
    };
    try {
        f();
    } catch (const StringException& e) {
        return text(e);
    } catch (const FileIO::FileException& e) {
        return text(e) + " [" + e.path + "]";
    } catch (const Exception& e) {
        return e.get_typename();
    } catch (const std::exception& e) {
        return e.what();
    }
    return "";
}

/// The message alone.
template <typename F>
std::string message_of(F&& f) {
    const std::string failure = failure_of(f);
    const auto colon = failure.find(": ");
    return colon == std::string::npos ? failure : failure.substr(colon + 2);
}

}  // namespace lumo
