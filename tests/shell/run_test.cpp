#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "console_talk.h"
#include "digitviewer/files/lmd/lmd_set_reader.h"
#include "fake_constant.h"
#include "lumo/foundation/memory/allocators/malloc_allocator.h"
#include "lumo/foundation/memory/allocators/mmap_allocator.h"
#include "plain_console.h"
#include "temp_folder.h"
#include "velmora/shell/session/allocation_report.h"
#include "velmora/shell/session/normal_float_session_b.h"
#include "velmora/shell/session/run_validation.h"
#include "velmora/shell/session/time_report.h"
#include "velmora/validation/validator.h"

using namespace velmora;
using testing::AllOf;
using testing::HasSubstr;
namespace fs = std::filesystem;

namespace {

class Run : public testing::Test {
 protected:
    std::string run(NormalFloatSession& session) {
        const PlainConsole plain;
        return lumo::printed_by([&] { session.run(); });
    }

    const lumo::TempFolder folder;
    const lumo::DetectedHardware machine{.topology = {}, .numa_nodes = {{}}, .memory = {}, .strings = {}};
};

}  // namespace

TEST_F(Run, WritesTheDigitsOfAThird) {
    for (const char* framework : {"none", "pushpool"}) {
        NormalFloatSessionB session(machine, make_third());
        session.set_framework(framework);
        session.set_decimal_digits(1234);
        session.set_output_path((folder / "new").string());
        const std::string text = run(session);
        EXPECT_EQ(folder.contents("new/third - Dec - direct.txt"), "0." + std::string(1234, '3'));
        EXPECT_EQ(folder.contents("new/third - Hex - direct.txt"), "0." + std::string(1025, '5'));
        for (const char* line : {"Configuration Dump:\n", "CPU Utilization:"})
            EXPECT_THAT(text, HasSubstr(line));
        std::size_t at = text.find("Event Log:\n");
        for (const char* event :
             {"  Start Time\n", "  seed              : ", "  date_start        : ", "  epoch_millis_start: ",
              "  Working Memory: ", "  Twiddle Tables: ", "  Begin Computation\n",
              "  Writing one third: ", "  End Computation\n", "  Verified Binary Output\n",
              "  Wrote Hexadecimal Digits\n", "  Processed Decimal Digits\n", "  Verified Base Conversion\n",
              "  Wrote Decimal Digits\n", "  Spot Check: Unavailable - ", "  Verified Digit Output\n"}) {
            at = text.find(event, at);
            ASSERT_NE(at, std::string::npos) << event << text;
        }
        EXPECT_EQ(text.find('\x1b'), std::string::npos);
        folder.clear();
    }
}

TEST_F(Run, SwitchesOfOutput) {
    NormalFloatSessionB session(machine, make_third());
    session.set_decimal_digits(500);
    session.set_hex_enabled(false);
    session.set_output_verify(false);
    session.set_output_path(folder.path.string());
    run(session);
    EXPECT_EQ(folder.contents("third - Dec - direct.txt"), "0." + std::string(500, '3'));
    EXPECT_EQ(folder.files(), 2);

    // Without digit files the record of the run is all that is written.
    folder.clear();
    session.set_output_kind(lumo::OutputKind::none);
    EXPECT_THAT(run(session), HasSubstr("Dec Counts: "));
    ASSERT_EQ(folder.files(), 1);
    const std::string record = folder.contents(fs::directory_iterator(folder.path)->path().filename());
    EXPECT_TRUE(validate_text(record).passed);
    EXPECT_THAT(record, HasSubstr("Hexadecimal Digits:    Disabled\r\n"));
    EXPECT_THAT(record, HasSubstr("Spot Check:                 Not Available\r\n"));
}

TEST_F(Run, CompressedFilesHoldTheSameDigits) {
    NormalFloatSessionB session(machine, make_third());
    session.set_decimal_digits(1000);
    session.set_output_path(folder.path.string());
    for (const bool verify : {true, false}) {
        for (const upL_t block : {0, 300}) {
            session.set_output_verify(verify);
            session.set_compressed_output(block);
            run(session);
            const std::string number = block == 0 ? "" : " - 0";
            DigitViewer2::BasicLmdSetReader dec(
                (folder / ("third - Dec - direct" + number + ".lmd")).string());
            DigitViewer2::BasicLmdSetReader hex(
                (folder / ("third - Hex - direct" + number + ".lmd")).string());
            std::string digits(1000, '\0');
            dec.read({}, digits.data(), 0, 1000);
            EXPECT_EQ(digits, std::string(1000, 3));
            EXPECT_EQ(dec.first_digits(), "0." + std::string(50, '3'));
            hex.read({}, digits.data(), 0, 830);
            EXPECT_EQ(digits.substr(0, 830), std::string(830, 5));
            EXPECT_EQ(hex.digits(), 830u);
            folder.clear();
        }
    }
}

TEST_F(Run, AFolderThatVanishedIsToldBeforeAnythingElse) {
    NormalFloatSessionB session(machine, make_third());
    session.set_decimal_digits(500);
    session.set_output_path((folder / "a").string());
    folder.write("a", "a file");
    EXPECT_THROW(run(session), lumo::FileIO::FileException);
    EXPECT_EQ(folder.contents("a"), "a file");
}

TEST_F(Run, AProtectedFileIsRefusedBeforeAnythingElse) {
    NormalFloatSessionB session(machine, make_third());
    session.set_decimal_digits(500);
    session.set_output_path(folder.path.string());
    for (const char* name :
         {"third - Dec - direct.txt", "third - Hex - direct.txt", "third - Dec - direct - 0.lmd"}) {
        folder.write(name, "kept");
        fs::permissions(folder / name, fs::perms::owner_read);
        if (std::string(name).ends_with(".lmd")) session.set_compressed_output(50);
        EXPECT_THROW(run(session), lumo::FileIO::FileException);
        EXPECT_EQ(folder.contents(name), "kept");
        EXPECT_EQ(folder.files(), 1);
        folder.clear();
    }
}

TEST_F(Run, ARecordThatCannotBeWrittenComesAfterTheResults) {
    NormalFloatSessionB session(machine, make_third());
    session.set_decimal_digits(500);
    session.set_output_path((folder / "a").string());
    session.set_output_kind(lumo::OutputKind::none);
    folder.write("a", "a file");
    const PlainConsole plain;
    EXPECT_THAT(lumo::printed_by([&] { EXPECT_THROW(session.run(), lumo::FileIO::FileException); }),
                AllOf(HasSubstr("Dec Counts: "), HasSubstr("Event Log:\n")));
    EXPECT_EQ(folder.files(), 1);
}

TEST_F(Run, ReportAndRecordTellTheSameTimes) {
    const NormalFloatSessionB session(machine, make_third());
    const EventLog events;
    RunOutcome outcome;
    outcome.computation_seconds = 3600;
    outcome.wall_seconds = 90000;
    outcome.used = {45000, 900};
    const PlainConsole plain;
    const ValidationReport record = make_run_record(session, events, RunStart(), outcome);
    std::string recorded;
    for (const std::string& line : record.times) recorded += line + "\n";
    for (const std::string& text :
         {recorded, lumo::printed_by([&] { print_end_report(session, events, outcome); })}) {
        EXPECT_THAT(text,
                    AllOf(HasSubstr("Start Date:            " + date_text(events.start()) + "\n"),
                          HasSubstr("End Date:              " + date_text(events.start() + 90000) + "\n"),
                          HasSubstr("Total Computation Time:    3600.000 seconds\n"),
                          HasSubstr("Start-to-End Wall Time:    90000.000 seconds\n"),
                          HasSubstr(" 50.00 %  +  1.00 % kernel overhead\n")));
    }
    const std::string total = lumo::Console::format_bytes(session.estimate().total_bytes());
    EXPECT_THAT(record.computation, testing::Contains("Total Memory:          " + total));
    EXPECT_EQ(epoch_milliseconds(1770000000.25), 1770000000250u);
}

TEST(TimeReport, Utilization) {
    EXPECT_EQ(utilization_text({3.0, 0.5}, 2.0, 1), "150.00 %  +  25.00 % kernel overhead");
    EXPECT_EQ(utilization_text({3.0, 0.5}, 2.0, 4), "37.50 %  +  6.25 % kernel overhead");
    EXPECT_EQ(utilization_text({0, 0}, 0, 4), "Too Fast to Measure");
}

TEST(AllocationReport, TellsWhatWasNotGranted) {
    lumo::PageAllocation pages;
    pages.bytes = 4096;
    lumo::MmapAllocator mmap;
    EXPECT_EQ(allocation_shortfalls(mmap, pages).size(), 2u);
    pages.locked_bytes = 4096;
    EXPECT_EQ(allocation_shortfalls(mmap, pages),
              std::vector<std::string>{"Unable to allocate large pages."});
    mmap.large_pages = lumo::PagePolicy::DISABLED;
    EXPECT_TRUE(allocation_shortfalls(mmap, pages).empty());
    EXPECT_TRUE(allocation_shortfalls(lumo::MallocAllocator(), {}).empty());
}
