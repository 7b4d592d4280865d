/// What happened during a run, and when.
#pragma once

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

    double start() const { return started; }
    double elapsed() const { return epoch_seconds() - started; }
    void log(std::string text);
    /// A line an event, with the seconds from the start.
    std::vector<std::string> lines() const;
    /// "Event Log:" and the lines.
    void print() const;

 private:
    struct Event {
        double seconds;
        std::string text;
    };
    double started;
    std::vector<Event> events;
};

}  // namespace velmora
