#include "lumo/foundation/errors/fatal.h"

#include <cstdlib>
#include <string>

#include "lumo/foundation/console/console.h"

namespace lumo {

namespace {

/// Taken and never given back: no other thread prints between the last message and the end.
void seize_console() noexcept {
    Console::lock().lock();
}

/// No destructors run: other threads may still be at work on what they would destroy.
[[noreturn]] void end_process(int code) {
    Console::reset_color();
    std::_Exit(code);
}

[[noreturn]] void pause_and_end(int code) {
    Console::reset_color();
    if (Console::settings().pause_on_fatal) Console::pause(' ');
    end_process(code);
}

}  // namespace

void exit_with_pause(int code) {
    seize_console();
    pause_and_end(code);
}

void fatal_error(std::string_view text) {
    seize_console();
    Console::print_error(text, true);
    Console::print_line("Fatal error encountered. Terminating program.");
    end_process(1);
}

void abort_with(std::string_view text) {
    seize_console();
    Console::print_error(text);
    pause_and_end(1);
}

void assertion_failed(std::string_view text, std::string_view location) {
    std::string message(text);
    if (!location.empty()) {
        message += "\nIn Function: ";
        message += location;
    }
    abort_with(message);
}

}  // namespace lumo
