/// Status of a single-threaded stretch, written straight to the console: " 0M ", " 1M " and their like stand
/// behind each other on one line.
#pragma once

#include <atomic>
#include <chrono>

#include "lumo/foundation/status/linear_line.h"
#include "lumo/foundation/status/status_node.h"

namespace lumo {

/// State of one link of a linear chain. A chain has one end: while a node made by a link lives, the link
/// itself cannot be extended. Of several nodes alive at once below a link only the one made first is heard,
/// since texts of several threads on one line tell nothing.
class LinearLink {
 public:
    /// `heard`: whether texts are written at all.
    LinearLink(LinearLine& output, LinearLink* parent, bool heard);
    ~LinearLink();
    LinearLink(const LinearLink&) = delete;
    LinearLink& operator=(const LinearLink&) = delete;

    void push(const ColorString& text);
    void pop();
    void set(const ColorString& text);
    std::unique_ptr<StatusNode> make_node();
    std::unique_ptr<StatusIteration> make_iteration(upL_t total);
    void write_row(const ColorString& text) const;

 private:
    bool claim_voice();
    upL_t depth() const { return depth_above + levels; }

    LinearLine& line;
    LinearLink* owner;
    const bool speaks;
    const upL_t depth_above;
    std::atomic<upL_t> levels{0};
    std::atomic<upL_t> children{0};
    std::atomic<bool> voice_taken{false};
};

/// The root of a chain.
class LinearConsoleNode final : public StatusNode {
 public:
    explicit LinearConsoleNode(upL_t line_width = 100) : line(line_width), link(line, nullptr, true) {}
    ~LinearConsoleNode() override { line.finish(); }
    /// Refuses: "Polling is not supported.".
    StatusTree get_tree() const override;
    std::unique_ptr<StatusNode> make_node() override { return link.make_node(); }
    std::unique_ptr<StatusIteration> make_iteration(upL_t total) override {
        return link.make_iteration(total);
    }
    upL_t get_completed() const override;
    void push_node(ColorString text) override { link.push(text); }
    void pop_frame() override { link.pop(); }
    void set_status(ColorString text) override { link.set(text); }

 private:
    LinearLine line;
    LinearLink link;
};

/// A further node of a chain.
class LinearNetworkNode final : public StatusNode {
 public:
    LinearNetworkNode(LinearLine& line, LinearLink* parent, bool heard) : link(line, parent, heard) {}
    StatusTree get_tree() const override;
    std::unique_ptr<StatusNode> make_node() override { return link.make_node(); }
    std::unique_ptr<StatusIteration> make_iteration(upL_t total) override {
        return link.make_iteration(total);
    }
    upL_t get_completed() const override;
    void push_node(ColorString text) override { link.push(text); }
    void pop_frame() override { link.pop(); }
    void set_status(ColorString text) override { link.set(text); }

 private:
    LinearLink link;
};

/// A loop under a chain. Writes a row of progress when a twentieth of the steps is done, at most once a
/// second, and once an hour in any case.
class LinearConsoleIteration final : public StatusIteration {
 public:
    LinearConsoleIteration(LinearLine& line, LinearLink* parent, bool heard, upL_t steps);
    void complete(upL_t count = 1) override;
    std::unique_ptr<StatusNode> make_node() override { return link.make_node(); }
    /// Refuses: "Iteration stacking is not supported.".
    std::unique_ptr<StatusIteration> make_iteration(upL_t total) override;
    /// Refuses: "Polling is not supported.".
    upL_t get_completed() const override;
    /// Refuses: "Attempted to extend a linear status chain.".
    void push_node(ColorString text) override;

 private:
    bool row_is_due(upL_t before, upL_t now, double seconds);

    LinearLink link;
    const upL_t total;
    const std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();
    std::atomic<upL_t> done{0};
    std::atomic<double> last_row{0};  ///< seconds from the start
};

}  // namespace lumo
