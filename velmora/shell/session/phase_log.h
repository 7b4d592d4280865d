#pragma once

#include <vector>

#include "lumo/foundation/status/status_node.h"
#include "velmora/shell/session/event_log.h"

namespace velmora {

/// Passes the status of a computation on and notes in the event log how long each of its phases took. A phase
/// is a level at the bottom; a title, which only announces others, is none. Below a phase that is a part of a
/// formula, as a term of a sum is, the steps it is made of are told as well: "18 ArcCoth( 26 ): Large
/// Division: 0.412 seconds".
///
/// How texts tell what they are: those of steps hold dots ("Large Division...  ") and are told up to them;
/// behind those of all phases a blank keeps what follows apart, behind a title nothing follows.
class PhaseLog final : public lumo::StatusNode {
 public:
    PhaseLog(lumo::StatusNode& display, EventLog& log) : inner(display), events(log) {}

    lumo::StatusTree get_tree() const override { return inner.get_tree(); }
    std::unique_ptr<lumo::StatusNode> make_node() override { return inner.make_node(); }
    std::unique_ptr<lumo::StatusIteration> make_iteration(lumo::upL_t total) override {
        return inner.make_iteration(total);
    }
    lumo::upL_t get_completed() const override { return inner.get_completed(); }
    void set_status(lumo::ColorString text) override { inner.set_status(std::move(text)); }
    void push_node(lumo::ColorString text) override;
    void pop_frame() override;

 private:
    struct Level {
        std::string name;
        double start;      ///< seconds of the event log
        bool is_step;      ///< its text holds dots
        bool has_content;  ///< of its own or by levels above it: no title
    };
    bool is_phase(const Level& ended) const;

    lumo::StatusNode& inner;
    EventLog& events;
    std::vector<Level> levels;
};

}  // namespace velmora
