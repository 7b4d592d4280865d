#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "failures.h"
#include "velmora/shell/actions/custom_action.h"

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

std::string refusal(std::vector<std::string> options) {
    return lumo::message_of([&] { parse(std::move(options)); });
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

TEST(CustomOptions, CompressedOutput) {
    EXPECT_EQ(parse({"-C:1m"})->digits_per_file(), 1000000u);
    for (const char* option : {"-C:-1", "-compress:-1"}) {
        const auto session = parse({option});
        EXPECT_EQ(session->output_kind(), lumo::OutputKind::lmd);
        EXPECT_EQ(session->digits_per_file(), 0u);
    }
    EXPECT_EQ(parse({"-C:-1", "-C:0"})->output_kind(), lumo::OutputKind::text);
    EXPECT_EQ(refusal({"-C:49"}), "Invalid Digits per File");
}

TEST(CustomOptions, Refusals) {
    const std::string too_small = "Computation size must be at least 100 decimal digits.";
    const std::string too_large =
        "Computation size cannot be larger than 1,000,000,000,000,050 decimal digits.";
    const std::string tasks = "Task decomposition must be between 1 and 65,536.";
    const std::pair<const char*, std::string> cases[] = {
        {"-dec:99", too_small},
        {"-dec:1G", too_small},
        {"-dec:100", ""},
        {"-dec:2000t", too_large},
        {"-hex:99", too_small},
        {"-hex:1000t", too_large},
        {"-hex:18446744073709551615", too_large},
        {"-TD:0", tasks},
        {"-TD:65537", tasks},
        {"-PF:fibers", "Invalid Parallel Framework: fibers"},
        {"-MA:", "Invalid Memory Allocator: "},
        {"-algorithm:machin", "Invalid Key: machin"},
        {"-mode:swap", "Invalid Command: -mode:swap"},
        {"-mode", "Invalid Command: -mode"},
        {"-M:1.5G", "Option -M is not supported for this mode."},
        {"-minIO:4096", "Option -minIO is not supported for this mode."},
        {"-swap:raid0", "Option -swap is not supported for this mode."},
        {"-o", "Expected more parameters."},
    };
    for (const auto& [option, message] : cases) EXPECT_EQ(refusal({option}), message) << option;
    const std::string long_name(300, 'x');
    const std::pair<std::string, const char*> paths[] = {{"/dev/null/x", "Not a directory"},
                                                         {"/proc/self/exe", "Not a directory"},
                                                         {"/tmp/" + long_name, "File name too long"}};
    for (const auto& [path, reason] : paths)
        EXPECT_EQ(refusal({"-o", path}), "Path is not writable.\n" + path + "/: " + reason);
    for (const std::string name : {"Pi", "pi:3", "e:1", ""}) {
        ArgumentList list({"velmora", name});
        EXPECT_EQ(lumo::message_of([&] { parse_custom(MACHINE, list); }), "Invalid Constant: " + name);
    }
}

TEST(CustomOptions, ConstantsOfAnInteger) {
    const auto name_of = [](const std::string& constant) {
        ArgumentList list({"velmora", constant, "-dec:200"});
        return parse_custom(MACHINE, list)->constant_name();
    };
    EXPECT_EQ(name_of("sqrt:10"), "Sqrt(10)");
    for (const char* constant : {"sqrt", "sqrt:", "sqrt:0", "sqrt:x"})
        EXPECT_THROW(name_of(constant), lumo::InvalidParametersException) << constant;
}
