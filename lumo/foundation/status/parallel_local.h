/// Nodes of a tree that a drawing thread polls. Threads update them by short swaps under a spin lock and
/// never touch the terminal. A node must be destroyed before the one that made it.
#pragma once

#include "lumo/foundation/status/polled_part.h"
#include "lumo/foundation/status/status_node.h"

namespace lumo {

class ParallelLocalNode final : public StatusNode {
 public:
    explicit ParallelLocalNode(PolledPart* parent = nullptr);
    /// No rows while nothing below has a text.
    StatusTree get_tree() const override { return part.rows(); }
    std::unique_ptr<StatusNode> make_node() override;
    std::unique_ptr<StatusIteration> make_iteration(upL_t total) override;
    upL_t get_completed() const override { return part.completed(); }
    void push_node(ColorString text) override { part.push(std::move(text)); }
    void pop_frame() override { part.pop(); }
    void set_status(ColorString text) override { part.set(std::move(text)); }

 private:
    PolledPart part;
};

/// Shows "done / total", the percentage and the elapsed time, and behind them the sub-tasks' texts.
class ParallelLocalIteration final : public StatusIteration {
 public:
    explicit ParallelLocalIteration(upL_t total, PolledPart* parent = nullptr);
    void complete(upL_t count = 1) override { part.complete(count); }
    StatusTree get_tree() const override { return part.rows(); }
    std::unique_ptr<StatusNode> make_node() override;
    std::unique_ptr<StatusIteration> make_iteration(upL_t total) override;
    upL_t get_completed() const override { return part.completed(); }
    void push_node(ColorString text) override { part.push(std::move(text)); }
    void pop_frame() override { part.pop(); }
    void set_status(ColorString text) override { part.set(std::move(text)); }

 private:
    PolledPart part;
};

}  // namespace lumo
