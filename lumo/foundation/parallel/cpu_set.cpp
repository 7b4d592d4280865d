#include "lumo/foundation/parallel/cpu_set.h"

#include <sched.h>

#include <cerrno>

#include "lumo/foundation/console/console.h"

namespace lumo {

namespace {
constexpr upL_t BITS = 8 * sizeof(unsigned long);
}

CpuSet::CpuSet(const std::vector<upL_t>& cores) {
    for (upL_t core : cores) add(core);
}

void CpuSet::add(upL_t core) {
    if (core / BITS >= bits.size()) bits.resize(core / BITS + 1);
    bits[core / BITS] |= 1ul << (core % BITS);
}

bool CpuSet::contains(upL_t core) const {
    return core / BITS < bits.size() && (bits[core / BITS] >> (core % BITS) & 1);
}

std::vector<upL_t> CpuSet::cores() const {
    std::vector<upL_t> list;
    for (upL_t core = 0; core < bits.size() * BITS; core++)
        if (contains(core)) list.push_back(core);
    return list;
}

std::string CpuSet::to_string() const {
    const std::vector<upL_t> list = cores();
    std::string text;
    for (std::size_t first = 0; first < list.size();) {
        std::size_t last = first;
        while (last + 1 < list.size() && list[last + 1] == list[last] + 1) last++;
        if (!text.empty()) text += ',';
        text += std::to_string(list[first]);
        if (last > first) text += '-' + std::to_string(list[last]);
        first = last + 1;
    }
    return text;
}

bool CpuSet::pin_thread(int* error) const {
    if (empty()) return true;
    const int failed = sched_setaffinity(0, bits.size() * sizeof(unsigned long),
                                         reinterpret_cast<const cpu_set_t*>(bits.data()));
    if (failed && error) *error = errno;
    return !failed;
}

void set_thread_affinity(const CpuSet& set) {
    if (!set.pin_thread()) Console::print_error("Failed to set thread affinity: " + set.to_string());
}

}  // namespace lumo
