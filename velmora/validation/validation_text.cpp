#include <algorithm>

#include "velmora/validation/checksums.h"
#include "velmora/validation/validation_report.h"

namespace velmora {

namespace {

constexpr const char* END = "\r\n";
constexpr const char* HEADING =
    "Benchmark Validation File - DO NOT MODIFY! If you do, it will fail validation.";

/// Appends a text of any line ends. A line that would read as the separator is set in by a blank.
void append_text(std::string& out, const std::string& text) {
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        std::string line = text.substr(start, end - start);
        std::erase(line, '\r');
        if (line == SEPARATOR) out += ' ';
        out.append(line).append(END);
        start = end + 1;
    }
}

void append_group(std::string& out, const std::vector<std::string>& lines) {
    out += END;
    for (const std::string& line : lines) append_text(out, line.empty() ? "\n" : line);
}

}  // namespace

std::string make_validation_text(const ValidationReport& report) {
    std::string text;
    append_text(text, HEADING);
    append_group(text, {std::string("Validation Version:    ") + VALIDATION_VERSION});
    append_group(text, {"Program:               " + report.program, "Tuning:                " + report.tuning,
                        "User:                  " + report.user});
    append_group(text, report.machine);
    append_group(text, report.constant);
    append_group(text, report.computation);
    append_group(text, {"Configuration Dump:", report.configuration});
    append_group(text, report.times);
    append_group(text, report.digits);
    append_group(text, report.sanity);
    append_group(text, {"Event Log:"});
    for (const std::string& event : report.events) append_text(text, event);
    text.append(END).append(SEPARATOR);

    const std::string body = text;
    text.append(END).append(END).append(END);
    text.append(CHECKSUM0_LABEL).append(checksum0(body, report.record)).append(END);
    text.append(CHECKSUM1_LABEL).append(checksum1(body)).append(END);
    return text;
}

}  // namespace velmora
