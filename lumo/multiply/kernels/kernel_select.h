/// Which set of kernels runs: the widest that the processor and the system support, found once. The
/// environment variable VELMORA_KERNELS (portable, avx2, avx512) asks for a lower one.
#pragma once

#include "lumo/multiply/kernels/fft_kernels.h"

namespace lumo {

enum class KernelSet { portable, avx2, avx512 };

/// The widest set that this machine can run.
KernelSet supported_kernels();
KernelSet active_kernels();
/// Makes a set the active one, for tests; false and no change if the machine cannot run it. Not while
/// products run.
bool select_kernels(KernelSet set);

const kernels::FftKernels& fft_kernels();
/// Puts a table of kernels in the place of the active one, for tests that look into products or damage them;
/// null ends it. Not while products run.
void replace_fft_kernels(const kernels::FftKernels* table);

}  // namespace lumo
