#include "lumo/foundation/hardware/detect/numa.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "lumo/foundation/console/console.h"

namespace lumo {

namespace {

constexpr std::string_view NODE = "node";

std::vector<upL_t> list_nodes(const std::string& folder) {
    std::vector<upL_t> numbers;
    std::error_code ignored;
    for (std::filesystem::directory_iterator i(folder, ignored), end; i != end; i.increment(ignored)) {
        const std::string name = i->path().filename().string();
        if (!name.starts_with(NODE)) continue;
        const auto number = parse_leading_number(std::string_view(name).substr(NODE.size()));
        if (number && name == std::string(NODE) + std::to_string(*number)) numbers.push_back(*number);
    }
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

void mark_nodes_with_memory(std::vector<NumaNode>& nodes, const std::string& folder) {
    std::optional<std::vector<upL_t>> listed;
    if (const auto text = read_system_file(folder + "/has_normal_memory")) listed = parse_number_list(*text);
    if (!listed) {
        std::lock_guard lock(Console::lock());
        Console::print_error("Unable to read or parse \"/sys/devices/system/node/has_normal_memory\".");
        Console::print_error("Will assume all NUMA nodes have usable memory.");
        return;
    }
    for (NumaNode& node : nodes)
        node.has_memory = std::find(listed->begin(), listed->end(), node.number) != listed->end();
}

}  // namespace

std::map<upL_t, upL_t> parse_zoneinfo(const std::string& text, upL_t page_bytes) {
    constexpr std::string_view NODE_LINE = "Node ";
    constexpr std::string_view PRESENT = "present ";
    std::map<upL_t, upL_t> memory;
    std::optional<upL_t> node;
    for (std::string_view line : split_lines(text)) {
        if (line.starts_with(NODE_LINE)) {
            node = parse_leading_number(line.substr(NODE_LINE.size()));
            if (node) memory.try_emplace(*node, 0);
        } else if (const std::string_view entry = trim(line); node && entry.starts_with(PRESENT)) {
            memory[*node] +=
                parse_leading_number(trim(entry.substr(PRESENT.size()))).value_or(0) * page_bytes;
        }
    }
    return memory;
}

std::vector<NumaNode> read_numa_nodes(const SystemPaths& paths) {
    const std::string folder = paths.sys + "/devices/system/node";
    std::vector<NumaNode> nodes;
    for (upL_t number : list_nodes(folder)) {
        NumaNode node;
        node.number = number;
        const std::string cpulist = read_system_line(folder + "/node" + std::to_string(number) + "/cpulist");
        node.cores = parse_number_list(cpulist).value_or(std::vector<upL_t>());
        nodes.push_back(std::move(node));
    }
    if (nodes.empty()) return nodes;
    mark_nodes_with_memory(nodes, folder);
    const auto memory =
        parse_zoneinfo(read_system_file(paths.proc + "/zoneinfo").value_or(""), upL_t(sysconf(_SC_PAGESIZE)));
    for (NumaNode& node : nodes)
        if (const auto found = memory.find(node.number); found != memory.end())
            node.memory_bytes = found->second;
    return nodes;
}

}  // namespace lumo
