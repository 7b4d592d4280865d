#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "console_talk.h"
#include "lumo/foundation/config/writer.h"
#include "lumo/foundation/errors/exceptions.h"
#include "lumo/foundation/hardware/environment_file.h"
#include "temp_folder.h"

namespace lumo {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

/// Two sockets of two cores with two threads each, numbered as the kernel does: siblings last.
std::string sample_cpuinfo() {
    std::string text;
    for (int i = 0; i < 8; i++)
        text += "processor\t: " + std::to_string(i) +
                "\nmodel name\t: Sample(R) CPU @ 2.60GHz\ncpu MHz\t\t: 1200.000\nphysical id\t: " +
                std::to_string(i / 2 % 2) + "\ncore id\t\t: " + std::to_string(i % 2 * 5) + "\n\n";
    return text;
}

/// Folders that stand in for the kernel's.
class FakeSystem : public testing::Test {
 protected:
    FakeSystem() { settings.paths = {root / "proc", root / "sys"}; }
    void write(const std::string& path, const std::string& text) { root.write(path, text); }
    void write_machine() {
        write("proc/cpuinfo", sample_cpuinfo());
        write("proc/meminfo", "MemTotal:  1000 kB\nMemFree:  300 kB\nMemAvailable:  700 kB\n");
        write("proc/zoneinfo",
              "Node 0, zone DMA\n  pages free 1\n        present  3\nNode 0, zone Normal\n  present  5\n"
              "Node 1, zone Normal\n        present  7\n");
        write("sys/devices/system/node/node0/cpulist", "0-1,4-5\n");
        write("sys/devices/system/node/node1/cpulist", "2-3,6-7\n");
        write("sys/devices/system/node/nodes", "");
        write("sys/devices/system/node/has_normal_memory", "0-1\n");
        write("sys/devices/virtual/dmi/id/board_vendor", "Board Maker\n");
        write("sys/devices/virtual/dmi/id/board_serial", "S123\n");
    }

    const TempFolder root;
    DetectionSettings settings;
};

TEST(NumberLists, ReadRuns) {
    EXPECT_THAT(*parse_number_list("0-3,8\n"), ElementsAre(0, 1, 2, 3, 8));
    EXPECT_THAT(*parse_number_list(""), IsEmpty());
    for (const char* text : {"a", "1-", "3-1", "1,,2", "1,", "1 2", "0-99999999999"})
        EXPECT_FALSE(parse_number_list(text)) << text;
}

TEST(CpuTopology, CountsCoresAndPinsFirstSiblingsFirst) {
    const CpuTopology topology = parse_cpuinfo(sample_cpuinfo());
    EXPECT_EQ(topology.logical_cores(), 8);
    EXPECT_EQ(topology.physical_cores(), 4);
    EXPECT_EQ(topology.sockets(), 2);
    EXPECT_EQ(topology.base_frequency, 2600000000);
    EXPECT_THAT(topology.names, ElementsAre("Sample(R) CPU @ 2.60GHz"));
    EXPECT_THAT(static_pin_order(topology), ElementsAre(0, 1, 2, 3, 4, 5, 6, 7));
    CpuTopology adjacent;  // siblings numbered side by side
    for (upL_t i = 0; i < 6; i++) adjacent.cores.push_back({i, 0, i / 2});
    EXPECT_THAT(static_pin_order(adjacent), ElementsAre(0, 2, 4, 1, 3, 5));

    // Without ids each core is its own; a model name alone makes no core.
    const CpuTopology bare =
        parse_cpuinfo("model name : X\nprocessor : 0\ncpu MHz : 1500.5\n\nprocessor : 1");
    EXPECT_EQ(bare.physical_cores(), 2);
    EXPECT_EQ(bare.base_frequency, 1500500000);
    EXPECT_EQ(parse_cpuinfo("garbage\n\n:\nprocessor : x\n").logical_cores(), 0);
}

TEST_F(FakeSystem, IsDetectedAndReported) {
    write_machine();
    std::vector<std::string> told;
    settings.status = [&](std::string_view text) { told.emplace_back(text); };
    DetectedHardware hardware;
    EXPECT_EQ(printed_by([&] { hardware = detect_hardware(settings); }), "");
    EXPECT_EQ(told.size(), 2);
    EXPECT_EQ(hardware.short_form(), "8 threads / 4 cores / 2 sockets");
    ASSERT_EQ(hardware.numa_nodes.size(), 2);
    EXPECT_THAT(hardware.numa_nodes[1].cores, ElementsAre(2, 3, 6, 7));
    EXPECT_EQ(hardware.numa_nodes[0].memory_bytes, 8 * 4096);
    EXPECT_EQ(hardware.memory.total, 1000 * 1024);
    EXPECT_EQ(hardware.memory.usable, 700 * 1024);
    EXPECT_EQ(hardware.strings.manufacturer, "Board Maker");
    EXPECT_EQ(hardware.strings.serial_number, "");

    const std::string report = printed_by([&] { print_hardware_report(hardware); });
    EXPECT_THAT(report, HasSubstr("Board Maker"));
    EXPECT_THAT(report, HasSubstr("Unable to Detect"));
    EXPECT_THAT(report, HasSubstr("2,600,000,000 Hz"));

    settings.show_pii = true;
    EXPECT_EQ(detect_hardware(settings).strings.serial_number, "S123");
}

TEST_F(FakeSystem, MayTellNothing) {
    DetectedHardware hardware;
    const std::string printed = printed_by([&] { hardware = detect_hardware(settings); });
    EXPECT_THAT(printed, HasSubstr("Unable to read or parse \"/proc/cpuinfo\"."));
    EXPECT_THAT(printed, HasSubstr("Thread affinities may not function correctly."));
    EXPECT_GE(hardware.topology.logical_cores(), 1);
    EXPECT_EQ(hardware.numa_nodes.size(), 1);
    EXPECT_EQ(hardware.memory.total, 0);
    EXPECT_THAT(printed_by([&] { print_hardware_report(hardware); }), HasSubstr("Unable to Detect"));
}

TEST_F(FakeSystem, MayHideWhichNodesHaveMemory) {
    write_machine();
    std::filesystem::remove(root / "sys/devices/system/node/has_normal_memory");
    DetectedHardware hardware;
    EXPECT_THAT(printed_by([&] { hardware = detect_hardware(settings); }),
                HasSubstr("Will assume all NUMA nodes have usable memory."));
    EXPECT_THAT(hardware.memory_nodes(), ElementsAre(0, 1));
    write("sys/devices/system/node/has_normal_memory", "1\n");
    EXPECT_THAT(detect_hardware(settings).memory_nodes(), ElementsAre(1));
}

TEST_F(FakeSystem, SurvivesTheEnvironmentFile) {
    write_machine();
    settings.show_pii = true;
    const DetectedHardware detected = detect_hardware(settings);
    const std::string path = (root / "environment.cfg").string();
    save_environment(detected, path);

    std::filesystem::remove_all(root / "proc");
    std::string told;
    settings.status = [&](std::string_view text) { told += text; };
    const DetectedHardware loaded = load_or_detect_hardware(path, settings);
    EXPECT_EQ(told, "Loading Environment Configuration...");
    Config::Object before, after;
    hardware_to_cfg(detected, before);
    hardware_to_cfg(loaded, after);
    EXPECT_EQ(Config::write_cfg(after), Config::write_cfg(before));
    EXPECT_EQ(loaded.short_form(), "8 threads / 4 cores / 2 sockets");
    EXPECT_THAT(loaded.numa_nodes.at(1).cores, ElementsAre(2, 3, 6, 7));
    EXPECT_EQ(loaded.strings.serial_number, "");  // identifies the machine: not kept

    EXPECT_THROW(save_environment(detected, (root / "no/such/folder").string()), FileIO::FileException);
}

TEST_F(FakeSystem, PassesOverAnUnusableEnvironmentFile) {
    write_machine();
    const std::string path = (root / "environment.cfg").string();
    for (const char* text : {"{", "{ }", "{ DetectedHardware : 3 }", "[]",
                             "{ DetectedHardware : { LogicalCores : [] NumaNodes : [] } }",
                             "{ DetectedHardware : { LogicalCores : [[0 0]] NumaNodes : [] } }",
                             "{ DetectedHardware : { LogicalCores : [[0 0 -1]] } }"}) {
        write("environment.cfg", text);
        DetectedHardware hardware;
        EXPECT_THAT(printed_by([&] { hardware = load_or_detect_hardware(path, settings); }),
                    HasSubstr("Unable to use"))
            << text;
        EXPECT_EQ(hardware.topology.logical_cores(), 8);
    }
}

}  // namespace
}  // namespace lumo
