#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "console_talk.h"
#include "failures.h"
#include "fake_constant.h"
#include "lumo/foundation/config/reader.h"
#include "lumo/foundation/memory/allocators/allocator_registry.h"
#include "plain_console.h"
#include "temp_folder.h"
#include "velmora/shell/session/memory_limit.h"
#include "velmora/shell/session/normal_float_session_b.h"
#include "velmora/shell/session/precision.h"
#include "velmora/shell/session/session_cfg.h"

using namespace velmora;
using testing::HasSubstr;

namespace {

lumo::DetectedHardware machine_with(upL_t total, upL_t usable) {
    lumo::DetectedHardware machine;
    machine.memory = {total, usable};
    machine.numa_nodes.resize(1);
    return machine;
}
const lumo::DetectedHardware MACHINE = machine_with(upL_t(1) << 33, upL_t(1) << 32);

std::unique_ptr<NormalFloatSession> load(const std::string& fields) {
    const auto value = lumo::Config::parse_text("{" + fields + "}");
    return load_session(MACHINE, value->to_object());
}

const std::string CONSTANT = "Constant : {Constant : \"pi\"} ";
const std::string SIZE = "ComputeSize : {DecimalDigits : 500 EnableHexDigits : \"false\"} ";

std::unique_ptr<NormalFloatSession> reloaded(const NormalFloatSession& session) {
    const auto file = lumo::Config::parse_text(session_text(session));
    EXPECT_EQ(file->to_object().get_string("Action"), "CustomCompute");
    return load_session(MACHINE, file->to_object().get_object("CustomCompute"));
}

std::string load_failure(const std::string& fields) {
    return lumo::message_of([&] { load(fields); });
}

}  // namespace

TEST(Precision, DigitsAndWords) {
    EXPECT_EQ(hex_digits_of(1000000000), 830482024u);
    EXPECT_EQ(hex_digits_of(1000000000000050), 830482023721882u);
    EXPECT_EQ(hex_digits_of(0), 0u);
    EXPECT_EQ(precision_words_of(1000000), (830482u >> 4) + 3);
    for (upL_t hex : {100ull, 101ull, 102ull, 103ull, 12345ull, 830482023721840ull, 700000000000001ull})
        EXPECT_EQ(hex_digits_of(decimal_digits_of(hex)), hex);
}

TEST(Session, SizesFollowTheSettings) {
    NormalFloatSessionB session(MACHINE, make_third());
    session.set_decimal_digits(1000);
    EXPECT_EQ(session.hex_digits(), 830u);
    const upL_t small = session.estimate().total_bytes();
    EXPECT_EQ(session.estimate().working_bytes % 128, 0u);
    session.set_hex_digits(830000);
    EXPECT_EQ(session.hex_digits(), 830000u);
    EXPECT_EQ(session.decimal_digits(), 999420u);
    EXPECT_GT(session.estimate().total_bytes(), small);
    session.set_hex_digits(0);
    EXPECT_EQ(session.hex_digits(), 0u);
    EXPECT_EQ(session.decimal_digits(), 999420u);
}

TEST(Session, AChangeOfConstantRepairsTheDigits) {
    const PlainConsole plain;
    NormalFloatSessionB session(MACHINE, make_third());
    session.set_decimal_digits(5000);
    auto smaller = make_third();
    smaller->limit = 2000;
    EXPECT_THAT(lumo::printed_by([&] { session.set_constant(std::move(smaller)); }),
                HasSubstr("Warning: Precision above maximum: Clipping to maximum."));
    EXPECT_EQ(session.decimal_digits(), 2000u);
    EXPECT_THROW(session.set_decimal_digits(2001), lumo::InvalidParametersException);
    EXPECT_EQ(session.decimal_digits(), 2000u);
    EXPECT_EQ(lumo::printed_by([&] { session.set_constant(make_third()); }), "");
}

TEST(Session, TellsWhatItIsAboutToDoAndWhatTheMachineCannot) {
    const PlainConsole plain;
    const auto expect = [](const lumo::DetectedHardware& machine, bool possible, const char* text,
                           bool too_long = false) {
        auto third = make_third();
        third->too_long = too_long;
        const NormalFloatSessionB session(machine, std::move(third));
        bool verdict = false;
        EXPECT_EQ(lumo::printed_by([&] { verdict = session.can_run(false); }), "");
        EXPECT_EQ(verdict, possible);
        const std::string printed = lumo::printed_by([&] { session.can_run(true); });
        EXPECT_THAT(printed, HasSubstr(text));
        EXPECT_THAT(printed, HasSubstr("Constant:              Third\n"));
        EXPECT_THAT(printed, HasSubstr("Decimal Digits:        1,000,000\n"));
        EXPECT_THAT(printed, HasSubstr("Hexadecimal Digits:    830,482\n"));
    };
    expect(MACHINE, true, "Computation Mode:      Ram Only\n");
    expect(machine_with(upL_t(1) << 33, 4096), true,
           "Warning: This computation needs more memory than is free");
    expect(machine_with(65536, 65536), false, "Not enough memory: this computation needs ");
    expect(MACHINE, false, "no algorithm can make", true);

    // A file system that holds no data.
    const auto session = load("Mode : \"ram\" " + CONSTANT + SIZE +
                              "Output : {Path : \"/proc\" DigitWriter : {Framework : \"none\"}}");
    const auto summary = [&] { return lumo::printed_by([&] { EXPECT_TRUE(session->can_run(true)); }); };
    EXPECT_THAT(summary(), testing::Not(HasSubstr("Warning")));
    session->set_output_kind(lumo::OutputKind::text);
    EXPECT_THAT(summary(),
                HasSubstr("Warning: The digit files will take 500 (  500 bytes). The output folder has "
                          "room for 0 (    0 bytes).\n"));
    session->set_hex_enabled(true);
    session->set_compressed_output(0);
    EXPECT_THAT(summary(), HasSubstr("Warning: The digit files will take 408 (  408 bytes)."));
}

TEST(Session, LimitOfAGroupOfProcesses) {
    const lumo::TempFolder folder;
    const lumo::SystemPaths paths{"", folder.path.string()};
    EXPECT_EQ(memory_limit(MACHINE, paths), MACHINE.memory.total);
    folder.write("fs/cgroup/memory.max", "max\n");
    EXPECT_EQ(memory_limit(MACHINE, paths), MACHINE.memory.total);
    folder.write("fs/cgroup/memory.max", "1000000\n");
    EXPECT_EQ(memory_limit(MACHINE, paths), 1000000u);
    EXPECT_EQ(memory_limit(machine_with(0, 0), paths), 1000000u);
    // The earlier kind says so much that no machine has it.
    folder.write("fs/cgroup/memory.max", "");
    folder.write("fs/cgroup/memory/memory.limit_in_bytes", "9223372036854771712\n");
    EXPECT_EQ(memory_limit(MACHINE, paths), MACHINE.memory.total);
}

TEST(SessionCfg, WhatIsWrittenReadsBack) {
    auto pi = make_constant(find_by_key("pi"));
    pi->set_algorithm("ramanujan");
    NormalFloatSessionB session(MACHINE, std::move(pi));
    session.set_decimal_digits(54321);
    session.set_hex_enabled(false);
    session.set_output_path(testing::TempDir());
    session.set_output_verify(false);
    session.set_task_decomposition(7);
    for (const char* framework : {"none", "spawn", "cppasync", "taskqueue", "pushpool"})
        for (const char* allocator : {"malloc", "mmap", "interleave"}) {
            session.set_framework(framework);
            session.set_allocator(lumo::make_buffer_allocator(allocator));
            EXPECT_EQ(session_text(*reloaded(session)), session_text(session));
        }
    const auto loaded = reloaded(session);
    EXPECT_STREQ(loaded->constant().algorithm().token, "ramanujan");
    EXPECT_EQ(loaded->decimal_digits(), 54321u);
    EXPECT_STREQ(loaded->parallelism().framework().name(), "pushpool");
    EXPECT_STREQ(loaded->allocator().name(), "interleave");
    session.set_compressed_output(70);
    EXPECT_EQ(reloaded(session)->digits_per_file(), 70u);
    session.set_output_kind(lumo::OutputKind::none);
    EXPECT_EQ(reloaded(session)->output_kind(), lumo::OutputKind::none);
}

TEST(SessionCfg, AConstantOfAnInteger) {
    auto root = make_constant(find_by_key("sqrt"));
    root->set_argument("9223372036854775783");
    EXPECT_EQ(reloaded(NormalFloatSessionB(MACHINE, std::move(root)))->constant_name(),
              "Sqrt(9223372036854775783)");
    const std::string root_of = "Mode : \"ram\" " + SIZE + "Constant : {Constant : \"sqrt\" ";
    EXPECT_EQ(load_failure(root_of + "}"), "Invalid Key: Argument");
    EXPECT_EQ(load_failure(root_of + "Argument : 49}"), "Argument is a perfect square: 49");
    EXPECT_EQ(load_failure(root_of + "Argument : -3}"), "Argument is invalid: -3");
}

TEST(SessionCfg, AbsentKeysAndUnknownKeys) {
    const auto session = load("Mode : \"ram\" " + CONSTANT + SIZE + "Whatever : {}");
    EXPECT_EQ(session->decimal_digits(), 500u);
    EXPECT_FALSE(session->hex_enabled());
    EXPECT_EQ(session->output_kind(), lumo::OutputKind::none);
    EXPECT_FALSE(session->output_verify());
    EXPECT_STREQ(session->parallelism().framework().name(), "pushpool");
    EXPECT_EQ(load("Mode : \"ram\" " + CONSTANT + SIZE + "Output : {}")->output_kind(),
              lumo::OutputKind::text);
}

TEST(SessionCfg, Refusals) {
    const std::string ram = "Mode : \"ram\" ";
    const auto size = [&](const char* fields) { return ram + CONSTANT + "ComputeSize : {" + fields + "}"; };
    const std::string good = ram + CONSTANT + SIZE;
    const std::pair<std::string, const char*> cases[] = {
        {good, ""},
        {CONSTANT + SIZE, "Invalid Key: Mode"},
        {"Mode : \"swap\" " + CONSTANT + SIZE, "Invalid Mode: swap"},
        {"Mode : 1 " + CONSTANT + SIZE, "Expected String, got Integer."},
        {ram + SIZE, "Invalid Key: Constant"},
        {ram + "Constant : {Constant : \"Pi\"} " + SIZE, "Invalid constant token."},
        {ram + "Constant : {Constant : \"pi\" Algorithm : \"x\"} " + SIZE, "Invalid Key: x"},
        {ram + CONSTANT, "Invalid Key: ComputeSize"},
        {size("DecimalDigits : -1 EnableHexDigits : \"true\""),
         "Computation size must be at least 100 decimal digits."},
        {size("DecimalDigits : 100 EnableHexDigits : \"yes\""), "Expected true or false."},
        {size("DecimalDigits : 100"), "Invalid Key: EnableHexDigits"},
        {good + "OutputVerify : \"1\"", "Expected true or false."},
        {good + "Output : {Path : \"/dev/null\"}", "Path is not writable.\n/dev/null/: Not a directory"},
        {good + "Output : {DigitWriter : {Framework : \"x\"}}", "Invalid Digit Writer: x"},
        {good + "Parallelism : {TaskDecomposition : 0}", "Task decomposition must be between 1 and 65,536."},
        {good + "Allocator : {Allocator : \"x\"}", "Invalid Memory Allocator: x"},
    };
    for (const auto& [fields, message] : cases) EXPECT_EQ(load_failure(fields), message) << fields;
}
