#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <thread>

#include "lumo/foundation/errors/exceptions.h"
#include "lumo/foundation/parallel/cppasync.h"
#include "lumo/foundation/parallel/pushpool.h"
#include "lumo/foundation/parallel/serial.h"
#include "lumo/foundation/parallel/spawn.h"
#include "lumo/foundation/parallel/taskqueue.h"

namespace lumo {
namespace {

/// A parallelizer worth testing, by a name that a failing test shows.
struct TestFramework {
    std::string name;
    std::function<std::unique_ptr<BasicParallelizer>()> make;
};

std::vector<TestFramework> test_frameworks() {
    std::vector<TestFramework> list;
    for (upL_t sequential : {upL_t(4), upL_t(64)}) {
        const std::string suffix = "_m" + std::to_string(sequential);
        list.push_back({"spawn" + suffix, [=] { return std::make_unique<SpawnParallelizer>(sequential); }});
        for (bool only : {false, true})
            list.push_back({"cppasync_" + std::to_string(only) + suffix,
                            [=] { return std::make_unique<CppAsyncParallelizer>(only, sequential); }});
        for (upL_t workers = 0; workers < 4; workers++)
            list.push_back({"pushpool_w" + std::to_string(workers) + suffix,
                            [=] { return make_pushpool(workers, /*randomize=*/workers != 3, sequential); }});
    }
    for (upL_t workers = 0; workers < 4; workers++)
        list.push_back(
            {"taskqueue_w" + std::to_string(workers), [=] { return std::make_unique<TaskQueue>(workers); }});
    list.push_back({"none", [] { return std::make_unique<SerialParallelizer>(); }});
    return list;
}

class Dispatch : public testing::TestWithParam<TestFramework> {
 protected:
    std::unique_ptr<BasicParallelizer> parallelizer = GetParam().make();
};

INSTANTIATE_TEST_SUITE_P(Frameworks, Dispatch, testing::ValuesIn(test_frameworks()),
                         [](const auto& param_info) { return param_info.param.name; });

TEST_P(Dispatch, RunsEveryIndexExactlyOnceAndPublishesItsWork) {
    // Plain counters: the end of a dispatch publishes what its tasks wrote.
    for (const upL_t start : {upL_t(1000), ~upL_t(0) - 1000})
        for (upL_t n : {0, 1, 2, 5, 15, 16, 17, 64, 65, 300, 1000}) {
            std::vector<int> runs(n + 2);
            parallel_for(*parallelizer, start, start + n, [&](upL_t i) { runs.at(i - start + 1)++; });
            EXPECT_EQ(runs.front() + runs.back(), 0);
            for (upL_t i = 1; i <= n; i++) ASSERT_EQ(runs[i], 1) << "index " << i - 1 << " of " << n;
        }
    parallel_for(*parallelizer, 6, 5, [](upL_t) { FAIL() << "ran an index of an empty range"; });
    const std::thread::id caller = std::this_thread::get_id();
    parallel_for(*parallelizer, 7, 8, [&](upL_t) { EXPECT_EQ(std::this_thread::get_id(), caller); });
    upL_t a = 0, b = 0;
    parallel_invoke(
        *parallelizer, [&] { a = 1; }, [&] { b = 2; });
    EXPECT_EQ(a + b, 3);
}

/// A tree whose inner nodes dispatch in turn by pairs and by ranges, to leaves of the given depth.
upL_t count_leaves(BasicParallelizer& parallelizer, int depth) {
    if (depth == 0) return 1;
    std::atomic<upL_t> leaves{0};
    if (depth % 2)
        parallel_invoke(
            parallelizer, [&] { leaves += count_leaves(parallelizer, depth - 1); },
            [&] { leaves += count_leaves(parallelizer, depth - 1); });
    else
        parallel_for(parallelizer, 0, 5, [&](upL_t) { leaves += count_leaves(parallelizer, depth - 1); });
    return leaves;
}

TEST_P(Dispatch, NestsToAnyDepth) {
    upL_t expected = 1;
    for (int depth = 0; depth <= 4; depth++) {
        EXPECT_EQ(count_leaves(*parallelizer, depth), expected);
        expected *= depth % 2 ? 5 : 2;
    }
}

TEST_P(Dispatch, ThrowsTheExceptionOfTheLowestIndex) {
    for (upL_t n : {2, 16, 17, 65, 200}) {
        for (upL_t thrower : {upL_t(0), n / 2, n - 1}) {
            std::atomic<upL_t> ended{0};
            try {
                parallel_for(*parallelizer, 0, n, [&](upL_t i) {
                    if (i >= thrower) throw LimitExceededException("test", "too far", thrower, i);
                    ended++;
                });
                FAIL() << "nothing thrown";
            } catch (const LimitExceededException& e) {
                EXPECT_EQ(e.attempted, thrower);
                EXPECT_EQ(ended, thrower);  // all others have ended
            }
        }
    }
}

TEST_P(Dispatch, CarriesExceptionsOfPairs) {
    for (int throwers : {1, 2, 3}) {
        try {
            parallel_invoke(
                *parallelizer,
                [&] {
                    if (throwers & 1) throw ParseException("a", "first");
                },
                [&] {
                    if (throwers & 2) throw std::runtime_error("second");
                });
            FAIL() << "nothing thrown";
        } catch (const ParseException& e) {
            EXPECT_TRUE(throwers & 1);
            EXPECT_EQ(e.message, "first");
        } catch (const std::runtime_error&) {
            EXPECT_EQ(throwers, 2);
        }
    }
}

TEST_P(Dispatch, StaysUsableAfterNestedExceptions) {
    for (int round = 0; round < 5; round++) {
        EXPECT_THROW(parallel_for(*parallelizer, 0, 6,
                                  [&](upL_t i) {
                                      parallel_for(*parallelizer, 0, 6, [&](upL_t j) {
                                          if (i == 4 && j >= 3) throw ArithmeticException("test", "inner");
                                      });
                                  }),
                     ArithmeticException);
        EXPECT_EQ(count_leaves(*parallelizer, 2), 10);
    }
}

TEST_P(Dispatch, ServesSeveralDispatchersAtOnce) {
    std::vector<std::thread> dispatchers;
    std::atomic<upL_t> sum{0};
    for (int t = 0; t < 4; t++)
        dispatchers.emplace_back([&] {
            for (int round = 0; round < 20; round++)
                parallel_for(*parallelizer, 0, 10, [&](upL_t i) { sum += i; });
        });
    for (std::thread& thread : dispatchers) thread.join();
    EXPECT_EQ(sum, 4 * 20 * 45);
}

}  // namespace
}  // namespace lumo
