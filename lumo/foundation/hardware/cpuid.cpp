#include "lumo/foundation/hardware/cpuid.h"

#include <cpuid.h>

#include <cstring>

namespace lumo {

namespace {

CpuidLeaf read_leaf(std::uint32_t leaf, std::uint32_t subleaf) {
    CpuidLeaf r;
    __cpuid_count(leaf, subleaf, r.eax, r.ebx, r.ecx, r.edx);
    return r;
}

std::uint64_t read_xcr0() {
    std::uint32_t low, high;
    // Written as an instruction: the intrinsic needs a compiler flag that would let xsave code into this
    // file.
    asm volatile("xgetbv" : "=a"(low), "=d"(high) : "c"(0));
    return (std::uint64_t(high) << 32) | low;
}

std::string read_brand() {
    char text[48];
    for (std::uint32_t i = 0; i < 3; i++) {
        const CpuidLeaf r = read_leaf(0x80000002 + i, 0);
        std::memcpy(text + 16 * i, &r, 16);
    }
    std::string brand(text, strnlen(text, sizeof(text)));
    brand.erase(0, brand.find_first_not_of(' '));
    brand.erase(brand.find_last_not_of(' ') + 1);
    return brand;
}

}  // namespace

CpuidImage read_cpuid() {
    constexpr std::uint32_t OSXSAVE = 1u << 27;
    CpuidImage image;
    const std::uint32_t highest = read_leaf(0, 0).eax;
    const std::uint32_t highest_extended = read_leaf(0x80000000, 0).eax;
    if (highest >= 1) image.leaf_1 = read_leaf(1, 0);
    if (highest >= 7) {
        image.leaf_7_0 = read_leaf(7, 0);
        if (image.leaf_7_0.eax >= 1) image.leaf_7_1 = read_leaf(7, 1);
    }
    if (highest_extended >= 0x80000001) image.leaf_ext_1 = read_leaf(0x80000001, 0);
    if (highest_extended >= 0x80000004) image.brand = read_brand();
    if (image.leaf_1.ecx & OSXSAVE) image.xcr0 = read_xcr0();
    return image;
}

}  // namespace lumo
