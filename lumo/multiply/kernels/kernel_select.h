/// Which set of kernels runs: the widest that the processor and the system support, found once. The
/// environment variable VELMORA_KERNELS (portable, avx2, avx512) asks for a lower one.
#pragma once

#include <string>
#include <string_view>

#include "lumo/multiply/kernels/fft_kernels.h"

namespace lumo {

enum class KernelSet { portable, avx2, avx512 };

/// The widest set that this machine can run.
KernelSet supported_kernels();

struct KernelChoice {
    KernelSet set;
    std::string problem;  ///< why it is not what was asked for, for the user to read; empty if it is
};
/// The set for a wish by name on a machine whose widest one is given; that one for a wish that is empty or
/// cannot be met.
KernelChoice choose_kernels(std::string_view wish, KernelSet widest);
/// By the environment of this process.
const KernelChoice& chosen_kernels();

/// That of the environment until another is selected.
KernelSet active_kernels();
/// Makes a set the active one, for tests; false and no change if the machine cannot run it. Not while
/// products run.
bool select_kernels(KernelSet set);

const kernels::FftKernels& fft_kernels();
/// Puts a table of kernels in the place of the active one, for tests that look into products or damage them;
/// null ends it. Not while products run.
void replace_fft_kernels(const kernels::FftKernels* table);

}  // namespace lumo
