#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "console_talk.h"
#include "failures.h"
#include "lumo/foundation/hardware/cache_topology.h"
#include "lumo/foundation/hardware/detect/system_files.h"
#include "lumo/foundation/hardware/feature_list.h"

namespace lumo {
namespace {

using testing::HasSubstr;
using testing::Not;

/// Every bit set: a processor that has everything.
CpuidImage full_image() {
    const CpuidLeaf all{~0u, ~0u, ~0u, ~0u};
    CpuidImage image;
    image.leaf_1 = image.leaf_7_0 = image.leaf_7_1 = image.leaf_ext_1 = all;
    image.xcr0 = ~std::uint64_t(0);
    return image;
}

TEST(CpuFeatures, NeedTheOperatingSystem) {
    CpuidImage image = full_image();
    EXPECT_TRUE(decode_cpu_features(image).avx512ifma);
    image.xcr0 = 0x07;  // saves ymm but not zmm
    CpuFeatures features = decode_cpu_features(image);
    EXPECT_TRUE(features.avx2 && features.fma && features.os_avx);
    EXPECT_FALSE(features.os_avx512 || features.avx512f || features.avx512dq || features.avx512bf16);
    image.xcr0 = 0x03;
    features = decode_cpu_features(image);
    EXPECT_FALSE(features.avx || features.avx2 || features.fma || features.vaes || features.avx_vnni);
    EXPECT_TRUE(features.bmi2 && features.adx && features.sse41);
}

TEST(CpuFeatures, WideSetsNeedTheirFoundation) {
    CpuidImage image = full_image();
    image.leaf_7_0.ebx &= ~(1u << 16);  // AVX512-F
    EXPECT_FALSE(decode_cpu_features(image).avx512dq);
    const CpuFeatures none = decode_cpu_features({});
    for (const auto& group : feature_groups())
        for (const NamedFeature& feature : group)
            if (feature.name != std::string("64-bit")) {
                EXPECT_FALSE(none.*feature.flag) << feature.name;
            }
    // All flags of the screen are wired to something.
    const CpuFeatures all = decode_cpu_features(full_image());
    for (const auto& group : feature_groups())
        for (const NamedFeature& feature : group) EXPECT_TRUE(all.*feature.flag) << feature.name;
}

TEST(CpuFeatures, AgreeWithTheKernel) {
    const auto cpuinfo = read_system_file("/proc/cpuinfo");
    if (!cpuinfo) GTEST_SKIP() << "no /proc/cpuinfo";
    const std::size_t at = cpuinfo->find("\nflags");
    ASSERT_NE(at, std::string::npos);
    const std::string flags = cpuinfo->substr(at, cpuinfo->find('\n', at + 1) - at) + " ";
    const CpuFeatures& mine = cpu_features();
    const std::pair<const char*, bool> pairs[] = {
        {" lm ", mine.x64},
        {" sse4_1 ", mine.sse41},
        {" bmi2 ", mine.bmi2},
        {" abm ", mine.abm},
        {" rdseed ", mine.rdseed},
        {" avx2 ", mine.avx2},
        {" fma ", mine.fma},
        {" sha_ni ", mine.sha},
        {" vaes ", mine.vaes},
        {" avx512f ", mine.avx512f},
        {" avx512vl ", mine.avx512vl},
        {" avx512ifma ", mine.avx512ifma},
        {" avx512_bf16 ", mine.avx512bf16},
        {" avx512_vpopcntdq ", mine.avx512vpopcntdq},
    };
    for (const auto& [flag, value] : pairs) EXPECT_EQ(value, flags.find(flag) != std::string::npos) << flag;
}

TEST(RequiredFeatures, WarnOnlyWhenMissing) {
    const std::string fine = printed_by([] { EXPECT_TRUE(check_required_features(cpu_features(), false)); });
    EXPECT_THAT(fine, HasSubstr("Required Features:"));
    EXPECT_THAT(fine, Not(HasSubstr("Warning:")));
    const std::string bad = printed_by([] { EXPECT_FALSE(check_required_features({}, true)); });
    EXPECT_THAT(bad, HasSubstr("Proceeding may cause the program to crash."));
    EXPECT_THAT(bad, Not(HasSubstr("Press ENTER")));
    EXPECT_THAT(printed_by([] { check_required_features({}, false); }), HasSubstr("Press ENTER"));
}

TEST(FeatureList, MarksWhatIsUsed) {
    const std::string screen = printed_by([] { print_feature_list(decode_cpu_features(full_image())); });
    for (const char* row : {"  * AVX2 ", "  * SHA ", "  * AVX512-BW ", "  * AVX512-IFMA ", "    BMI2 ",
                            "(*) Indicates it is used explicitly by velmora."})
        EXPECT_THAT(screen, HasSubstr(row));
    EXPECT_LT(screen.find("AVX512-ER"), screen.find("AVX512-DQ"));
}

TEST(CacheTopology, RefusesWhatIsNoHierarchy) {
    std::vector<CacheLevel> many{{1, 1, true}};
    while (many.size() < 9) many.push_back({many.back().size * 2, 1, false});
    const std::pair<std::vector<CacheLevel>, std::string> cases[] = {
        {{{32768, 1, true}, {1 << 20, 1, true}, {1 << 25, 8, false}}, ""},
        {{{32768, 1, true}}, ""},
        {{}, "Must contain at least one level of cache."},
        {{{32768, 2, true}, {1 << 20, 2, false}},
         "Lowest level of cache cannot be shared by multiple threads."},
        {{{32768, 1, false}, {1 << 20, 1, false}}, "Lowest level of cache must be explicit."},
        {{{32768, 1, true}, {1 << 20, 1, true}}, "Last level cannot be explicit."},
        {{{32768, 1, true}, {65535, 1, false}}, "Caches must be increasing in size by at least 2x."},
        {many, "Too many cache levels."},
    };
    for (const auto& [levels, message] : cases)
        EXPECT_EQ(failure_of([&] { CacheTopologyStandard topology(levels); }),
                  message.empty() ? "" : "InvalidParametersException CacheTopologyStandard(): " + message);
}

}  // namespace
}  // namespace lumo
