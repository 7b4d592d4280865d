/// Death tests match stderr, while the program talks on stdout and waits for ENTER.
#pragma once

#include <unistd.h>

#include "lumo/foundation/console/console.h"

namespace lumo {

/// Called first in the statement of a death test.
inline void send_last_words_to_stderr() {
    dup2(STDERR_FILENO, STDOUT_FILENO);
    Console::settings().pause_on_fatal = false;
}

/// Runs the statement in that setting, for EXPECT_DEATH.
template <typename F>
void dying(F&& f) {
    send_last_words_to_stderr();
    f();
}

}  // namespace lumo
