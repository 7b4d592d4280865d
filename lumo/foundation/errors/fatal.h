/// Paths that end the process without unwinding, for conditions under which no state can be trusted.
#pragma once

#include <string_view>

namespace lumo {

/// Resets colours, pauses if asked for, ends the process. Keeps the console lock, so nothing prints after it.
[[noreturn]] void exit_with_pause(int code);
/// Prints the text as an error and "Fatal error encountered. Terminating program.".
[[noreturn]] void fatal_error(std::string_view text);
/// Prints the text, waits for ENTER when pausing is on, ends the process.
[[noreturn]] void abort_with(std::string_view text);
/// A broken precondition of the caller: always on, in release builds too.
[[noreturn]] void assertion_failed(std::string_view text, std::string_view location = {});

inline void require(bool ok, std::string_view text, std::string_view location = {}) {
    if (!ok) [[unlikely]]
        assertion_failed(text, location);
}

}  // namespace lumo
