/// The sizes of the benchmark.
#pragma once

#include <optional>
#include <span>
#include <string_view>

#include "lumo/foundation/types/types.h"

namespace velmora {

struct BenchmarkSize {
    const char* key;  ///< on the command line; case counts
    lumo::upL_t digits;
};

/// "25m" to "2.5t", by decimal digits.
std::span<const BenchmarkSize> decimal_sizes();
/// "1M" to "128G", powers of two.
std::span<const BenchmarkSize> binary_sizes();
/// Digits of a key of either table.
std::optional<lumo::upL_t> benchmark_digits(std::string_view key);

}  // namespace velmora
