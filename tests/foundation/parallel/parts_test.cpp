#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sched.h>

#include <chrono>
#include <thread>

#include "console_talk.h"
#include "death_output.h"
#include "failures.h"
#include "lumo/foundation/errors/exceptions.h"
#include "lumo/foundation/parallel/cpu_set.h"
#include "lumo/foundation/parallel/dispatch/fan_out.h"
#include "lumo/foundation/parallel/dispatch/parallel_task.h"
#include "lumo/foundation/parallel/pushpool.h"
#include "lumo/foundation/parallel/taskqueue.h"
#include "lumo/foundation/parallel/thread_priority.h"

namespace lumo {
namespace {

TEST(FanOut, CutsIntoBlocksThatCover) {
    EXPECT_EQ(FanOutShape(5, 4).length, 2);
    for (upL_t limit : {4, 64, 1000})
        for (upL_t n = limit + 1; n < limit + 3000; n += 7) {
            const FanOutShape shape(n, limit);
            EXPECT_TRUE(shape.blocks <= limit && shape.blocks * shape.length >= n && shape.length < n) << n;
        }
}

TEST(ExceptionHolder, KeepsTheFirstAndStaysSilentWhileUnwinding) {
    struct Rethrower {
        ExceptionHolder& holder;
        ~Rethrower() { holder.rethrow(); }
    };
    ExceptionHolder holder;
    holder.run_guarded([] { throw ParseException("", "first"); });
    holder.run_guarded([] { throw StdException("second"); });
    EXPECT_THROW(
        {
            Rethrower rethrower{holder};
            throw ArithmeticException("", "outer");
        },
        ArithmeticException);
    EXPECT_THROW(holder.rethrow(), ParseException);
    EXPECT_DEATH(dying([] { ExceptionHolder unseen; }), "Exceptions not handled!");
}

TEST(Event, WaitsUntilSignaled) {
    Event event;
    const auto before = std::chrono::steady_clock::now();
    EXPECT_FALSE(event.wait(20));
    EXPECT_GE(std::chrono::steady_clock::now() - before, std::chrono::milliseconds(20));
    std::thread signaler([&] { event.signal(); });
    EXPECT_TRUE(event.wait(~std::uint64_t(0)));
    event.wait();
    signaler.join();
}

TEST(PushPool, GrowsOnlyWithoutALimit) {
    std::atomic<int> inside{0};
    const auto meet = [&](upL_t) {  // ends only when four threads are in it
        inside++;
        while (inside < 4) std::this_thread::yield();
    };
    PushPoolParallelizer unlimited(1, true, 64);  // starts empty
    EXPECT_EQ(unlimited.workers().worker_count(), 0);
    parallel_for(unlimited, 0, 4, meet);
    EXPECT_EQ(unlimited.workers().worker_count(), 3);

    PushPoolParallelizer limited(3, true, 64);
    std::atomic<int> runs{0};
    for (int round = 0; round < 20; round++)
        parallel_for(limited, 0, 30, [&](upL_t) { parallel_for(limited, 0, 3, [&](upL_t) { runs++; }); });
    EXPECT_EQ(runs, 20 * 90);
    EXPECT_EQ(limited.workers().worker_count(), 2);
}

TEST(PushPool, StartsItsWorkersAndRunsWhatWasPushedBeforeItEnds) {
    std::atomic<upL_t> sum{0};
    auto add = [&](upL_t i) { sum += i; };
    LambdaAction<decltype(add)&> action(add);
    { PushPool pool(9, false, add); }
    EXPECT_EQ(sum, 36);  // each worker's number once
    for (int round = 0; round < 200; round++) EXPECT_TRUE(PushPool(2).try_push(action, 3));
    EXPECT_EQ(sum, 36 + 600);
}

struct Background final : BasicAction {
    explicit Background(std::atomic<int>& count) : runs(count) {}
    ~Background() override { runs += 100; }
    void run(upL_t) override { runs++; }
    std::atomic<int>& runs;
};

TEST(TaskQueue, RunsAndFreesBackgroundWork) {
    std::atomic<int> runs{0};
    {
        TaskQueue queue(2);
        for (int i = 0; i < 50; i++) queue.push_back(std::make_unique<Background>(runs));
        parallel_for(queue, 0, 50, [](upL_t) {});
        EXPECT_LE(queue.thread_count(), 2);
    }
    EXPECT_EQ(runs, 50 * 101);
}

TEST(TaskQueue, StartsThreadsForWorkAndRefusesItOnceClosed) {
    TaskQueue queue(0);
    const auto dispatch = [&](upL_t n) { parallel_for(queue, 0, n, [](upL_t) {}); };
    dispatch(1);
    EXPECT_EQ(queue.thread_count(), 0);
    dispatch(4);
    EXPECT_EQ(queue.thread_count(), 3);
    std::atomic<int> runs{0};
    queue.close();
    const std::string closed = "InvalidParametersException TaskQueue::push_back(): Queue is closed.";
    EXPECT_EQ(failure_of([&] { queue.push_back(std::make_unique<Background>(runs)); }), closed);
    EXPECT_EQ(failure_of([&] { dispatch(3); }), closed);
    EXPECT_EQ(failure_of([&] {
                  parallel_invoke(
                      queue, [] {}, [] {});
              }),
              closed);
}

TEST(CpuSet, KeepsAndPrintsCores) {
    const CpuSet set({8, 0, 1, 2, 130, 3});
    EXPECT_EQ(set.to_string(), "0-3,8,130");
    EXPECT_TRUE(set.contains(130));
    for (upL_t core : {4, 100000}) EXPECT_FALSE(set.contains(core));
    EXPECT_EQ(set.cores().size(), 6);
    EXPECT_EQ(CpuSet().to_string(), "");
}

TEST(CpuSet, PinsTheCallingThread) {
    std::thread([] {
        cpu_set_t mask;
        ASSERT_EQ(sched_getaffinity(0, sizeof(mask), &mask), 0);
        upL_t core = 0;
        while (!CPU_ISSET(core, &mask)) core++;
        EXPECT_TRUE(CpuSet({core}).pin_thread());
        ASSERT_EQ(sched_getaffinity(0, sizeof(mask), &mask), 0);
        EXPECT_EQ(CPU_COUNT(&mask), 1);
        EXPECT_EQ(printed_by([] { set_thread_affinity(CpuSet()); }), "");
        EXPECT_THAT(printed_by([] { set_thread_affinity(CpuSet({upL_t(100000)})); }),
                    testing::HasSubstr("Failed to set thread affinity: 100000"));
    }).join();
}

TEST(ThreadPriority, IsSetOrWarnedOfOnce) {
    const auto set_in_a_thread = [](int priority) {
        sched_param set{};
        std::string text;
        int policy = -1;
        std::thread([&] {
            text = printed_by([&] { set_thread_priority(priority); });
            policy = sched_getscheduler(0);
            sched_getparam(0, &set);
        }).join();
        return std::tuple(policy, set.sched_priority, text);
    };
    using testing::HasSubstr;
    const int usual = sched_getscheduler(0);
    EXPECT_EQ(set_in_a_thread(0), std::tuple(usual, 0, std::string()));
    const auto [policy, lowest, text] = set_in_a_thread(-1);
    if (policy == usual) {
        EXPECT_THAT(text, testing::AllOf(HasSubstr("set thread priority"),
                                         HasSubstr("Further messages for this warning will be suppressed.")));
        EXPECT_EQ(set_in_a_thread(1), std::tuple(usual, 0, std::string()));
    } else {
        EXPECT_EQ(std::tuple(policy, lowest, text),
                  std::tuple(SCHED_RR, sched_get_priority_min(SCHED_RR), std::string()));
        EXPECT_EQ(set_in_a_thread(1), std::tuple(SCHED_RR, sched_get_priority_max(SCHED_RR), std::string()));
    }
}

}  // namespace
}  // namespace lumo
