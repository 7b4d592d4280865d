#include "lumo/multiply/kernels/kernel_select.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace lumo {

TEST(KernelSelect, TellsWhyAWishIsNotMet) {
    const auto expect = [](const char* wish, KernelSet widest, KernelSet set, const char* problem) {
        const KernelChoice choice = choose_kernels(wish, widest);
        EXPECT_EQ(choice.set, set) << wish;
        EXPECT_EQ(choice.problem, problem);
    };
    for (const KernelSet widest : {KernelSet::portable, KernelSet::avx2, KernelSet::avx512})
        expect("", widest, widest, "");
    expect("portable", KernelSet::avx512, KernelSet::portable, "");
    expect("avx2", KernelSet::avx512, KernelSet::avx2, "");
    expect("avx512", KernelSet::avx512, KernelSet::avx512, "");
    expect("avx512", KernelSet::avx2, KernelSet::avx2,
           "VELMORA_KERNELS=avx512: this machine cannot run that set. Using avx2.");
    for (const KernelSet widest : {KernelSet::avx2, KernelSet::avx512})
        EXPECT_THAT(choose_kernels("AVX2", widest).problem,
                    testing::HasSubstr("VELMORA_KERNELS=AVX2: there is no such set of kernels. Using avx"));
}

}  // namespace lumo
