/// Every parallelizer worth testing, by a name that a failing test shows.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "lumo/foundation/parallel/cppasync.h"
#include "lumo/foundation/parallel/pushpool.h"
#include "lumo/foundation/parallel/spawn.h"
#include "lumo/foundation/parallel/taskqueue.h"

namespace lumo {

struct TestFramework {
    std::string name;
    std::function<std::unique_ptr<BasicParallelizer>()> make;
};

inline std::vector<TestFramework> test_frameworks() {
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
    return list;
}

/// Hands out the serial parallelizer under an owner.
class OwnedSerial final : public BasicParallelizer {
 public:
    using BasicParallelizer::run_in_parallel;
    void run_in_parallel(BasicAction& a, BasicAction& b) override {
        serial_parallelizer().run_in_parallel(a, b);
    }
    void run_in_parallel(BasicAction& action, upL_t start, upL_t end) override {
        serial_parallelizer().run_in_parallel(action, start, end);
    }
};

}  // namespace lumo
