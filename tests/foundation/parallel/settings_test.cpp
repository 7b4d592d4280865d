#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "console_talk.h"
#include "failures.h"
#include "lumo/foundation/config/reader.h"
#include "lumo/foundation/parallel/settings/framework_registry.h"
#include "lumo/foundation/parallel/settings/parallelism.h"

namespace lumo {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

std::vector<std::string> keys(const Config::Object& object) {
    std::vector<std::string> list;
    for (const auto& entry : object.entries()) list.push_back(entry.key);
    return list;
}

Parallelism load(const char* text) {
    return Parallelism::from_cfg(Config::parse_text(text)->to_object());
}

TEST(FrameworkRegistry, EachFrameworkRuns) {
    for (const char* name : {"none", "spawn", "cppasync", "taskqueue", "pushpool"}) {
        const auto framework = make_parallel_framework(name);
        EXPECT_STREQ(framework->name(), name);
        std::atomic<int> runs{0};
        parallel_for(*framework->clone()->make_parallelizer(), 0, 20, [&](upL_t) { runs++; });
        EXPECT_EQ(runs, 20) << name;
    }
    EXPECT_EQ(message_of([] { make_parallel_framework("Pushpool"); }),
              "Invalid Parallel Framework: Pushpool");
}

TEST(Parallelism, DefaultsFollowTheCores) {
    EXPECT_EQ(Parallelism(8).task_decomposition(), 8);
    EXPECT_EQ(Parallelism(12).task_decomposition(), 24);
    EXPECT_EQ(Parallelism(40000).task_decomposition(), 65536);
    const Parallelism parallelism(12);
    EXPECT_EQ(parallelism.summary_string(), "Push Pool  ->  12 / 24  (randomization on)");
    const auto async = make_parallel_framework("cppasync");
    EXPECT_EQ(async->summary_string(4), "C++ std::async()  ->  4 / ?  (async only)");
    EXPECT_THAT(printed_by([&] { async->print_summary(4, 9); }), HasSubstr("4 / 9"));
}

TEST(Parallelism, ReadsAndCorrectsValues) {
    const Parallelism given = load(
        "{ TaskDecomposition : 100 Framework : \"pushpool\" WorkerThreads : 99999999"
        " Randomization : \"false\" MaxSequentialDispatch : -3 Unknown : 1 }");
    EXPECT_EQ(given.task_decomposition(), 100);
    const FrameworkValues& pool = given.framework().values;
    EXPECT_EQ(pool.worker_threads, 65536);
    EXPECT_FALSE(pool.randomization);
    EXPECT_EQ(pool.max_sequential_dispatch, 4);

    Config::Object saved;
    given.to_cfg(saved);
    EXPECT_THAT(keys(saved), ElementsAre("TaskDecomposition", "Framework", "WorkerThreads", "Randomization",
                                         "MaxSequentialDispatch"));
    const Parallelism async = load("{ Framework : \"cppasync\" MaxSequentialDispatch : 12345 }");
    Config::Object shown;
    async.to_display_cfg(shown);
    EXPECT_THAT(keys(shown),
                ElementsAre("TaskDecomposition", "Framework", "AsyncOnly", "MaxSequentialDispatch"));
    EXPECT_EQ(shown.get_object("MaxSequentialDispatch").get_integer("Value"), 12345);
    EXPECT_EQ(shown.get_object("MaxSequentialDispatch").get_string("DisplayText"), "12,345");
}

TEST(Parallelism, RefusesInvalidValues) {
    const char* const range = "Task decomposition must be between 1 and 65,536.";
    const std::pair<const char*, const char*> cases[] = {
        {"{ TaskDecomposition : 0 }", range},
        {"{ TaskDecomposition : 65537 }", range},
        {"{ TaskDecomposition : -1 }", range},
        {"{ Framework : \"x\" }", "Invalid Parallel Framework: x"},
        {"{ WorkerThreads : -1 }", "The number of worker threads cannot be negative."},
        {"{ Framework : \"cppasync\" AsyncOnly : \"yes\" }", "Expected true or false."},
        {"{ Framework : 3 }", "Expected String, got Integer."},
    };
    for (const auto& [text, message] : cases) EXPECT_EQ(message_of([&] { load(text); }), message) << text;
}

TEST(ParallelMenus, AskUntilTheAnswerIsInRange) {
    const auto pool = make_parallel_framework("pushpool");
    EXPECT_THAT(talk("2\n", [&] { pool->menu_action(2); }), HasSubstr("exponential fan-out"));
    EXPECT_EQ(pool->values.max_sequential_dispatch, 4);
    Parallelism parallelism(2);
    EXPECT_THAT(talk("0\n65537\n7\n", [&] { parallelism.ask_task_decomposition(); }),
                HasSubstr("Please choose a number between 1 and 65,536."));
    EXPECT_EQ(parallelism.task_decomposition(), 7);
}

}  // namespace
}  // namespace lumo
