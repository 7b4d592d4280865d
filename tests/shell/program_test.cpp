#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>

#include "program_runner.h"
#include "temp_folder.h"

using namespace velmora;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
namespace fs = std::filesystem;

namespace {

constexpr const char* PI_100 =
    "3.1415926535897932384626433832795028841971693993751058209749445923078164062862089986280348253421170679";

std::size_t count(const std::string& text, const std::string& part) {
    std::size_t n = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) n++;
    return n;
}

/// What stands behind a label, up to the end of its line.
std::string path_behind(const std::string& text, const std::string& label) {
    const std::size_t start = text.find(label) + label.size();
    return text.substr(start, text.find('\n', start) - start);
}

class Program : public testing::Test {
 protected:
    /// Runs in a folder of its own, without colours and without a change of priority.
    Outcome run(std::vector<std::string> arguments, const std::string& input = "") const {
        arguments.insert(arguments.begin(), {"colors:0", "priority:0"});
        Launch how{std::move(arguments), input};
        how.folder = folder.path.string();
        return launch(how);
    }

    const lumo::TempFolder folder;
};

}  // namespace

TEST_F(Program, HelpAndVersionAnswerAtOnce) {
    for (const auto& words : {std::vector<std::string>{"--help"},
                              {"-h"},
                              {"help"},
                              {"custom", "pi", "--help"},
                              {"bench", "--help"}}) {
        const Outcome outcome = launch({words});
        EXPECT_EQ(outcome.exit_code, 0);
        EXPECT_THAT(outcome.text, HasSubstr("Usage:"));
        EXPECT_THAT(outcome.text, Not(HasSubstr("\x1b")));
        EXPECT_THAT(outcome.text, Not(HasSubstr("Press ENTER")));
    }
    const Outcome version = launch({{"--version"}});
    EXPECT_EQ(version.exit_code, 0);
    EXPECT_THAT(version.text, testing::MatchesRegex("velmora [0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

TEST_F(Program, ComputesPi) {
    const Outcome outcome = run({"custom", "pi", "-dec:1k", "-mode:ram", "-verify:1"});
    EXPECT_EQ(outcome.exit_code, 0) << outcome.text;
    EXPECT_THAT(folder.contents("pi - Dec - chudnovsky.txt"), testing::StartsWith(PI_100));
    EXPECT_EQ(fs::file_size(folder / "pi - Dec - chudnovsky.txt"), 1002u);
    EXPECT_THAT(folder.contents("pi - Hex - chudnovsky.txt"), testing::StartsWith("3.243f6a8885a308d31319"));
    EXPECT_THAT(outcome.text, Not(HasSubstr("\x1b")));
    EXPECT_THAT(outcome.text, Not(HasSubstr("Press ENTER")));
    EXPECT_THAT(outcome.text, HasSubstr("Large Division...  Iterating: "));
    for (const char* phase : {"  Series CommonP2B3: ", "  Large Division: ", "  Large Multiply: "})
        EXPECT_THAT(outcome.text, HasSubstr(phase));
    // Beside the digits, the record of the run.
    EXPECT_EQ(folder.files(), 3);
    const std::string record = path_behind(outcome.text, "Validation File: ");
    EXPECT_THAT(run({"validate"}, record + "\n").text, HasSubstr("Validation Passed!"));
    std::string text = folder.contents(record);
    text.replace(text.find("Constant:              Pi"), 25, "Constant:              e ");
    folder.write("changed.txt", text);
    const Outcome refused = run({"validate"}, "changed\n");
    EXPECT_EQ(refused.exit_code, 0);
    EXPECT_THAT(refused.text,
                HasSubstr("Validation Failed: File is either invalid or has been tampered with."));
}

TEST_F(Program, TheLogarithmOfOneIsZero) {
    EXPECT_EQ(run({"custom", "log:1", "-dec:1k"}).exit_code, 0);
    EXPECT_EQ(folder.contents("log(1) - Dec - machin-primary.txt"), "0." + std::string(1000, '0'));
    EXPECT_EQ(folder.contents("log(1) - Hex - machin-primary.txt"), "0." + std::string(830, '0'));
}

TEST_F(Program, TheEventLogTellsWhatAFormulaIsMadeOf) {
    const std::pair<std::vector<std::string>, std::vector<const char*>> cases[] = {
        {{"log:2"}, {"-2 ArcCoth( 4801 ): Series CommonP2B3", "-2 ArcCoth( 4801 )", "8 ArcCoth( 8749 )"}},
        {{"lemniscate", "-algorithm:agm-pi"}, {"Large Invsqrt", "AGM(1,x)", "Series CommonP2B3"}},
        {{"lemniscate", "-algorithm:gauss"}, {"8 * ArcSinlemn(1/2): Large Division", "4 * ArcSinlemn(7/23)"}},
        {{"lemniscate", "-algorithm:sebah"},
         {"8 * ArcSinlemn(2/3): Large Division", "-4 * ArcSinlemn(7/137)"}},
        {{"gamma"}, {"Series A and B", "Finalizing: Q * (R + S)", "Large Division", "Log(2)"}},
    };
    for (const auto& [constant, phases] : cases) {
        std::vector<std::string> arguments = {"custom"};
        arguments.insert(arguments.end(), constant.begin(), constant.end());
        arguments.insert(arguments.end(), {"-dec:1k", "-hex:0", "-od:0"});
        const std::string text = run(arguments).text;
        const std::size_t log = text.find("Event Log:\n");
        ASSERT_NE(log, std::string::npos) << text;
        for (const std::string phase : phases) EXPECT_THAT(text.substr(log), HasSubstr("  " + phase + ": "));
    }
}

TEST_F(Program, BenchmarksComparePiWithKnownDigits) {
    // The known digits stand beside the program, as they do when it is installed.
    fs::create_directories(folder / "bin");
    fs::copy_file(VELMORA_BINARY, folder / "bin/velmora");
    Launch how{{"colors:0", "priority:0", "bench", "1M", "-od:0", "-o", "records"}};
    how.program = folder / "bin/velmora";
    how.folder = folder.path.string();

    folder.write("bin/Digits/pi.txt", "100\t3421170679\n2000000\t0\n");
    Outcome outcome = launch(how);
    EXPECT_EQ(outcome.exit_code, 0);
    EXPECT_THAT(outcome.text, HasSubstr("\nSpot Check:                 Good through 100\n"
                                        "Benchmark Successful. The digits appear to be OK.\n"));
    EXPECT_LT(count(outcome.text, "Summing: 0 %  ") + 5, count(outcome.text, "Summing: ")) << "blocks go on";
    const std::string record = folder.contents(path_behind(outcome.text, "Validation File: "));
    EXPECT_THAT(record, HasSubstr("\r\nSpot Check:                 Good through 100\r\n"));
    const auto seconds = [&](const std::string& label) { return std::stod(path_behind(record, label)); };
    EXPECT_LT(seconds("Total Computation Time:"), seconds("Start-to-End Wall Time:"));

    fs::remove_all(folder / "records");
    // The known digits are at fault: those computed stay, as a file that is not whole.
    folder.write("bin/Digits/pi.txt", "100\t3421270679\n");
    std::erase(how.arguments, "-od:0");
    outcome = launch(how);
    EXPECT_EQ(outcome.exit_code, 1);
    EXPECT_THAT(outcome.text, HasSubstr("Mismatch at 95\n"));
    EXPECT_EQ(count(outcome.text, "Spot check failed at: 95\n"), 1u);
    const std::string left = "records/pi - Dec - chudnovsky.txt (incomplete)";
    EXPECT_THAT(outcome.text, HasSubstr("\nLeft on disk: " + left + "\n"));
    EXPECT_EQ(fs::file_size(folder / left), 2u + 1048576);
    EXPECT_EQ(std::distance(fs::directory_iterator(folder / "records"), fs::directory_iterator()), 1);
    how.arguments.push_back("-od:0");

    fs::remove_all(folder / "bin/Digits");
    outcome = launch(how);
    EXPECT_EQ(outcome.exit_code, 0);
    EXPECT_THAT(outcome.text, HasSubstr("Unavailable - Digit file not found.\n"));
    EXPECT_THAT(outcome.text, Not(HasSubstr("Benchmark Successful.")));
}

TEST_F(Program, UserErrorsHaveOneMessageAndTouchNothing) {
    const std::pair<std::vector<std::string>, const char*> cases[] = {
        {{"no-such-action"}, "Invalid Parameter: no-such-action\n"},
        {{"custom", "pi", "-td:4"}, "Invalid Parameter: -td\n"},
        {{"bench", "1m"}, "Invalid Parameter: 1m\n"},
        {{"bench", "2.5t"}, "Not enough memory: this computation needs "},
        {{"custom", "pi", "-dec:1k", "colors:0"}, "Invalid Parameter: colors\n"},
        {{"custom", "log:1000000000001"},
         "Argument is too large: 1000000000001\nThe limit is 1,000,000,000,000.\n"},
        {{"custom", "sqrt:9223372036854775808"},
         "Argument is too large: 9223372036854775808\nThe limit is 9,223,372,036,854,775,807.\n"},
        {{"custom", "pi", "-dec:1000t"}, "Not enough memory: this computation needs "},
        {{"custom", "log:2", "-dec:1000t"}, "Not enough memory: this computation needs "},
        {{"custom", "gamma", "-dec:1000t"}, "Not enough memory: this computation needs "},
        {{"config"}, "Please specify a config file.\n"},
        {{"config", "absent"}, "absent.cfg"},
        {{"config", "."}, "Path"},
    };
    for (const auto& [arguments, message] : cases) {
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.exit_code, 1) << message;
        EXPECT_EQ(count(outcome.text, message), 1u) << outcome.text;
        EXPECT_THAT(outcome.text, EndsWith("Press ENTER to continue . . ."));
        EXPECT_EQ(folder.files(), 0) << message;
    }
}

TEST_F(Program, ACheckpointOutranksTheCommandLine) {
    folder.write("velmora Checkpoint File.txt", "anything");
    const Outcome outcome = run({"custom", "pi", "-dec:100"});
    EXPECT_EQ(outcome.exit_code, 1);
    EXPECT_THAT(outcome.text, HasSubstr("An unfinished computation has been found.\n"));
    EXPECT_EQ(folder.files(), 1);
    fs::remove(folder / "velmora Checkpoint File.txt");
    fs::create_symlink("velmora Checkpoint File.txt", folder / "velmora Checkpoint File.txt");
    EXPECT_THAT(run({"about"}).text, HasSubstr("Unable to open file. errno = 40\n"));
}

TEST_F(Program, PausesAsTold) {
    for (const auto& [pause, waits] : {std::pair("pause:-1", true), {"pause:-2", false}, {"pause:1", true}})
        EXPECT_EQ(count(run({pause, "no-such-action"}).text, "Press ENTER"), waits ? 1u : 0u) << pause;
    EXPECT_EQ(count(run({"pause:1", "about"}).text, "Press ENTER"), 1u);
    EXPECT_EQ(count(run({"about", "and", "more"}).text, "Press ENTER"), 0u);
}

TEST_F(Program, ColoursAsTold) {
    ::setenv("NO_COLOR", "1", 1);
    const Outcome plain = launch({{"priority:0", "about"}}), coloured = launch({{"colors:1", "about"}});
    ::unsetenv("NO_COLOR");
    EXPECT_THAT(plain.text, Not(HasSubstr("\x1b")));
    EXPECT_THAT(coloured.text, HasSubstr("\x1b[01;33mvelmora"));
    EXPECT_THAT(launch({{"priority:0", "about"}}).text, HasSubstr("\x1b[01;33mvelmora"));
}

TEST_F(Program, KernelsAsTold) {
    const std::pair<const char*, const char*> cases[] = {
        {"portable", "  ( x64 )\n"},
        {"avx3", "Warning: VELMORA_KERNELS=avx3: there is no such set of kernels. Using "},
    };
    for (const auto& [wish, text] : cases) {
        ::setenv("VELMORA_KERNELS", wish, 1);
        const Outcome outcome = run({"about"});
        ::unsetenv("VELMORA_KERNELS");
        EXPECT_EQ(outcome.exit_code, 0);
        EXPECT_EQ(count(outcome.text, text), 1u) << outcome.text;
        EXPECT_EQ(count(outcome.text, "Warning: VELMORA_KERNELS"), wish == std::string("avx3") ? 1u : 0u);
    }
}

TEST_F(Program, InputThatEndsAtAPrompt) {
    for (const auto& arguments : {std::vector<std::string>{}, {"custom"}}) {
        const Outcome outcome = run(arguments, "99\n-1\nnonsense");
        EXPECT_EQ(outcome.exit_code, 1);
        EXPECT_THAT(outcome.text, HasSubstr("Unexpected end of input at a prompt."));
    }
}

TEST_F(Program, MenusLeadToTheirItems) {
    EXPECT_THAT(run({}, "4\n").text, HasSubstr("velmora computes mathematical constants"));
    EXPECT_THAT(run({}, "3\n2\n").text, HasSubstr("AVX2"));
    EXPECT_THAT(run({}, "3\n3\n").text, HasSubstr("Data Alignment:        128 bytes\n"));
    fs::create_directories(folder / "bin");
    fs::copy_file(VELMORA_BINARY, folder / "bin/velmora");
    Launch how{{"colors:0", "priority:0"}, "3\n4\n"};
    how.program = folder / "bin/velmora";
    EXPECT_THAT(launch(how).text, HasSubstr("Saved: " + (folder / "bin/environment.cfg").string()));
    EXPECT_THAT(launch(how).text, HasSubstr("Loading Environment Configuration...\n"));
    const Outcome outcome = run({}, "1\n3\n1\n3\n150\n4\n0\n");
    EXPECT_EQ(outcome.exit_code, 0) << outcome.text;
    EXPECT_EQ(fs::file_size(folder / "pi - Dec - ramanujan.txt"), 152u);
    EXPECT_FALSE(fs::exists(folder / "pi - Hex - ramanujan.txt"));
}

TEST_F(Program, FindsFormulasOfLogarithms) {
    const Outcome two = run({}, "3\n1\n0\n2\n");
    EXPECT_EQ(two.exit_code, 0) << two.text;
    EXPECT_THAT(two.text, HasSubstr("Log[2] = \n                    18 * ArcCoth[26]\n"));
    EXPECT_EQ(count(two.text, "        Cost = "), 2u);
    EXPECT_THAT(two.text, HasSubstr("Secondary Formula:\nLog[2] = \n"));
    EXPECT_EQ(count(run({}, "3\n1\n0\n1\n").text, "        Cost = 0.0000000\n"), 2u);
    EXPECT_EQ(run({}, "3\n1\n0\n0\n").exit_code, 1);
    EXPECT_THAT(run({}, "3\n1\n0\n0\n").text, HasSubstr("Error: Log(0)"));
    const Outcome all = run({}, "3\n1\n1\n30\n");
    EXPECT_EQ(all.exit_code, 0) << all.text;
    EXPECT_EQ(count(all.text, "\tLog["), 29u);
}

TEST_F(Program, TheMenuAsksForTheIntegerOfARoot) {
    const Outcome outcome = run({"custom"}, "0\n49\n3\n0\n3\n150\n0\n");
    EXPECT_EQ(outcome.exit_code, 0) << outcome.text;
    EXPECT_EQ(count(outcome.text, "Argument is a perfect square: 49"), 1u);
    EXPECT_THAT(outcome.text, HasSubstr("compute sqrt(100*n) instead."));
    EXPECT_EQ(fs::file_size(folder / "sqrt(3) - Dec - newton.txt"), 152u);
}

TEST_F(Program, SettingsSavedInTheMenuRunFromTheFile) {
    EXPECT_EQ(run({"custom"}, "3\n0\n3\n200\n11\npi200\n").exit_code, 1);  // the input ends before a start
    ASSERT_TRUE(fs::exists(folder / "pi200.cfg"));
    for (const char* path : {"pi200", "./pi200.cfg"}) {
        const Outcome outcome = run({"config", path});
        EXPECT_EQ(outcome.exit_code, 0) << outcome.text;
        EXPECT_EQ(fs::file_size(folder / "pi - Dec - chudnovsky.txt"), 202u);
        fs::remove(folder / "pi - Dec - chudnovsky.txt");
    }
}

TEST_F(Program, ConfigurationFilesThatDoNotLoad) {
    const std::pair<const char*, const char*> cases[] = {
        {"{ Action : \"CustomCompute\", }", "Line 1: Don't use commas to separate elements."},
        {"{ Action : \"None\" }", "Invalid Action: None"},
        {"{ Action : \"CustomCompute\" }", "Invalid Key: CustomCompute"},
        {"[]", "Expected Object, got Array."},
    };
    for (const auto& [text, message] : cases) {
        folder.write("x.cfg", text);
        const Outcome outcome = run({"config", "x"});
        EXPECT_EQ(outcome.exit_code, 1);
        EXPECT_EQ(count(outcome.text, message), 1u) << outcome.text;
    }
}

TEST_F(Program, AnInterruptEndsItAndGivesTheColoursBack) {
    Launch how{{"priority:0"}};
    how.interrupt_after_text = SIGINT;
    how.wait_for = "option: ";
    const Outcome outcome = launch(how);
    EXPECT_EQ(outcome.exit_code, 130);
    EXPECT_THAT(outcome.text, EndsWith("\x1b[39;49m\n"));
}

TEST_F(Program, EndsWithoutAReaderOfItsOutput) {
    for (const bool closed : {true, false}) {
        Launch how{{"priority:0", "custom", "pi", "-dec:100"}};
        how.folder = folder.path.string();
        how.close_output = closed;
        how.broken_output = !closed;
        EXPECT_EQ(launch(how).exit_code, 0);
        EXPECT_EQ(folder.contents("pi - Dec - chudnovsky.txt"), PI_100);
        fs::remove(folder / "pi - Dec - chudnovsky.txt");
    }
}

TEST_F(Program, AFullDiskIsTold) {
    if (!fs::exists("/dev/full")) GTEST_SKIP();
    fs::create_symlink("/dev/full", folder / "pi - Dec - chudnovsky.txt (incomplete)");
    const Outcome outcome = run({"custom", "pi", "-dec:1k", "-hex:0"});
    EXPECT_EQ(outcome.exit_code, 1);
    EXPECT_EQ(count(outcome.text, "Error Code: 28\n"), 1u) << outcome.text;
    EXPECT_EQ(count(outcome.text, "Left on disk: pi - Dec - chudnovsky.txt (incomplete)\n"), 1u);
}

TEST_F(Program, AnInterruptTellsWhatItLeaves) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        Launch how{{"priority:0", "colors:0", "custom", "pi", "-dec:1m"}};
        how.folder = folder.path.string();
        how.interrupt_after_text = signal;
        how.wait_for = "Processing Decimal Digits:";
        const Outcome outcome = launch(how);
        EXPECT_EQ(outcome.exit_code, 128 + signal);
        EXPECT_THAT(outcome.text, EndsWith("\nLeft on disk: pi - Hex - chudnovsky.txt (incomplete)\n"));
        EXPECT_TRUE(fs::remove(folder / "pi - Hex - chudnovsky.txt (incomplete)"));
    }
}
