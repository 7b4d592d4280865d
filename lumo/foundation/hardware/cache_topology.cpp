#include "lumo/foundation/hardware/cache_topology.h"

#include <utility>

#include "lumo/foundation/errors/exceptions.h"

namespace lumo {

namespace {
void check(bool ok, const char* text) {
    if (!ok) throw InvalidParametersException("CacheTopologyStandard()", text);
}
}  // namespace

CacheTopologyStandard::CacheTopologyStandard(std::vector<CacheLevel> from_lowest)
    : list(std::move(from_lowest)) {
    check(!list.empty(), "Must contain at least one level of cache.");
    check(list.front().shared_by_threads <= 1, "Lowest level of cache cannot be shared by multiple threads.");
    check(list.front().explicit_blocking, "Lowest level of cache must be explicit.");
    // A single level is both the lowest and the last, and counts as the lowest.
    check(list.size() == 1 || !list.back().explicit_blocking, "Last level cannot be explicit.");
    for (std::size_t i = 1; i < list.size(); i++)
        check(list[i].size / 2 >= list[i - 1].size, "Caches must be increasing in size by at least 2x.");
    check(list.size() <= MAX_LEVELS, "Too many cache levels.");
}

}  // namespace lumo
