/// The files of digits that have been begun and do not bear their final names. What is told when a run ends
/// early, by a failure or by a signal.
#pragma once

#include <string>
#include <vector>

namespace DigitViewer2::IncompleteFiles {

/// A few names are kept; more are passed over, as are those too long. Any thread may call.
void add(const std::string& path) noexcept;
void remove(const std::string& path) noexcept;
void clear() noexcept;

/// Those that stand on the disk.
std::vector<std::string> on_disk();
/// Writes "Left on disk: " and the name of each to the descriptor, a line each, from the start of a line on.
/// Safe in a signal handler.
void write_in_signal_handler(int descriptor) noexcept;

}  // namespace DigitViewer2::IncompleteFiles
