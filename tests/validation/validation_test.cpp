// Validation files: what is written passes, and no change of it does.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "console_talk.h"
#include "lumo/foundation/console/console.h"
#include "lumo/foundation/digest/sha2.h"
#include "lumo/foundation/errors/exceptions.h"
#include "temp_folder.h"
#include "velmora/validation/checksums.h"
#include "velmora/validation/machine_lines.h"
#include "velmora/validation/reference_clocks.h"
#include "velmora/validation/validation_report.h"
#include "velmora/validation/validator.h"

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
namespace fs = std::filesystem;

constexpr const char* PASSED = "Validation Passed!";
constexpr const char* INVALID_FILE = "Validation Failed - Invalid File";
constexpr const char* INVALID_HASH = "Validation Failed: Invalid Hash";
constexpr const char* TAMPERED = "Validation Failed: File is either invalid or has been tampered with.";

ValidationReport sample() {
    ValidationReport report;
    report.program = "velmora v0.1.0 Release";
    report.tuning = "x64";
    report.user = "somebody Constant: e";  // a label within a line is none
    report.machine = {"Processor(s):", "    A processor"};
    report.constant = {"Constant:              Pi", "Decimal Digits:        1,000"};
    report.computation = {"Computation Mode:      Ram Only"};
    report.configuration = "{\r\n    Action : \"CustomCompute\"\r\n}";
    report.times = {"Total Computation Time:    0.250 seconds", "",
                    "CPU Utilization:           Too Fast to Measure"};
    report.digits = {"Dec Counts: 1  2"};
    report.sanity = {"Spot Check:                 Not Available"};
    report.events = {"         0.000  Start Time", "----", "         0.100  End"};
    report.record[0] = 0x0123456789abcdef;
    report.record[1] = 42;
    return report;
}

std::string verdict(std::string_view text) {
    const ValidationOutcome outcome = validate_text(text);
    EXPECT_EQ(outcome.passed, outcome.messages.front() == PASSED);
    EXPECT_EQ(outcome.passed, !outcome.key_figures.empty());
    return outcome.messages.front();
}

std::string replaced(std::string text, const std::string& from, const std::string& to) {
    const auto at = text.find(from);
    EXPECT_NE(at, std::string::npos);
    return text.replace(at, from.size(), to);
}

TEST(Validation, LayoutOfTheText) {
    const std::string text = make_validation_text(sample());
    EXPECT_EQ(
        text.find("Benchmark Validation File - DO NOT MODIFY! If you do, it will fail validation.\r\n\r\n"
                  "Validation Version:    1.3\r\n\r\nProgram:               velmora v0.1.0 Release\r\n"
                  "Tuning:                x64\r\nUser:                  somebody Constant: "
                  "e\r\n\r\nProcessor(s):\r\n"),
        0u);
    EXPECT_THAT(text,
                HasSubstr("\r\n\r\nConfiguration Dump:\r\n{\r\n    Action : \"CustomCompute\"\r\n}\r\n\r\n"
                          "Total Computation Time:    0.250 seconds\r\n\r\nCPU Utilization:"));
    // An event that reads as the separator is set in.
    EXPECT_THAT(
        text, HasSubstr("\r\n\r\nEvent Log:\r\n         0.000  Start Time\r\n ----\r\n         0.100  End\r\n"
                        "\r\n----\r\n\r\n\r\nChecksum0: "));
    for (std::size_t i = 0; i < text.size(); i++) EXPECT_EQ(text[i] == '\n', i > 0 && text[i - 1] == '\r');
    const ValidationOutcome outcome = validate_text(text);
    EXPECT_TRUE(outcome.passed);
    EXPECT_THAT(outcome.messages, ElementsAre(PASSED));
    EXPECT_EQ(outcome.key_figures.front(), "Computation Time:      0.250 seconds");
    EXPECT_THAT(outcome.key_figures, testing::Contains("Constant:              Pi"));
}

TEST(Validation, ChecksumsFromTheirParts) {
    const std::string text = make_validation_text(sample());
    const std::string body = text.substr(0, text.rfind("----") + 4);
    const std::string salted = std::string("\x4c\x1d\x7e\x92\xa5\x30\x6b\xf8", 8) + body;
    lumo::Sha256::Digest h = lumo::Sha256::digest(salted);
    constexpr std::uint8_t RECORD[16] = {0x01, 0x23, 0x45, 0x67, 0x89, 0xab, 0xcd, 0xef,
                                         0,    0,    0,    0,    0,    0,    0,    42};
    for (int i = 0; i < 16; i++) h[i] ^= RECORD[i];
    const std::string g = lumo::to_hex(lumo::Sha256::digest(
        salted.substr(0, 8) + std::string(reinterpret_cast<const char*>(h.data()), h.size()) + body));
    const std::string second =
        lumo::to_hex(lumo::Sha512::digest(std::string("\x9b\x36\xe0\xf1\x74\xad\x52\xc3", 8) + body));
    EXPECT_EQ(text,
              body + "\r\n\r\n\r\nChecksum0: " + lumo::to_hex(h) + g + "\r\nChecksum1: " + second + "\r\n");
}

TEST(Validation, NoByteOfTheBodyMayChange) {
    const std::string text = make_validation_text(sample());
    const std::size_t end = text.rfind("----") + 4;
    for (std::size_t i = 0; i < end; i++) {
        for (const char change : {'\x01', '\x20', '\x80'}) {
            std::string changed = text;
            changed[i] = static_cast<char>(changed[i] ^ change);
            ASSERT_NE(verdict(changed), PASSED) << i;
        }
        ASSERT_NE(verdict(text.substr(0, i) + text.substr(i + 1)), PASSED) << i;
        ASSERT_NE(verdict(text.substr(0, i) + 'x' + text.substr(i)), PASSED) << i;
    }
    EXPECT_EQ(verdict(replaced(text, "0.250", "0.150")), TAMPERED);
    std::string unix_ends = text;
    std::erase(unix_ends, '\r');
    EXPECT_EQ(verdict(unix_ends), TAMPERED);
}

TEST(Validation, ChecksumsThatAreNone) {
    const std::string text = make_validation_text(sample());
    const std::size_t first = text.find("Checksum0: ") + 11, second = text.find("Checksum1: ") + 11;
    for (const std::size_t start : {first, second}) {
        EXPECT_EQ(verdict(std::string(text).erase(start + 127, 1)), INVALID_HASH);
        EXPECT_EQ(verdict(std::string(text).erase(start + 40, 88)), INVALID_HASH);
        EXPECT_EQ(verdict(std::string(text).insert(start, "00")), INVALID_HASH);
        for (const std::size_t digit : {0, 64, 127}) {
            std::string changed = text;
            changed[start + digit] = 'g';
            EXPECT_EQ(verdict(changed), INVALID_HASH);
            changed[start + digit] = text[start + digit] == '0' ? '1' : '0';
            EXPECT_EQ(verdict(changed), TAMPERED) << digit;
        }
    }
    EXPECT_EQ(verdict(text.substr(0, first - 11)), INVALID_FILE);
    EXPECT_EQ(verdict(text.substr(0, second - 11)), INVALID_FILE);
    EXPECT_EQ(verdict(replaced(text, "\r\n----\r\n", "\r\n---\r\n")), INVALID_FILE);
    EXPECT_EQ(verdict(""), INVALID_FILE);
    EXPECT_EQ(verdict(std::string(1000, '\0')), INVALID_FILE);
    EXPECT_EQ(verdict("Validation Version: 1.3\n----\n----\n"), INVALID_FILE);
}

TEST(Validation, Versions) {
    const std::string text = make_validation_text(sample());
    for (const char* old : {"1.0", "1.1"})
        EXPECT_THAT(validate_text(replaced(text, "1.3", old)).messages,
                    ElementsAre("Validation file versions 1.0 an 1.1 are no longer supported.",
                                "To validate this file, please use velmora v0.5.5."));
    EXPECT_THAT(validate_text("Validation Version:    1.1\n").messages, testing::SizeIs(2));
    for (const char* late : {"1.4", "1.30", "", "2"})
        EXPECT_THAT(validate_text(replaced(text, "1.3", late)).messages,
                    ElementsAre("This validation file version is too new.",
                                "Please use a newer version of velmora."));
    // The earlier version has the first checksum alone.
    std::string body = replaced(text.substr(0, text.rfind("----") + 4), "1.3", "1.2");
    const std::uint64_t record[2] = {1, 2};
    const std::string earlier = body + "\r\n\r\nChecksum:   " + checksum0(body, record) + "\r\n";
    EXPECT_EQ(verdict(earlier), PASSED);
    EXPECT_EQ(verdict(replaced(earlier, "Pi", "pi")), TAMPERED);
}

class ValidatorDialogue : public testing::Test {
 protected:
    ValidatorDialogue() { lumo::Console::settings().colors_enabled = false; }
    static std::string answer(const std::string& path) {
        return lumo::talk(path + "\n", [] { run_validator(); });
    }
    const lumo::TempFolder folder;
};

TEST_F(ValidatorDialogue, PathsWithAndWithoutExtension) {
    const std::string base = folder / "result";
    std::string path;
    EXPECT_EQ(lumo::printed_by([&] { path = save_validation_file(base, make_validation_text(sample())); }),
              "Validation File: " + base + ".txt\n");
    EXPECT_EQ(path, base + ".txt");
    lumo::printed_by([&] { EXPECT_EQ(save_validation_file(base, "other"), base + " (2).txt"); });
    EXPECT_THAT(answer(base), HasSubstr(PASSED));
    EXPECT_THAT(answer(base + ".txt"), HasSubstr(PASSED));
    EXPECT_THAT(answer(base + " (2)"), HasSubstr(INVALID_FILE));
    EXPECT_THAT(answer(base + ".cfg"), HasSubstr("Unable to open file."));
    fs::create_directories(folder / "folder.txt");
    EXPECT_THAT(answer(folder / "folder"), HasSubstr("Unable to open file."));
    folder.write("huge.txt", "");
    fs::resize_file(folder / "huge.txt", 100 << 20);
    EXPECT_THAT(answer(folder / "huge"), HasSubstr(INVALID_FILE));
    try {
        save_validation_file(folder / "missing/x", "text");
        FAIL();
    } catch (const lumo::FileIO::FileException& failure) {
        EXPECT_EQ(failure.path, folder / "missing/x.txt");
        EXPECT_EQ(failure.error_code, ENOENT);
    }
}

TEST(ReferenceClocks, AgreeOrTell) {
    const auto verdict_of = [](std::uint64_t ticks, double wall, double monotonic, double raw) {
        return std::string(
            ReferenceClocks({1000, {5, 5, 5}}, {1000 + ticks, {5 + wall, 5 + monotonic, 5 + raw}}).verdict);
    };
    EXPECT_EQ(verdict_of(1000000000, 1, 1.001, 0.999), "Passed");
    EXPECT_EQ(verdict_of(1000000000, 1, 1.02, 1), "Failed");
    EXPECT_EQ(verdict_of(1000000000, -3600, 1, 1), "Failed");
    EXPECT_EQ(verdict_of(1000, 0.001, 0.001, 0.001), "Unable to Validate");
    EXPECT_EQ(verdict_of(1000, 0.09, 0.09, 0.2), "Unable to Validate");
    EXPECT_THAT(ReferenceClocks({0, {0, 0, 0}}, {2600000000, {1, 1, 1}}).lines()[2],
                "Reference Clock:            2,600,000,000 Hz");
    EXPECT_THAT(ReferenceClocks({0, {0, 0, 0}}, {5, {0, 0, 0}}).lines()[3],
                "Reference Clock 0:          Unknown");
}

TEST(MachineLines, TellsWhatIsMissing) {
    lumo::DetectedHardware machine;
    EXPECT_THAT(machine_lines(machine), testing::Contains("Total Memory:          Unable to Detect"));
    machine.topology.names = {"A processor"};
    machine.memory = {1 << 30, 1 << 20};
    const auto lines = machine_lines(machine);
    EXPECT_EQ(lines[1], "    A processor");
    EXPECT_THAT(lines, testing::IsSupersetOf({"Total Memory:          1,073,741,824 ( 1.00 GiB)",
                                              "Usable Memory:         1,048,576 ( 1.00 MiB)"}));

    const lumo::TempFolder folder;
    lumo::SystemPaths paths;
    paths.sys = folder.path;
    EXPECT_FALSE(corrected_memory_errors(paths));
    for (const char* controller : {"mc0", "mc1"}) {
        folder.write(std::string("devices/system/edac/mc/") + controller + "/ce_count", "3\n");
    }
    EXPECT_EQ(corrected_memory_errors(paths), 6u);
}

}  // namespace
}  // namespace velmora
