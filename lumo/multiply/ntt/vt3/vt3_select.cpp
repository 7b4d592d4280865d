#include "lumo/multiply/ntt/vt3/vt3_select.h"

#include <atomic>

#include "lumo/foundation/hardware/cpu_features.h"
#include "lumo/multiply/kernels/kernel_select.h"

namespace lumo {

namespace {

std::atomic<const kernels::Vt3Kernels*> chosen = nullptr;

bool runs(const kernels::Vt3Kernels& set) {
    if (&set == &kernels::vt3_kernels_ifma)
        return supported_kernels() >= KernelSet::avx512 && cpu_features().avx512ifma;
    if (&set == &kernels::vt3_kernels_avx512) return supported_kernels() >= KernelSet::avx512;
    if (&set == &kernels::vt3_kernels_avx2) return supported_kernels() >= KernelSet::avx2;
    return true;
}

}  // namespace

const kernels::Vt3Kernels& vt3_kernels() {
    if (const auto* set = chosen.load(std::memory_order_relaxed)) return *set;
    switch (active_kernels()) {
        case KernelSet::avx512:
            return runs(kernels::vt3_kernels_ifma) ? kernels::vt3_kernels_ifma : kernels::vt3_kernels_avx512;
        case KernelSet::avx2:
            return kernels::vt3_kernels_avx2;
        default:
            return kernels::vt3_kernels_portable;
    }
}

const kernels::Vt3Kernels& vt3_other_kernels() {
    const kernels::Vt3Kernels& used = vt3_kernels();
    if (used.form == kernels::Vt3Form::floating) return kernels::vt3_kernels_portable;
    for (const auto* set : {&kernels::vt3_kernels_avx512, &kernels::vt3_kernels_avx2})
        if (runs(*set)) return *set;
    return used;
}

bool select_vt3_kernels(const kernels::Vt3Kernels* set) {
    if (set && !runs(*set)) return false;
    chosen.store(set, std::memory_order_relaxed);
    return true;
}

}  // namespace lumo
