/// Instruction sets that may be used on this machine.
#pragma once

#include "lumo/foundation/hardware/cpuid.h"

namespace lumo {

/// Each flag is true only if the processor has the set and the operating system saves the registers that it
/// needs, so a kernel may be chosen by its flags alone.
struct CpuFeatures {
    bool os_64bit = false, os_avx = false, os_avx512 = false;

    bool x64 = false, sse2 = false, abm = false, rdrand = false, rdseed = false, bmi1 = false, bmi2 = false;
    bool adx = false, prefetchw = false, sse4a = false, sse41 = false, pclmulqdq = false, aes = false;
    bool sha = false, gfni = false;

    bool avx = false, avx2 = false, fma = false, vaes = false, vpclmulqdq = false, avx_gfni = false;
    bool avx_vnni = false, avx_vnni_int8 = false, avx_ne_convert = false;

    bool avx512f = false, avx512pf = false, avx512er = false, avx512cd = false, avx512vl = false;
    bool avx512dq = false, avx512bw = false, avx512ifma = false, avx512vbmi = false, avx512vbmi2 = false;
    bool avx512vpopcntdq = false, avx512_4vnniw = false, avx512_4fmaps = false, avx512vnni = false;
    bool avx512bitalg = false, avx512gfni = false, avx512vaes = false, avx512vpclmul = false;
    bool avx512vp2intersect = false, avx512bf16 = false, avx512fp16 = false;
};

CpuFeatures decode_cpu_features(const CpuidImage& image);
/// Of this machine; read once. Any thread may call.
const CpuFeatures& cpu_features();

}  // namespace lumo
