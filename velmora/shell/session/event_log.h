/// What happened during a run, and when.
#pragma once

#include <chrono>
#include <string>
#include <vector>

namespace velmora {

/// Seconds since the epoch with microseconds. Throws SystemException "Unable to access gettimeofday().".
double epoch_seconds();
/// Local date and time as text.
std::string date_text(double seconds_since_epoch);

/// Used by the main thread.
class EventLog {
 public:
    EventLog();  ///< starts the clock

    /// Seconds since the epoch.
    double start() const { return started; }
    /// Seconds since then. The wall clock may be set meanwhile: it gives dates, not durations.
    double elapsed() const { return std::chrono::duration<double>(Clock::now() - origin).count(); }
    void log(std::string text);
    /// A line an event, with the seconds from the start.
    std::vector<std::string> lines() const;
    /// "Event Log:" and the lines.
    void print() const;

 private:
    using Clock = std::chrono::steady_clock;
    struct Event {
        double seconds;
        std::string text;
    };
    const double started;
    const Clock::time_point origin = Clock::now();
    std::vector<Event> events;
};

}  // namespace velmora
