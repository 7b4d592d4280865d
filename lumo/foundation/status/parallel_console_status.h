/// Draws a polled tree in place while work runs in parallel.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "lumo/foundation/status/status_node.h"

namespace lumo {

/// Polls `root` every `period` and redraws its rows where they stand; the rows vanish when this object is
/// destroyed. `root` must outlive it. The cursor is expected at the start of a line. A row is cut at a
/// segment's edge when it would be wider than `line_width`, which must not exceed the terminal's.
///
/// A message printed in between stays, and the rows continue beneath it. Rows that have not changed are
/// not drawn again.
class ParallelConsoleStatus {
 public:
    ParallelConsoleStatus(const StatusNode& root, std::chrono::milliseconds period, upL_t line_width);
    ~ParallelConsoleStatus();
    ParallelConsoleStatus(const ParallelConsoleStatus&) = delete;
    ParallelConsoleStatus& operator=(const ParallelConsoleStatus&) = delete;

 private:
    void run();
    void leave();
    bool wait_for_stop();
    void redraw();
    void erase();
    void draw();
    void cursor_up() const;

    const StatusNode& source;
    const std::chrono::milliseconds polling_period;
    const upL_t width;
    const std::string blank_line;

    StatusTree rows;
    upL_t lines_drawn = 0;      ///< rows in use above the cursor
    std::uint64_t drawn_count;  ///< the console's write counter after the last drawing

    std::mutex stop_lock;
    std::condition_variable stop_event;
    bool stopping = false;
    std::thread thread;  // last: it uses everything above
};

}  // namespace lumo
