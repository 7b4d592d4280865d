#include "peak_rate.h"

#include <algorithm>
#include <chrono>
#include <thread>
#include <vector>

#include "lumo/multiply/fft/fft_sizes.h"
#include "lumo/multiply/kernels/kernel_select.h"
#include "lumo/multiply/ntt/vst/vst_sizes.h"
#include "lumo/multiply/ntt/vt3/vt3_select.h"

namespace lumo::bench {

namespace {

constexpr upL_t CHAINS = 12;  // latency 4, two ports, and some to spare
constexpr upL_t ROUNDS = 10000000;

/// One operation on each of registers 0 to 11, whose factors are in 12 and 13. In assembly: compilers keep an
/// array of wide vectors in memory. Not inlined, as a call ends the life of all vector registers.
[[gnu::noinline]] void multiply(Multiplier kind) {
    asm volatile(
        ".irp reg,0,1,2,3,4,5,6,7,8,9,10,11,12,13\n vxorpd %%xmm\\reg, %%xmm\\reg, %%xmm\\reg\n .endr" ::
            : "xmm0", "xmm1", "xmm2", "xmm3", "xmm4", "xmm5", "xmm6", "xmm7", "xmm8", "xmm9", "xmm10",
              "xmm11", "xmm12", "xmm13");
    switch (kind) {
        case Multiplier::doubles256:
            for (upL_t i = 0; i < ROUNDS; i++)
                asm volatile(
                    ".irp reg,0,1,2,3,4,5,6,7,8,9,10,11\n vfmadd231pd %%ymm12, %%ymm13, %%ymm\\reg\n .endr" ::
                        : "memory");
            break;
        case Multiplier::doubles512:
            for (upL_t i = 0; i < ROUNDS; i++)
                asm volatile(
                    ".irp reg,0,1,2,3,4,5,6,7,8,9,10,11\n vfmadd231pd %%zmm12, %%zmm13, %%zmm\\reg\n .endr" ::
                        : "memory");
            break;
        case Multiplier::integers512:
            for (upL_t i = 0; i < ROUNDS; i++)
                asm volatile(
                    ".irp reg,0,1,2,3,4,5,6,7,8,9,10,11\n vpmadd52luq %%zmm12, %%zmm13, %%zmm\\reg\n .endr" ::
                        : "memory");
            break;
        case Multiplier::none:
            return;
    }
    asm volatile("vzeroupper" ::: "memory");
}

/// Butterflies of `levels` levels over a point, half a butterfly a level, but for those that have root 1 or
/// i.
double levels_without_trivial(unsigned levels, bool in_lanes) {
    double sum = 0;
    double trivial = in_lanes ? 0.0 : 2.0;
    for (unsigned level = 0; level < levels; level++, trivial /= 2) sum += 0.5 * (1 - std::min(1.0, trivial));
    return sum;
}

double fft_operations(upL_t bits) {
    const FftSize& size = fft_size_for(bits);
    // The 8 parts of a point split by three levels whose roots are all different from 1; then the lanes.
    const double levels = levels_without_trivial(3, true) + levels_without_trivial(size.depth(), false);
    const double odd = size.m == 1 ? 0 : size.m == 3 ? 14.0 / 3 : 32.0 / 5;
    const double transform = 6 * levels + odd + 4;
    return static_cast<double>(size.vectors()) * (3 * transform + 4);
}

double ntt_operations(const Vt3Size& size, Multiplier kind) {
    const bool integers = kind == Multiplier::integers512;
    const double product = integers ? 3 : 4, general = integers ? 4 : 5;
    const double odd = size.m == 1 ? 0 : (size.m - 1) * (size.m - 1) / 2.0 / size.m;
    const double transform = product * (size.k / 2.0 + odd) + general;
    const double lanes = kind == Multiplier::doubles256 ? 4 : 8;
    return static_cast<double>(size.points()) / lanes * size.n * (3 * transform + general);
}

}  // namespace

double peak_rate(Multiplier kind, upL_t threads) {
    if (kind == Multiplier::none) return 0;
    const auto loop = [kind] { multiply(kind); };
    double best = 0;
    for (int trial = 0; trial < 5; trial++) {
        const auto start = std::chrono::steady_clock::now();
        std::vector<std::thread> others;
        for (upL_t i = 1; i < threads; i++) others.emplace_back(loop);
        loop();
        for (std::thread& other : others) other.join();
        const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - start;
        best = std::max(best, static_cast<double>(threads * ROUNDS * CHAINS) / passed.count());
    }
    return best;
}

Multiplier multiplier_of(std::string_view tag) {
    if (tag == "FFT") {
        if (active_kernels() == KernelSet::portable) return Multiplier::none;
        return active_kernels() == KernelSet::avx512 ? Multiplier::doubles512 : Multiplier::doubles256;
    }
    if (tag != "VT3" && tag != "VST") return Multiplier::none;  // C17 mixes both kinds
    const kernels::Vt3Kernels* set = &vt3_kernels();
    return set == &kernels::vt3_kernels_ifma     ? Multiplier::integers512
           : set == &kernels::vt3_kernels_avx512 ? Multiplier::doubles512
           : set == &kernels::vt3_kernels_avx2   ? Multiplier::doubles256
                                                 : Multiplier::none;
}

double operations(std::string_view tag, upL_t bits) {
    const Multiplier kind = multiplier_of(tag);
    if (kind == Multiplier::none) return 0;
    if (tag == "FFT") return fft_operations(bits) * (kind == Multiplier::doubles256 ? 2 : 1);
    return ntt_operations(tag == "VT3" ? vt3_size_for(bits) : vst_size_for(bits), kind);
}

}  // namespace lumo::bench
