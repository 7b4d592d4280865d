// Every set of kernels that this machine can run.
#pragma once

#include "lumo/multiply/kernels/kernel_select.h"

namespace lumo::testing {

/// Runs f under each kernel set of this machine; the one in use is restored.
template <typename F>
void for_kernel_sets(F f) {
    const KernelSet saved = active_kernels();
    for (KernelSet set : {KernelSet::portable, KernelSet::avx2, KernelSet::avx512})
        if (select_kernels(set)) f(set);
    select_kernels(saved);
}

}  // namespace lumo::testing
