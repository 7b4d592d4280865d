#include "velmora/validation/machine_lines.h"

#include <pwd.h>
#include <unistd.h>

#include <filesystem>

#include "lumo/foundation/console/console.h"

namespace velmora {

namespace Console = lumo::Console;
namespace fs = std::filesystem;

namespace {

std::string row(const char* label, const std::string& value) {
    return label + (value.empty() ? "Unable to Detect" : value);
}

}  // namespace

std::vector<std::string> machine_lines(const lumo::DetectedHardware& hardware) {
    std::vector<std::string> lines = {"Processor(s):"};
    for (const std::string& name : hardware.topology.names) lines.push_back("    " + name);
    if (hardware.topology.names.empty()) lines.push_back("    Unable to Detect");
    lines.push_back("    " + hardware.short_form());
    const auto bytes = [](lumo::upL_t n) { return n == 0 ? std::string() : Console::format_bytes(n); };
    const lumo::upL_t hertz = hardware.topology.base_frequency;
    lines.push_back(row("Total Memory:          ", bytes(hardware.memory.total)));
    lines.push_back(row("Usable Memory:         ", bytes(hardware.memory.usable)));
    lines.push_back(
        row("Base Frequency:        ", hertz == 0 ? std::string() : Console::format_commas(hertz) + " Hz"));
    lines.push_back(row("Operating System:      ", hardware.strings.operating_system));
    lines.push_back(row("Clock Source:          ", hardware.strings.clock_source));
    return lines;
}

std::string user_name() {
    passwd entry{};
    passwd* found = nullptr;
    char text[4096];
    if (::getpwuid_r(::geteuid(), &entry, text, sizeof text, &found) != 0 || !found) return "Unknown";
    return found->pw_name;
}

std::optional<lumo::upL_t> corrected_memory_errors(const lumo::SystemPaths& paths) {
    std::optional<lumo::upL_t> sum;
    std::error_code error;
    fs::directory_iterator controllers(paths.sys + "/devices/system/edac/mc", error);
    if (error) return sum;
    for (; controllers != fs::directory_iterator(); controllers.increment(error)) {
        const std::string file = controllers->path().string() + "/ce_count";
        const auto count = lumo::parse_leading_number(lumo::read_system_line(file));
        if (count) sum = sum.value_or(0) + *count;
        if (error) break;
    }
    return sum;
}

}  // namespace velmora
