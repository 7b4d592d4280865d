/// How computations report progress: nothing below the session prints.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "lumo/foundation/types/types.h"

namespace lumo {

struct ColorSegment {
    char color;
    std::string text;
};
/// A line of status text.
using ColorString = std::vector<ColorSegment>;
/// Rows of segments: the rendered form of a tree of nodes.
using StatusTree = std::vector<ColorString>;

/// A loop in which sub-tasks run, perhaps in parallel.
class StatusIteration {
 public:
    virtual ~StatusIteration() = default;
    virtual void complete(upL_t count = 1) = 0;  ///< any thread may call
    virtual upL_t get_completed() const = 0;
};

/// One level of status. Used in strict stack order by one thread; make_node() gives another thread its own.
class StatusNode {
 public:
    virtual ~StatusNode() = default;
    virtual StatusTree get_tree() const = 0;
    virtual std::unique_ptr<StatusNode> make_node() = 0;
    virtual std::unique_ptr<StatusIteration> make_iteration(upL_t total) = 0;
    virtual upL_t get_completed() const = 0;
    virtual void push_node(ColorString text) = 0;
    virtual void pop_frame() = 0;
    virtual void set_status(ColorString text) = 0;
};

/// Reports to nobody: for tests, and for work too small to be told.
class NullStatusNode final : public StatusNode {
 public:
    StatusTree get_tree() const override { return {}; }
    std::unique_ptr<StatusNode> make_node() override { return std::make_unique<NullStatusNode>(); }
    std::unique_ptr<StatusIteration> make_iteration(upL_t) override { return std::make_unique<Iteration>(); }
    upL_t get_completed() const override { return 0; }
    void push_node(ColorString) override {}
    void pop_frame() override {}
    void set_status(ColorString) override {}

 private:
    struct Iteration final : StatusIteration {
        void complete(upL_t) override {}
        upL_t get_completed() const override { return 0; }
    };
};

/// Pushes a level of text for the length of a scope, popped on the way out, also by an exception.
class StatusSection {
 public:
    StatusSection(StatusNode& owner, ColorString text) : node(owner) { node.push_node(std::move(text)); }
    ~StatusSection() { node.pop_frame(); }
    StatusSection(const StatusSection&) = delete;
    StatusSection& operator=(const StatusSection&) = delete;

 private:
    StatusNode& node;
};

}  // namespace lumo
