#include "lumo/foundation/hardware/cpu_features.h"

namespace lumo {

namespace {

constexpr bool bit(std::uint32_t reg, unsigned position) {
    return (reg >> position & 1) != 0;
}

// States of xcr0 that the wide registers need.
constexpr std::uint64_t XCR0_YMM = 0x06;  // xmm, upper halves of ymm
constexpr std::uint64_t XCR0_ZMM = 0xe6;  // also mask registers, upper halves of zmm, zmm16 to zmm31

void decode_scalar(const CpuidImage& image, CpuFeatures& f) {
    const CpuidLeaf& l1 = image.leaf_1;
    const CpuidLeaf& l7 = image.leaf_7_0;
    const CpuidLeaf& ext = image.leaf_ext_1;
    f.x64 = bit(ext.edx, 29);
    f.sse2 = bit(l1.edx, 26);
    f.abm = bit(ext.ecx, 5);
    f.rdrand = bit(l1.ecx, 30);
    f.rdseed = bit(l7.ebx, 18);
    f.bmi1 = bit(l7.ebx, 3);
    f.bmi2 = bit(l7.ebx, 8);
    f.adx = bit(l7.ebx, 19);
    f.prefetchw = bit(ext.ecx, 8);
    f.sse4a = bit(ext.ecx, 6);
    f.sse41 = bit(l1.ecx, 19);
    f.pclmulqdq = bit(l1.ecx, 1);
    f.aes = bit(l1.ecx, 25);
    f.sha = bit(l7.ebx, 29);
    f.gfni = bit(l7.ecx, 8);
}

void decode_avx(const CpuidImage& image, CpuFeatures& f) {
    const CpuidLeaf& l7 = image.leaf_7_0;
    const CpuidLeaf& l71 = image.leaf_7_1;
    f.avx = f.os_avx && bit(image.leaf_1.ecx, 28);
    f.avx2 = f.avx && bit(l7.ebx, 5);
    f.fma = f.avx && bit(image.leaf_1.ecx, 12);
    f.vaes = f.avx && bit(l7.ecx, 9);
    f.vpclmulqdq = f.avx && bit(l7.ecx, 10);
    f.avx_gfni = f.avx && f.gfni;
    f.avx_vnni = f.avx2 && bit(l71.eax, 4);
    f.avx_vnni_int8 = f.avx2 && bit(l71.edx, 4);
    f.avx_ne_convert = f.avx2 && bit(l71.edx, 5);
}

void decode_avx512(const CpuidImage& image, CpuFeatures& f) {
    const CpuidLeaf& l7 = image.leaf_7_0;
    f.avx512f = f.os_avx512 && f.avx2 && bit(l7.ebx, 16);
    if (!f.avx512f) return;
    f.avx512dq = bit(l7.ebx, 17);
    f.avx512ifma = bit(l7.ebx, 21);
    f.avx512pf = bit(l7.ebx, 26);
    f.avx512er = bit(l7.ebx, 27);
    f.avx512cd = bit(l7.ebx, 28);
    f.avx512bw = bit(l7.ebx, 30);
    f.avx512vl = bit(l7.ebx, 31);
    f.avx512vbmi = bit(l7.ecx, 1);
    f.avx512vbmi2 = bit(l7.ecx, 6);
    f.avx512gfni = f.gfni;
    f.avx512vaes = f.vaes;
    f.avx512vpclmul = f.vpclmulqdq;
    f.avx512vnni = bit(l7.ecx, 11);
    f.avx512bitalg = bit(l7.ecx, 12);
    f.avx512vpopcntdq = bit(l7.ecx, 14);
    f.avx512_4vnniw = bit(l7.edx, 2);
    f.avx512_4fmaps = bit(l7.edx, 3);
    f.avx512vp2intersect = bit(l7.edx, 8);
    f.avx512fp16 = bit(l7.edx, 23);
    f.avx512bf16 = bit(image.leaf_7_1.eax, 5);
}

}  // namespace

CpuFeatures decode_cpu_features(const CpuidImage& image) {
    CpuFeatures f;
    f.os_64bit = sizeof(void*) == 8;  // this process is the proof
    f.os_avx = (image.xcr0 & XCR0_YMM) == XCR0_YMM;
    f.os_avx512 = (image.xcr0 & XCR0_ZMM) == XCR0_ZMM;
    decode_scalar(image, f);
    decode_avx(image, f);
    decode_avx512(image, f);
    return f;
}

const CpuFeatures& cpu_features() {
    static const CpuFeatures features = decode_cpu_features(read_cpuid());
    return features;
}

}  // namespace lumo
