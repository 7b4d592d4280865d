#include "lumo/foundation/hardware/detect/topology.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <optional>
#include <set>

#include "lumo/foundation/console/console.h"

namespace lumo {

namespace {

/// The "@ 2.60GHz" of a model name, in Hz; 0 if it has none.
upL_t frequency_from_name(const std::string& name) {
    const std::size_t at = name.rfind("@ ");
    if (at == name.npos || name.find("GHz", at) == name.npos) return 0;
    return upL_t(std::strtod(name.c_str() + at + 2, nullptr) * 1e9 + 0.5);
}

class CpuinfoParser {
 public:
    void take_line(std::string_view line) {
        const std::size_t colon = line.find(':');
        if (colon == line.npos) return;
        const std::string_view key = trim(line.substr(0, colon));
        const std::string_view value = trim(line.substr(colon + 1));
        if (key == "processor") {
            finish_core();
            processor = parse_leading_number(value);
        } else if (key == "physical id") {
            physical_id = parse_leading_number(value);
        } else if (key == "core id") {
            core_id = parse_leading_number(value);
        } else if (key == "model name") {
            take_name(std::string(value));
        } else if (key == "cpu MHz" && current_frequency == 0) {
            current_frequency = upL_t(std::strtod(std::string(value).c_str(), nullptr) * 1e6);
        }
    }
    CpuTopology finish() {
        finish_core();
        for (const std::string& name : topology.names)
            if (topology.base_frequency == 0) topology.base_frequency = frequency_from_name(name);
        if (topology.base_frequency == 0) topology.base_frequency = current_frequency;
        return std::move(topology);
    }

 private:
    CpuTopology topology;
    std::optional<upL_t> processor, physical_id, core_id;
    upL_t current_frequency = 0;

    void take_name(std::string name) {
        if (std::find(topology.names.begin(), topology.names.end(), name) == topology.names.end())
            topology.names.push_back(std::move(name));
    }
    void finish_core() {
        if (processor)
            topology.cores.push_back({*processor, physical_id.value_or(0), core_id.value_or(*processor)});
        processor = physical_id = core_id = std::nullopt;
    }
};

}  // namespace

upL_t CpuTopology::physical_cores() const {
    std::set<std::pair<upL_t, upL_t>> distinct;
    for (const LogicalCore& core : cores) distinct.emplace(core.physical_id, core.core_id);
    return distinct.size();
}

upL_t CpuTopology::sockets() const {
    std::set<upL_t> distinct;
    for (const LogicalCore& core : cores) distinct.insert(core.physical_id);
    return distinct.size();
}

CpuTopology parse_cpuinfo(const std::string& text) {
    CpuinfoParser parser;
    for (std::string_view line : split_lines(text)) parser.take_line(line);
    return parser.finish();
}

CpuTopology fallback_topology() {
    CpuTopology topology;
    const long online = sysconf(_SC_NPROCESSORS_ONLN);
    for (upL_t i = 0; i < upL_t(std::max(online, 1L)); i++) topology.cores.push_back({i, 0, i});
    return topology;
}

CpuTopology read_cpu_topology(const SystemPaths& paths) {
    CpuTopology topology;
    if (const auto text = read_system_file(paths.proc + "/cpuinfo")) topology = parse_cpuinfo(*text);
    if (topology.cores.empty()) {
        std::lock_guard lock(Console::lock());
        Console::print_error("Unable to read or parse \"/proc/cpuinfo\".");
        Console::print_error("Thread affinities may not function correctly.");
        return fallback_topology();
    }
    // In kHz. What the kernel knows is better than the current frequency of an idle core.
    const std::string base = read_system_line(paths.sys + "/devices/system/cpu/cpu0/cpufreq/base_frequency");
    if (const auto kilohertz = parse_leading_number(base)) topology.base_frequency = *kilohertz * 1000;
    return topology;
}

std::vector<upL_t> static_pin_order(const CpuTopology& topology) {
    std::map<std::pair<upL_t, upL_t>, std::vector<upL_t>> siblings;
    for (const LogicalCore& core : topology.cores)
        siblings[{core.physical_id, core.core_id}].push_back(core.processor);
    std::vector<std::pair<std::size_t, upL_t>> ranked;
    for (auto& [core, processors] : siblings) {
        std::sort(processors.begin(), processors.end());
        for (std::size_t rank = 0; rank < processors.size(); rank++)
            ranked.emplace_back(rank, processors[rank]);
    }
    std::sort(ranked.begin(), ranked.end());
    std::vector<upL_t> order;
    for (const auto& [rank, processor] : ranked) order.push_back(processor);
    return order;
}

}  // namespace lumo
