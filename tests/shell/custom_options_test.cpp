#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "death_output.h"
#include "lumo/foundation/errors/exceptions.h"
#include "plain_console.h"
#include "velmora/shell/entry/custom_action.h"

using namespace velmora;

namespace {

const lumo::DetectedHardware MACHINE = lumo::detect_hardware();

std::unique_ptr<NormalFloatSession> parse(std::vector<std::string> options) {
    std::vector<std::string> arguments = {"velmora", "custom", "pi"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    ArgumentList list(std::move(arguments));
    list.advance();
    return parse_custom(MACHINE, list);
}

/// The message with which the options are refused; empty if they are not.
std::string refusal(std::vector<std::string> options) {
    try {
        parse(std::move(options));
    } catch (const lumo::StringException& failure) {
        EXPECT_EQ(failure.function, "");
        return failure.message;
    } catch (const std::exception& failure) {
        return failure.what();
    }
    return "";
}

}  // namespace

TEST(CustomOptions, Defaults) {
    const auto session = parse({});
    EXPECT_EQ(session->constant_name(), "Pi");
    EXPECT_STREQ(session->constant().algorithm().token, "chudnovsky");
    EXPECT_EQ(session->decimal_digits(), 1000000u);
    EXPECT_TRUE(session->hex_enabled());
    EXPECT_EQ(session->output_kind(), lumo::OutputKind::text);
    EXPECT_EQ(session->output_path(), "");
    EXPECT_TRUE(session->output_verify());
}

TEST(CustomOptions, EachReachesTheSession) {
    const auto session =
        parse({"-mode:ram", "-algorithm:ramanujan-reduced", "-dec:2k", "-o", "/tmp", "-od:0", "-verify:0",
               "-PF:taskqueue", "-TD:24", "-MA:malloc", "-hex:0", "-dec:12345"});
    EXPECT_STREQ(session->constant().algorithm().token, "ramanujan-reduced");
    EXPECT_EQ(session->decimal_digits(), 12345u);
    EXPECT_EQ(session->hex_digits(), 0u);
    EXPECT_EQ(session->output_path(), "/tmp/");
    EXPECT_EQ(session->output_kind(), lumo::OutputKind::none);
    EXPECT_FALSE(session->output_verify());
    EXPECT_STREQ(session->parallelism().framework().name(), "taskqueue");
    EXPECT_EQ(session->parallelism().task_decomposition(), 24u);
    EXPECT_STREQ(session->allocator().name(), "malloc");
}

TEST(CustomOptions, Refusals) {
    EXPECT_EQ(refusal({"-dec:99"}), "Computation size must be at least 100 decimal digits.");
    EXPECT_EQ(refusal({"-dec:1G"}), "Computation size must be at least 100 decimal digits.");
    EXPECT_EQ(refusal({"-dec:100"}), "");
    EXPECT_EQ(refusal({"-hex:99"}), "Computation size must be at least 100 decimal digits.");
    EXPECT_EQ(refusal({"-dec:2000t"}),
              "Computation size cannot be larger than 1,000,000,000,000,050 decimal digits.");
    EXPECT_EQ(refusal({"-hex:1000t"}),
              "Computation size cannot be larger than 1,000,000,000,000,050 decimal digits.");
    EXPECT_EQ(refusal({"-hex:18446744073709551615"}),
              "Computation size cannot be larger than 1,000,000,000,000,050 decimal digits.");
    EXPECT_EQ(refusal({"-TD:0"}), "Task decomposition must be between 1 and 65,536.");
    EXPECT_EQ(refusal({"-TD:65537"}), "Task decomposition must be between 1 and 65,536.");
    EXPECT_EQ(refusal({"-TD:65536", "-dec:100"}), "");
    EXPECT_EQ(refusal({"-PF:fibers"}), "Invalid Parallel Framework: fibers");
    EXPECT_EQ(refusal({"-MA:"}), "Invalid Memory Allocator: ");
    EXPECT_EQ(refusal({"-algorithm:machin"}), "Invalid Key: machin");
    EXPECT_EQ(refusal({"-mode:swap"}), "Invalid Command: -mode:swap");
    EXPECT_EQ(refusal({"-mode"}), "Invalid Command: -mode");
    EXPECT_EQ(refusal({"-M:1.5G"}), "Option -M is not supported for this mode.");
    EXPECT_EQ(refusal({"-minIO:4096"}), "Option -minIO is not supported for this mode.");
    EXPECT_EQ(refusal({"-swap:raid0", "/tmp"}), "Option -swap is not supported for this mode.");
    EXPECT_EQ(refusal({"-o"}), "Expected more parameters.");
    EXPECT_EQ(refusal({"-o", "/proc/self/exe"}), "Path is not writable.");
    EXPECT_EQ(refusal({"-o", "/dev/null/x"}), "Path is not writable.");
}

TEST(CustomOptions, ConstantsThatCannotBeComputed) {
    for (const std::string name : {"custom:file.cfg", "Pi", "pi:3", "e:1", ""}) {
        ArgumentList list({"velmora", name});
        try {
            parse_custom(MACHINE, list);
            ADD_FAILURE() << name;
        } catch (const lumo::InvalidParametersException& failure) {
            EXPECT_THAT(failure.message, testing::StartsWith("Invalid Constant: " + name.substr(0, 2)));
        }
    }
}

TEST(CustomOptions, ConstantsOfAnInteger) {
    ArgumentList list({"velmora", "sqrt:10", "-dec:200"});
    EXPECT_EQ(parse_custom(MACHINE, list)->constant_name(), "Sqrt(10)");
    for (const std::string value : {"", ":", ":0", ":x"}) {
        ArgumentList refused({"velmora", "sqrt" + value});
        EXPECT_THROW(parse_custom(MACHINE, refused), lumo::InvalidParametersException) << value;
    }
}

TEST(CustomOptionsDeathTest, UnknownOptionsEndTheProgram) {
    const PlainConsole plain;
    for (const std::string option : {"-C:1m", "-compress:-1", "-td:4", "colors:0"}) {
        const std::string key = option.substr(0, option.find(':'));
        EXPECT_EXIT(lumo::dying([&] { parse({option}); }), testing::ExitedWithCode(1),
                    "Invalid Parameter: " + key + "\n");
    }
}
