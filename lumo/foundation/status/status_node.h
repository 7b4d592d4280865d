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

class StatusIteration;

/// A place in the status of a run. Used in strict stack order by one thread; make_node() gives another thread
/// its own, to be destroyed before the node that made it; until then the maker adds no levels. A use that a
/// class does not support throws InvalidParametersException.
class StatusNode {
 public:
    virtual ~StatusNode() = default;
    virtual StatusTree get_tree() const = 0;
    /// A child node, for one thread.
    virtual std::unique_ptr<StatusNode> make_node() = 0;
    /// The status of a loop of `total` sub-tasks, which may run in parallel.
    virtual std::unique_ptr<StatusIteration> make_iteration(upL_t total) = 0;
    /// Number of finished sub-tasks of the loops below this node.
    virtual upL_t get_completed() const = 0;
    /// Adds a level of text behind those that stand.
    virtual void push_node(ColorString text) = 0;
    /// Takes away the level added last.
    virtual void pop_frame() = 0;
    /// Replaces the text of the level added last, or of the node when no level stands.
    virtual void set_status(ColorString text) = 0;
};

/// A loop in which sub-tasks run, perhaps in parallel. make_node() gives a sub-task its own node; any thread
/// may call it and complete(). The operations of a chain of text throw "Not Implemented" unless a class
/// has a use for them.
class StatusIteration : public StatusNode {
 public:
    virtual void complete(upL_t count = 1) = 0;
    StatusTree get_tree() const override;
    std::unique_ptr<StatusIteration> make_iteration(upL_t total) override;
    void push_node(ColorString text) override;
    void pop_frame() override;
    void set_status(ColorString text) override;
};

/// Reports to nobody: for tests, and for work too small to be told.
class NullStatusNode : public StatusNode {
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
        std::unique_ptr<StatusNode> make_node() override { return std::make_unique<NullStatusNode>(); }
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
