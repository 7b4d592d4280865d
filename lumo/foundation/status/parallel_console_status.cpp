#include "lumo/foundation/status/parallel_console_status.h"

#include <algorithm>

#include "lumo/foundation/console/console.h"
#include "lumo/foundation/errors/exceptions.h"
#include "lumo/foundation/status/color_string.h"

namespace lumo {

namespace {

bool same_rows(const StatusTree& a, const StatusTree& b) {
    const auto same_segment = [](const ColorSegment& x, const ColorSegment& y) {
        return x.color == y.color && x.text == y.text;
    };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [&](const ColorString& x, const ColorString& y) {
                          return std::equal(x.begin(), x.end(), y.begin(), y.end(), same_segment);
                      });
}

void report(const std::string& what) {
    Console::print_error("Exception thrown from ParallelConsoleStatus: " + what);
}

}  // namespace

ParallelConsoleStatus::ParallelConsoleStatus(const StatusNode& root, std::chrono::milliseconds period,
                                             upL_t line_width)
    : source(root),
      polling_period(period),
      width(line_width),
      blank_line(std::string(line_width, ' ') + '\r'),
      drawn_count(Console::write_count()),
      thread([this] { run(); }) {}

ParallelConsoleStatus::~ParallelConsoleStatus() {
    {
        const std::lock_guard hold(stop_lock);
        stopping = true;
    }
    stop_event.notify_all();
    thread.join();
}

void ParallelConsoleStatus::run() {
    // What leaves this thread ends the program: nobody could be told of it otherwise.
    try {
        while (!wait_for_stop()) redraw();
    } catch (const StringException& e) {
        report(e.message);
        throw;
    } catch (const std::exception& e) {
        report(e.what());
        throw;
    } catch (...) {
        Console::print_error("Unknown exception thrown from ParallelConsoleStatus.");
        throw;
    }
    leave();
}

void ParallelConsoleStatus::leave() {
    try {
        const std::lock_guard hold(Console::lock());
        if (drawn_count == Console::write_count()) erase();
    } catch (...) {
        Console::print_error("Exception thrown on destruction path.");
        throw;
    }
}

bool ParallelConsoleStatus::wait_for_stop() {
    std::unique_lock hold(stop_lock);
    return stop_event.wait_for(hold, polling_period, [this] { return stopping; });
}

void ParallelConsoleStatus::redraw() {
    StatusTree fresh = source.get_tree();
    const std::lock_guard hold(Console::lock());
    if (fresh.empty() && rows.empty()) return;
    if (drawn_count != Console::write_count()) {
        Console::new_line();  // what stands above can no longer be erased
    } else {
        if (same_rows(rows, fresh)) return;
        erase();
    }
    rows = std::move(fresh);
    draw();
}

void ParallelConsoleStatus::erase() {
    if (rows.empty()) return;
    Console::print("\r");
    cursor_up();
    Console::print(blank_line);
    for (upL_t line = 0; line < lines_drawn; line++) Console::print("\n" + blank_line);
    cursor_up();
    lines_drawn = 0;
}

void ParallelConsoleStatus::draw() {
    lines_drawn = 0;
    for (std::size_t i = 0; i < rows.size(); i++) {
        if (i > 0) {
            Console::new_line();
            lines_drawn++;
        }
        print_within(rows[i], width);
    }
    if (!rows.empty()) Console::print("\r");
    drawn_count = Console::write_count();
}

void ParallelConsoleStatus::cursor_up() const {
    for (upL_t line = 0; line < lines_drawn; line++) Console::print("\x1b[F");
}

}  // namespace lumo
