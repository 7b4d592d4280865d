/// Sets of logical cores, and pinning the calling thread to them.
#pragma once

#include <string>
#include <vector>

#include "lumo/foundation/types/types.h"

namespace lumo {

/// A set of logical core numbers; empty means any core.
class CpuSet {
 public:
    CpuSet() = default;
    explicit CpuSet(const std::vector<upL_t>& cores);

    void add(upL_t core);
    bool contains(upL_t core) const;
    bool empty() const { return bits.empty(); }
    std::vector<upL_t> cores() const;  ///< ascending
    /// Ascending numbers, runs joined: "0-3,8".
    std::string to_string() const;

    /// Pins the calling thread to the set; an empty set leaves the thread alone. Returns whether it is so
    /// pinned, or errno through `error`. Prints nothing.
    bool pin_thread(int* error = nullptr) const;

 private:
    std::vector<unsigned long> bits;  ///< in the layout of the system's mask
};

/// Pins the calling thread. A failure is told as a warning and otherwise ignored.
void set_thread_affinity(const CpuSet& set);

}  // namespace lumo
