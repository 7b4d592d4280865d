#include "lumo/multiply/kernels/kernel_select.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>

#include "lumo/foundation/hardware/cpu_features.h"
#include "lumo/multiply/kernels/mul52_kernel.h"

namespace lumo {

namespace {

KernelSet detect() {
    const CpuFeatures& cpu = cpu_features();
    if (!cpu.avx2 || !cpu.fma) return KernelSet::portable;
    return cpu.avx512f && cpu.avx512dq && cpu.avx512vl ? KernelSet::avx512 : KernelSet::avx2;
}

/// By their order in KernelSet.
constexpr std::string_view NAMES[] = {"portable", "avx2", "avx512"};

std::atomic<KernelSet>& active() {
    static std::atomic<KernelSet> set = chosen_kernels().set;
    return set;
}

std::atomic<const kernels::FftKernels*> fft_replacement = nullptr;

}  // namespace

KernelSet supported_kernels() {
    static const KernelSet widest = detect();
    return widest;
}

KernelChoice choose_kernels(std::string_view wish, KernelSet widest) {
    if (wish.empty()) return {widest, ""};
    const auto named = static_cast<KernelSet>(std::ranges::find(NAMES, wish) - NAMES);
    if (named <= widest) return {named, ""};
    const std::string instead(NAMES[static_cast<int>(widest)]);
    const bool known = named <= KernelSet::avx512;
    return {widest, "VELMORA_KERNELS=" + std::string(wish) + ": " +
                        (known ? "this machine cannot run that set" : "there is no such set of kernels") +
                        ". Using " + instead + "."};
}

const KernelChoice& chosen_kernels() {
    static const KernelChoice choice = [] {
        const char* wish = std::getenv("VELMORA_KERNELS");
        return choose_kernels(wish ? wish : "", supported_kernels());
    }();
    return choice;
}

KernelSet active_kernels() {
    return active().load(std::memory_order_relaxed);
}

bool select_kernels(KernelSet set) {
    if (set > supported_kernels()) return false;
    active().store(set, std::memory_order_relaxed);
    return true;
}

const kernels::FftKernels& fft_kernels() {
    if (const auto* table = fft_replacement.load(std::memory_order_relaxed)) return *table;
    switch (active_kernels()) {
        case KernelSet::avx512:
            return kernels::fft_kernels_avx512;
        case KernelSet::avx2:
            return kernels::fft_kernels_avx2;
        default:
            return kernels::fft_kernels_portable;
    }
}

kernels::Mul52* mul52_kernel() {
    static const bool runs = cpu_features().avx512ifma && cpu_features().avx512bw;
    return runs && active_kernels() == KernelSet::avx512 ? kernels::mul52_ifma : nullptr;
}

void replace_fft_kernels(const kernels::FftKernels* table) {
    fft_replacement.store(table, std::memory_order_relaxed);
}

}  // namespace lumo
