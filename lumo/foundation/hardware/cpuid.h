/// The identification registers of the processor, as a plain record that tests can fill by hand.
#pragma once

#include <cstdint>
#include <string>

namespace lumo {

struct CpuidLeaf {
    std::uint32_t eax = 0, ebx = 0, ecx = 0, edx = 0;
};

/// Leaves that the processor does not have are zero.
struct CpuidImage {
    CpuidLeaf leaf_1, leaf_7_0, leaf_7_1, leaf_ext_1;
    std::uint64_t xcr0 = 0;  ///< register sets that the operating system saves; 0 without OSXSAVE
    std::string brand;       ///< trimmed; empty if the processor does not say
};

CpuidImage read_cpuid();

}  // namespace lumo
