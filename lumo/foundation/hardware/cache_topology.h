/// The levels of cache for which a transform is shaped.
#pragma once

#include <vector>

#include "lumo/foundation/types/types.h"

namespace lumo {

struct CacheLevel {
    upL_t size;               ///< bytes
    upL_t shared_by_threads;  ///< hardware threads that share it
    bool explicit_blocking;   ///< whether data is blocked for this level
};

class CacheTopologyStandard {
 public:
    static constexpr upL_t MAX_LEVELS = 8;

    /// From the lowest level up. Throws InvalidParametersException "CacheTopologyStandard()" for a list that
    /// is no hierarchy.
    explicit CacheTopologyStandard(std::vector<CacheLevel> from_lowest);
    const std::vector<CacheLevel>& levels() const { return list; }

 private:
    std::vector<CacheLevel> list;
};

}  // namespace lumo
