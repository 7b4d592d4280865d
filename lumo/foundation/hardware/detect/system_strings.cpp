#include "lumo/foundation/hardware/detect/system_strings.h"

#include <sys/utsname.h>

namespace lumo {

MemorySizes parse_meminfo(const std::string& text) {
    MemorySizes sizes;
    upL_t free = 0;
    for (std::string_view line : split_lines(text)) {
        const std::size_t colon = line.find(':');
        if (colon == line.npos) continue;
        const std::string_view key = line.substr(0, colon);
        const upL_t bytes = parse_leading_number(trim(line.substr(colon + 1))).value_or(0) * 1024;
        if (key == "MemTotal")
            sizes.total = bytes;
        else if (key == "MemAvailable")
            sizes.usable = bytes;
        else if (key == "MemFree")
            free = bytes;
    }
    if (sizes.usable == 0) sizes.usable = free;  // kernels that do not tell what is available
    return sizes;
}

MemorySizes read_memory_sizes(const SystemPaths& paths) {
    return parse_meminfo(read_system_file(paths.proc + "/meminfo").value_or(""));
}

SystemStrings read_system_strings(const SystemPaths& paths, bool show_pii) {
    const std::string dmi = paths.sys + "/devices/virtual/dmi/id/";
    SystemStrings strings;
    strings.manufacturer = read_system_line(dmi + "board_vendor");
    strings.model = read_system_line(dmi + "product_name");
    strings.board_name = read_system_line(dmi + "board_name");
    strings.version = read_system_line(dmi + "board_version");
    if (show_pii) strings.serial_number = read_system_line(dmi + "board_serial");
    utsname name;
    if (uname(&name) == 0)
        strings.operating_system = std::string(name.sysname) + " " + name.release + " " + name.machine;
    strings.clock_source =
        read_system_line(paths.sys + "/devices/system/clocksource/clocksource0/current_clocksource");
    return strings;
}

}  // namespace lumo
