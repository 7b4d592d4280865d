/// One computation in memory, from the first allocation to the last line of the report.
#pragma once

#include "lumo/radix/conversion_probe.h"
#include "velmora/shell/session/normal_float_session_b.h"

namespace velmora {

/// Bytes of a value of p words after the point, as the session keeps it for the output.
constexpr upL_t value_bytes(upL_t precision_words) {
    return lumo::align_bytes(8 * (precision_words + 2));
}

/// What tests look at, or damage, while the digits are made.
using OutputProbe = lumo::ConversionProbe<std::uint64_t>;

/// The session must be able to run. Exceptions leave after all memory has been released. Returns what
/// the comparison with known digits came to: "Good through " and a position, or "Unavailable".
std::string run_in_memory(const NormalFloatSession& session, OutputProbe* probe = nullptr);

}  // namespace velmora
