/// Features of the processor by name: the required ones, and the screen of all.
#pragma once

#include <span>
#include <vector>

#include "lumo/foundation/hardware/cpu_features.h"

namespace lumo {

struct NamedFeature {
    const char* name;
    bool CpuFeatures::*flag;
    bool used = false;  ///< by the portable code or by kernels that are chosen at run time
};

/// All that the screen shows, in groups.
std::span<const std::vector<NamedFeature>> feature_groups();
/// What the program needs to run at all. Wider sets are chosen at run time.
std::span<const NamedFeature> required_features();

/// Prints the check. When something is missing it warns, and pauses unless `skip_warnings` is set. Returns
/// whether all is there; the program may go on at its own risk.
bool check_required_features(const CpuFeatures& features, bool skip_warnings);

/// Prints the "Hardware Features" screen.
void print_feature_list(const CpuFeatures& features);

}  // namespace lumo
