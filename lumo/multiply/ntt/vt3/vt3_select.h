/// Which set of kernels the number-theoretic transform runs: the active one of the other kernels, and in its
/// place those of 52-bit integers where the processor has them.
#pragma once

#include "lumo/multiply/kernels/vt3_kernels.h"

namespace lumo {

const kernels::Vt3Kernels& vt3_kernels();
/// A set of the other kind of numbers, integers or doubles, as the one in use; that one itself where the
/// processor has no fused arithmetic of doubles.
const kernels::Vt3Kernels& vt3_other_kernels();
/// Makes a set the one to use whatever else is active, for tests; false and no change if the machine cannot
/// run it. Null ends it. Not while products run.
bool select_vt3_kernels(const kernels::Vt3Kernels* set);

}  // namespace lumo
