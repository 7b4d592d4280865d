#include <gtest/gtest.h>

#include <vector>

#include "death_output.h"
#include "lumo/foundation/parallel/basic_parallelizer.h"

namespace lumo {
namespace {

/// Records which threads each task was given.
struct Recorder final : BasicRangeAction {
    struct Call {
        upL_t task_start, task_end, thread_start, thread_end;
        enum Kind { RUN, TASK, RANGE } kind;
    };
    std::vector<Call> calls;
    void run(upL_t a, upL_t b, upL_t thread) override {
        calls.push_back({a, b, thread, thread + 1, Call::RUN});
    }
    void run_task(upL_t task, upL_t a, upL_t b) override {
        calls.push_back({task, task + 1, a, b, Call::TASK});
    }
    void run_range(upL_t a, upL_t b, upL_t c, upL_t d) override {
        calls.push_back({a, b, c, d, Call::RANGE});
    }
};

Recorder share(upL_t tasks, upL_t threads, upL_t group) {
    Recorder recorder;
    serial_parallelizer().run_in_parallel(recorder, 100, 100 + tasks, 50, 50 + threads, group);
    return recorder;
}

TEST(RangeAction, GivesEveryTaskOneGroupOfThreads) {
    for (upL_t threads = 1; threads <= 20; threads++)
        for (upL_t tasks = 1; tasks <= 45; tasks++)
            for (upL_t group = 1; group <= threads; group++) {
                SCOPED_TRACE(testing::Message() << tasks << " tasks, " << threads << " threads by " << group);
                upL_t task = 100, thread = 50, most = 0, least = ~upL_t(0);
                for (const auto& call : share(tasks, threads, group).calls) {
                    ASSERT_EQ(call.task_start, task);
                    ASSERT_EQ(call.thread_start, thread);
                    ASSERT_GT(call.task_end, task);
                    const upL_t width = call.thread_end - thread;
                    ASSERT_GE(width, group);
                    most = std::max(most, width);
                    least = std::min(least, width);
                    if (call.kind == Recorder::Call::RANGE) {
                        ASSERT_GT(width, 1);
                    }
                    task = call.task_end;
                    thread = call.thread_end;
                }
                ASSERT_EQ(task, 100 + tasks);
                ASSERT_EQ(thread, 50 + threads);
                ASSERT_LE(most - least, 1);
            }
}

TEST(RangeAction, ChoosesTheOperationByTheShares) {
    EXPECT_TRUE(share(0, 4, 1).calls.empty());
    EXPECT_EQ(share(1, 4, 4).calls.at(0).kind, Recorder::Call::TASK);
    EXPECT_EQ(share(3, 1, 1).calls.at(0).kind, Recorder::Call::RUN);
    EXPECT_EQ(share(3, 4, 3).calls.at(0).kind, Recorder::Call::RANGE);
    // Tasks in proportion to threads: 7 threads in groups of 3 and 4, 14 tasks.
    const Recorder proportional = share(14, 7, 3);
    ASSERT_EQ(proportional.calls.size(), 2);
    EXPECT_EQ(proportional.calls[0].thread_end - proportional.calls[0].thread_start, 4);
    EXPECT_EQ(proportional.calls[0].task_end - proportional.calls[0].task_start, 8);
}

TEST(RangeActionDeathTest, RefusesGroupsLargerThanTheThreads) {
    EXPECT_DEATH(dying([] { share(2, 3, 4); }), "Invalid Function Parameters");
}

}  // namespace
}  // namespace lumo
