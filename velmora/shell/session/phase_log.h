#pragma once

#include "lumo/foundation/status/status_node.h"
#include "velmora/shell/session/event_log.h"

namespace velmora {

/// Passes the status of a computation on and notes in the event log how long each of its phases took: the
/// levels that it adds at the bottom. Their names are the texts up to the dots.
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
    lumo::StatusNode& inner;
    EventLog& events;
    lumo::upL_t depth = 0;
    std::string name;
    double start = 0;
};

}  // namespace velmora
