#include "velmora/shell/entry/version.h"

#include "lumo/foundation/console/console.h"
#include "lumo/multiply/kernels/kernel_select.h"

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
            return "x64 AVX512";
        case lumo::KernelSet::avx2:
            return "x64 AVX2";
        case lumo::KernelSet::portable:
            break;
    }
    return "x64";
}

void print_compilation_options() {
    std::lock_guard lock(lumo::Console::lock());
    lumo::Console::print_line("Compilation Options:", 'T');
    lumo::Console::new_line();
    lumo::Console::print_label_line("Version      ", version_text(), 'G');
    lumo::Console::print_label_line("Compiler     ", "g++ " __VERSION__, 'G');
    lumo::Console::print_label_line("Language     ", "C++ " + std::to_string(__cplusplus / 100 % 100), 'G');
    lumo::Console::print_label_line("Build Type   ", VELMORA_BUILD_TYPE, 'G');
    lumo::Console::print_label_line("Kernels      ", "portable, AVX2, AVX512; in use: " + tuning_text(), 'G');
}

}  // namespace velmora
