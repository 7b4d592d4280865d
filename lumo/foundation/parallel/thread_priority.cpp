#include "lumo/foundation/parallel/thread_priority.h"

#include <pthread.h>
#include <sched.h>

#include <atomic>
#include <cerrno>
#include <string>

#include "lumo/foundation/console/console.h"

namespace lumo {

namespace {

void warn_once(int error) {
    static std::atomic<bool> warned{false};
    if (warned.exchange(true)) return;
    std::lock_guard lock(Console::lock());
    if (error == EPERM)
        Console::print_error("Insufficient permissions to set thread priority. Please retry as root.");
    else
        Console::print_error("Unable to set thread priority: errno = " + std::to_string(error));
    Console::print_error("Further messages for this warning will be suppressed.");
}

}  // namespace

void set_thread_priority(int priority) {
    if (priority == 0) return;
    sched_param parameters{};
    parameters.sched_priority =
        priority < 0 ? sched_get_priority_min(SCHED_RR) : sched_get_priority_max(SCHED_RR);
    if (const int error = pthread_setschedparam(pthread_self(), SCHED_RR, &parameters)) warn_once(error);
}

}  // namespace lumo
