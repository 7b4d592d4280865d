/// What the viewer asks, and how it shows that it works.
#pragma once

#include <memory>
#include <string>

#include "digitviewer/viewer/source.h"
#include "lumo/foundation/status/status_node.h"

namespace lumo {
class ParallelConsoleStatus;
}

namespace DigitViewer2 {

/// A line of input under a question. Throws EndOfInput.
std::string ask_text(const char* question);
/// A number from `least` to `most`.
upL_t ask_number(const char* question, upL_t least, upL_t most);
/// How many digits from the first one: "0 for all" is offered where the file tells how many there are.
upL_t ask_digits(const Source& source, const char* question);

/// A stretch of work: its status on the console, and at its end the time and the rate.
class Work {
 public:
    Work(const char* heading, upL_t digits);
    ~Work();
    lumo::StatusNode& node() { return *root; }
    /// Takes the status away and prints "N digits in S seconds".
    void finish();

 private:
    const upL_t digits;
    const double started;
    std::unique_ptr<lumo::StatusNode> root;
    std::unique_ptr<lumo::ParallelConsoleStatus> drawing;
};

}  // namespace DigitViewer2
