#include "velmora/shell/session/event_log.h"

#include <sys/time.h>

#include <cerrno>
#include <cstdio>
#include <ctime>

#include "lumo/foundation/console/console.h"
#include "lumo/foundation/errors/exceptions.h"

namespace velmora {

double epoch_seconds() {
    timeval now{};
    if (::gettimeofday(&now, nullptr) != 0)
        throw lumo::SystemException("epoch_seconds()", "Unable to access gettimeofday().", errno);
    return static_cast<double>(now.tv_sec) + 1e-6 * static_cast<double>(now.tv_usec);
}

std::string date_text(double seconds_since_epoch) {
    const auto whole = static_cast<std::time_t>(seconds_since_epoch);
    std::tm local{};
    ::localtime_r(&whole, &local);
    char text[64];
    std::strftime(text, sizeof text, "%a %b %e %H:%M:%S %Y", &local);
    return text;
}

EventLog::EventLog() : started(epoch_seconds()) {}

void EventLog::log(std::string text) {
    events.push_back({elapsed(), std::move(text)});
}

std::vector<std::string> EventLog::lines() const {
    std::vector<std::string> text;
    for (const Event& event : events) {
        char seconds[32];
        std::snprintf(seconds, sizeof seconds, "%14.3f  ", event.seconds);
        text.push_back(seconds + event.text);
    }
    return text;
}

void EventLog::print() const {
    std::lock_guard lock(lumo::Console::lock());
    lumo::Console::print_line("Event Log:");
    for (const std::string& line : lines()) lumo::Console::print_line(line);
}

}  // namespace velmora
