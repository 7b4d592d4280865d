#include "lumo/foundation/hardware/environment_file.h"

#include <cerrno>
#include <filesystem>
#include <fstream>

#include "lumo/foundation/config/reader.h"
#include "lumo/foundation/config/writer.h"
#include "lumo/foundation/console/console.h"
#include "lumo/foundation/errors/exceptions.h"

namespace lumo {

namespace {

constexpr const char* ROOT = "DetectedHardware";

void add_number(Config::Object& object, const char* key, upL_t value) {
    object.add_integer(key, std::int64_t(value));
}

upL_t as_number(std::int64_t value) {
    if (value < 0) throw InvalidParametersException("", "The environment file holds a negative number.");
    return upL_t(value);
}

upL_t read_number(const Config::Object& object, const char* key) {
    return as_number(object.get_optional_integer(key, 0));
}

void add_cores(Config::Object& object, const std::vector<LogicalCore>& cores) {
    Config::Array& list = object.add_array("LogicalCores", "processor, physical id, core id");
    for (const LogicalCore& core : cores) {
        Config::Array& row = list.add_array();
        for (upL_t value : {core.processor, core.physical_id, core.core_id})
            row.add_integer(std::int64_t(value));
    }
}

std::vector<LogicalCore> read_cores(const Config::Object& object) {
    std::vector<LogicalCore> cores;
    const Config::Array& list = object.get_array("LogicalCores");
    for (std::size_t i = 0; i < list.size(); i++) {
        const Config::Array& row = list[i].to_array();
        if (row.size() != 3) throw InvalidParametersException("", "A logical core needs three numbers.");
        cores.push_back(
            {as_number(row[0].to_integer()), as_number(row[1].to_integer()), as_number(row[2].to_integer())});
    }
    if (cores.empty()) throw InvalidParametersException("", "The environment file names no logical core.");
    return cores;
}

void add_nodes(Config::Object& object, const std::vector<NumaNode>& nodes) {
    Config::Array& list = object.add_array("NumaNodes");
    for (const NumaNode& node : nodes) {
        Config::Object& entry = list.add_object();
        add_number(entry, "Node", node.number);
        add_number(entry, "Memory", node.memory_bytes);
        entry.add_string("HasMemory", node.has_memory ? "true" : "false");
        Config::Array& cores = entry.add_array("Cores");
        for (upL_t core : node.cores) cores.add_integer(std::int64_t(core));
    }
}

std::vector<NumaNode> read_nodes(const Config::Object& object) {
    std::vector<NumaNode> nodes;
    const Config::Array& list = object.get_array("NumaNodes");
    for (std::size_t i = 0; i < list.size(); i++) {
        const Config::Object& entry = list[i].to_object();
        NumaNode node;
        node.number = as_number(entry.get_integer("Node"));
        node.memory_bytes = read_number(entry, "Memory");
        node.has_memory = entry.get_optional_string("HasMemory", "true") != "false";
        const Config::Array& cores = entry.get_array("Cores");
        for (std::size_t c = 0; c < cores.size(); c++) node.cores.push_back(as_number(cores[c].to_integer()));
        nodes.push_back(std::move(node));
    }
    if (nodes.empty()) throw InvalidParametersException("", "The environment file names no NUMA node.");
    return nodes;
}

struct StringField {
    const char* key;
    std::string SystemStrings::*member;
};
constexpr StringField STRINGS[] = {
    {"Manufacturer", &SystemStrings::manufacturer},
    {"Model", &SystemStrings::model},
    {"Name", &SystemStrings::board_name},
    {"Version", &SystemStrings::version},
    {"OperatingSystem", &SystemStrings::operating_system},
    {"ClockSource", &SystemStrings::clock_source},
};

}  // namespace

void hardware_to_cfg(const DetectedHardware& hardware, Config::Object& root) {
    Config::Object& object = root.add_object(ROOT);
    Config::Array& names = object.add_array("Processors");
    for (const std::string& name : hardware.topology.names) names.add_string(name);
    add_cores(object, hardware.topology.cores);
    add_nodes(object, hardware.numa_nodes);
    add_number(object, "BaseFrequency", hardware.topology.base_frequency);
    add_number(object, "TotalMemory", hardware.memory.total);
    add_number(object, "UsableMemory", hardware.memory.usable);
    for (const StringField& field : STRINGS) object.add_string(field.key, hardware.strings.*field.member);
}

DetectedHardware hardware_from_cfg(const Config::Object& root) {
    const Config::Object& object = root.get_object(ROOT);
    DetectedHardware hardware;
    if (const Config::Array* names = object.get_optional_array("Processors"))
        for (std::size_t i = 0; i < names->size(); i++)
            hardware.topology.names.push_back((*names)[i].to_string());
    hardware.topology.cores = read_cores(object);
    hardware.topology.base_frequency = read_number(object, "BaseFrequency");
    hardware.numa_nodes = read_nodes(object);
    hardware.memory.total = read_number(object, "TotalMemory");
    hardware.memory.usable = read_number(object, "UsableMemory");
    for (const StringField& field : STRINGS)
        hardware.strings.*field.member = object.get_optional_string(field.key, "");
    return hardware;
}

void save_environment(const DetectedHardware& hardware, const std::string& path) {
    Config::Object root;
    hardware_to_cfg(hardware, root);
    errno = 0;
    std::ofstream file(path, std::ios::binary);
    file << Config::write_cfg(root);
    file.close();
    if (!file) throw FileIO::FileException("save_environment()", "Unable to write file.", path, errno);
}

DetectedHardware load_or_detect_hardware(const std::string& path, const DetectionSettings& settings) {
    std::error_code ignored;
    if (!std::filesystem::exists(path, ignored)) return detect_hardware(settings);
    if (settings.status) settings.status("Loading Environment Configuration...");
    try {
        return hardware_from_cfg(Config::parse_file(path)->to_object());
    } catch (const StringException& error) {
        std::lock_guard lock(Console::lock());
        Console::print_error("Unable to use \"" + path + "\".");
        Console::print_error(error.message);
    } catch (const FileIO::FileException& error) {
        std::lock_guard lock(Console::lock());
        Console::print_error("Unable to use \"" + path + "\".");
        Console::print_error(error.message);
    }
    return detect_hardware(settings);
}

}  // namespace lumo
