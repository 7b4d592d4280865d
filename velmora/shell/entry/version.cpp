#include "velmora/shell/entry/version.h"

#include <algorithm>

#include "lumo/foundation/console/console.h"
#include "lumo/multiply/algorithm_registry.h"
#include "lumo/multiply/kernels/kernel_select.h"
#include "lumo/multiply/kernels/mul52_kernel.h"

namespace velmora {

std::string version_text() {
    return "velmora " VELMORA_VERSION;
}

std::string build_text() {
    return "velmora v" VELMORA_VERSION " " VELMORA_BUILD_TYPE;
}

std::string tuning_text() {
    switch (lumo::active_kernels()) {
        case lumo::KernelSet::avx512:
            return lumo::mul52_kernel() ? "x64 AVX512 IFMA" : "x64 AVX512";
        case lumo::KernelSet::avx2:
            return "x64 AVX2";
        case lumo::KernelSet::portable:
            break;
    }
    return "x64";
}

namespace {

/// The algorithms of products in memory, shortest products first, with the longest that each makes.
void print_algorithms() {
    lumo::Console::print_line("Uber-Tier Algorithms:  Enabled", 'w');
    lumo::Console::print_line("Data Alignment:        " + std::to_string(lumo::ALIGNMENT_BYTES) + " bytes");
    lumo::Console::new_line();
    for (const lumo::TableRow& row : lumo::basic_table_rows()) {
        const auto& algorithm = *lumo::find_algorithm(row.tag)->basic<std::uint64_t>();
        const lumo::upL_t bits = std::min<lumo::upL_t>(row.limit_bits, algorithm.max_bits);
        std::string title = std::string("  ") + algorithm.tag + "  " + algorithm.name;
        title.resize(28, ' ');
        std::string version = algorithm.version;
        version.resize(8, ' ');
        lumo::Console::print(title + version, 'w');
        lumo::Console::print_line("up to " + lumo::Console::format_commas(bits) + " bits", 'G');
    }
    lumo::Console::set_color('w');
}

}  // namespace

void print_compilation_options() {
    std::lock_guard lock(lumo::Console::lock());
    lumo::Console::print_line("Compilation Options:", 'T');
    lumo::Console::new_line();
    lumo::Console::print_label_line("Version      ", version_text(), 'G');
    lumo::Console::print_label_line("Compiler     ", "g++ " __VERSION__, 'G');
    lumo::Console::print_label_line("Language     ", "C++ " + std::to_string(__cplusplus / 100 % 100), 'G');
    lumo::Console::print_label_line("Build Type   ", VELMORA_BUILD_TYPE, 'G');
    lumo::Console::print_label_line("Kernels      ", "portable, AVX2, AVX512, IFMA; in use: " + tuning_text(),
                                    'G');
    lumo::Console::new_line();
    print_algorithms();
}

}  // namespace velmora
