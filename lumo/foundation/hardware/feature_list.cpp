#include "lumo/foundation/hardware/feature_list.h"

#include <string>

#include "lumo/foundation/console/console.h"

namespace lumo {

namespace {

constexpr std::size_t NAME_COLUMNS = 20;

std::string padded(std::string text) {
    if (text.size() < NAME_COLUMNS) text.resize(NAME_COLUMNS, ' ');
    return text;
}

using F = CpuFeatures;

const std::vector<NamedFeature> GROUPS[] = {
    {
        {"64-bit", &F::os_64bit, true},
        {"OS AVX", &F::os_avx, true},
        {"OS AVX512", &F::os_avx512, true},
    },
    {
        {"x64", &F::x64, true},
        {"ABM", &F::abm},
        {"RDRAND", &F::rdrand},
        {"RDSEED", &F::rdseed},
        {"BMI1", &F::bmi1},
        {"BMI2", &F::bmi2},
        {"PREFETCHW", &F::prefetchw},
        {"SSE4a", &F::sse4a},
        {"SSE4.1", &F::sse41, true},
        {"PCLMULQDQ", &F::pclmulqdq},
        {"AES", &F::aes},
        {"SHA", &F::sha, true},
        {"GFNI", &F::gfni},
    },
    {
        {"AVX", &F::avx},
        {"AVX2", &F::avx2, true},
        {"VAES", &F::vaes},
        {"AVX-GFNI", &F::avx_gfni},
        {"AVX-VNNI", &F::avx_vnni},
        {"AVX-VNNI_INT8", &F::avx_vnni_int8},
        {"AVX-NE-CONVERT", &F::avx_ne_convert},
    },
    {
        {"AVX512-F", &F::avx512f, true},
        {"AVX512-CD", &F::avx512cd},
        {"AVX512-PF", &F::avx512pf},
        {"AVX512-ER", &F::avx512er},
        {"AVX512-VL", &F::avx512vl, true},
        {"AVX512-BW", &F::avx512bw, true},
        {"AVX512-DQ", &F::avx512dq, true},
        {"AVX512-IFMA", &F::avx512ifma, true},
        {"AVX512-VBMI", &F::avx512vbmi},
        {"AVX512-VPOPCNTDQ", &F::avx512vpopcntdq},
        {"AVX512-4VNNIW", &F::avx512_4vnniw},
        {"AVX512-4FMAPS", &F::avx512_4fmaps},
        {"AVX512-VBMI2", &F::avx512vbmi2},
        {"AVX512-VNNI", &F::avx512vnni},
        {"AVX512-BITALG", &F::avx512bitalg},
        {"AVX512-GFNI", &F::avx512gfni},
        {"AVX512-VAES", &F::avx512vaes},
        {"AVX512-VPCLMUL", &F::avx512vpclmul},
        {"AVX512-VP2INTERSECT", &F::avx512vp2intersect},
        {"AVX512-BF16", &F::avx512bf16},
        {"AVX512-FP16", &F::avx512fp16},
    },
};

const NamedFeature REQUIRED[] = {
    {"x64", &F::x64, true},
    {"SSE2", &F::sse2, true},
};

}  // namespace

std::span<const std::vector<NamedFeature>> feature_groups() {
    return GROUPS;
}
std::span<const NamedFeature> required_features() {
    return REQUIRED;
}

bool check_required_features(const CpuFeatures& features, bool skip_warnings) {
    std::unique_lock lock(Console::lock());
    Console::print_line("Checking processor/OS features...");
    Console::new_line();
    Console::print_line("Required Features:");
    std::string names = "    ";
    bool complete = true;
    for (const NamedFeature& feature : REQUIRED) {
        names += (&feature == REQUIRED ? "" : ", ") + std::string(feature.name);
        complete &= features.*feature.flag;
    }
    Console::print_line(names, 'Y');
    Console::new_line();
    if (complete) return true;

    Console::print_line("Warning:", 'R');
    Console::print_line("  This computer does not have all the processor or operating system");
    Console::print_line("  features that are necessary to run this binary.");
    Console::print_line("  Proceeding may cause the program to crash.");
    Console::new_line();
    Console::print_line("  Command line users can skip this message by passing, \"skip-warnings\"");
    Console::print_line("  as the first parameter.");
    Console::new_line();
    lock.unlock();
    if (!skip_warnings) Console::pause();
    return false;
}

void print_feature_list(const CpuFeatures& features) {
    std::lock_guard lock(Console::lock());
    Console::print_line("Hardware Features:");
    Console::new_line();
    for (const std::vector<NamedFeature>& group : GROUPS) {
        for (const NamedFeature& feature : group) {
            const bool present = features.*feature.flag;
            Console::print((feature.used ? "  * " : "    ") + padded(feature.name) + " = ");
            Console::print_line(present ? "Yes" : "No", present ? 'G' : 'R');
        }
        Console::new_line();
    }
    Console::print_line("(*) Indicates it is used explicitly by velmora.");
    Console::new_line();
}

}  // namespace lumo
