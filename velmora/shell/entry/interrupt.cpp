#include "velmora/shell/entry/interrupt.h"

#include <unistd.h>
#include <csignal>

#include "digitviewer/files/incomplete_files.h"
#include "lumo/foundation/console/console.h"

namespace velmora {

namespace {

/// Async-signal-safe: a few writes and the end of the process.
void end_by_signal(int signal) {
    lumo::Console::reset_color_in_signal_handler();
    // What follows, the caller's prompt too, starts a line of its own.
    [[maybe_unused]] const auto written = ::write(STDOUT_FILENO, "\n", 1);
    DigitViewer2::IncompleteFiles::write_in_signal_handler(STDOUT_FILENO);
    ::_exit(128 + signal);
}

}  // namespace

void end_on_interrupt() {
    struct sigaction action {};
    action.sa_handler = end_by_signal;
    sigemptyset(&action.sa_mask);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        // A signal that the caller has chosen to ignore (a job in the background, nohup) stays ignored.
        struct sigaction inherited {};
        if (::sigaction(signal, nullptr, &inherited) == 0 && inherited.sa_handler == SIG_IGN) continue;
        ::sigaction(signal, &action, nullptr);
    }
}

}  // namespace velmora
