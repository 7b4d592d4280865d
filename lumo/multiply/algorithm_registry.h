/// The algorithms of this build by their tags, and the list that the tables are built from.
#pragma once

#include <string_view>
#include <vector>

#include "lumo/multiply/algorithm_table.h"

namespace lumo {

/// The objects of one algorithm; null where it has none. They live as long as the process.
struct AlgorithmRecord {
    const BasicAlgorithm<std::uint32_t>* basic32 = nullptr;
    const BasicAlgorithm<std::uint64_t>* basic64 = nullptr;

    template <typename wtype>
    const BasicAlgorithm<wtype>* basic() const {
        if constexpr (sizeof(wtype) == 4)
            return basic32;
        else
            return basic64;
    }
};

/// Null for an unknown tag. Reaches algorithms that no table uses, too.
const AlgorithmRecord* find_algorithm(std::string_view tag);

/// Products beyond these bits leave the cache of one core, and the floating-point transform with it. Its
/// twiddle tables need not serve longer ones.
inline constexpr upL_t FFT_TABLE_BITS = 1474560;

/// The rows of the tables of products in memory, shortest first.
const std::vector<TableRow>& basic_table_rows();

}  // namespace lumo
