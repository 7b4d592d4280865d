/// A status that expects of every loop to tell of all its sub-tasks.
#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <exception>

#include "lumo/foundation/status/status_node.h"

namespace lumo {

class CountedStatus final : public NullStatusNode {
 public:
    std::unique_ptr<StatusIteration> make_iteration(upL_t total) override {
        return std::make_unique<Loop>(total);
    }

 private:
    struct Loop final : StatusIteration {
        explicit Loop(upL_t sub_tasks) : total(sub_tasks) {}
        ~Loop() override {
            if (std::uncaught_exceptions() == 0) {
                EXPECT_EQ(done, total);
            }
        }
        void complete(upL_t count) override { done += count; }
        std::unique_ptr<StatusNode> make_node() override { return std::make_unique<CountedStatus>(); }
        upL_t get_completed() const override { return done; }

        const upL_t total;
        std::atomic<upL_t> done = 0;
    };
};

}  // namespace lumo
