#include "lumo/foundation/status/linear_console.h"

#include <algorithm>

#include "lumo/foundation/errors/exceptions.h"
#include "lumo/foundation/status/color_string.h"

namespace lumo {

namespace {

[[noreturn]] void refuse(const char* location, const char* text) {
    throw InvalidParametersException(location, text);
}

constexpr const char* NO_POLLING = "Polling is not supported.";

}  // namespace

LinearLink::LinearLink(LinearLine& output, LinearLink* parent, bool heard)
    : line(output), owner(parent), speaks(heard), depth_above(parent ? parent->depth() : 0) {
    if (owner != nullptr) owner->children++;
}

LinearLink::~LinearLink() {
    if (owner == nullptr) return;
    if (speaks) owner->voice_taken = false;
    owner->children--;
}

void LinearLink::push(const ColorString& text) {
    if (children != 0) refuse("LinearConsoleNode::push_node()", "Attempted to fork a linear status chain.");
    levels++;
    if (speaks) line.write(text, depth());
}

void LinearLink::pop() {
    if (levels == 0) refuse("LinearConsoleNode::pop_frame()", "Attempted to pop a non-existent node.");
    levels--;
    if (speaks && depth() == 0) line.finish();
}

void LinearLink::set(const ColorString& text) {
    // Never a line of its own: texts set one after the other stand in sequence.
    if (speaks) line.write(text, std::max<upL_t>(depth() + 1, 2));
}

bool LinearLink::claim_voice() {
    return speaks && !voice_taken.exchange(true);
}

std::unique_ptr<StatusNode> LinearLink::make_node() {
    return std::make_unique<LinearNetworkNode>(line, this, claim_voice());
}

std::unique_ptr<StatusIteration> LinearLink::make_iteration(upL_t total) {
    return std::make_unique<LinearConsoleIteration>(line, this, claim_voice(), total);
}

void LinearLink::write_row(const ColorString& text) const {
    if (speaks) line.write_row(text);
}

StatusTree LinearConsoleNode::get_tree() const {
    refuse("LinearConsoleNode::get_tree()", NO_POLLING);
}
upL_t LinearConsoleNode::get_completed() const {
    refuse("LinearConsoleNode::get_completed()", NO_POLLING);
}

StatusTree LinearNetworkNode::get_tree() const {
    refuse("LinearNetworkNode::get_tree()", NO_POLLING);
}
upL_t LinearNetworkNode::get_completed() const {
    refuse("LinearNetworkNode::get_completed()", NO_POLLING);
}

LinearConsoleIteration::LinearConsoleIteration(LinearLine& line, LinearLink* parent, bool heard, upL_t steps)
    : link(line, parent, heard), total(steps) {}

bool LinearConsoleIteration::row_is_due(upL_t before, upL_t now, double seconds) {
    double last = last_row.load();
    const double twentieth = static_cast<double>(std::max<upL_t>(total, 1)) / 20;
    const bool mark_passed = static_cast<upL_t>(static_cast<double>(before) / twentieth) !=
                             static_cast<upL_t>(static_cast<double>(now) / twentieth);
    if (seconds < last + (mark_passed ? 1.0 : 3600.0)) return false;
    return last_row.compare_exchange_strong(last, seconds);  // one row if several threads come at once
}

void LinearConsoleIteration::complete(upL_t count) {
    const upL_t before = done.fetch_add(count);
    const upL_t now = before + count;
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
    if (!row_is_due(before, now, elapsed.count())) return;
    link.write_row(progress_text(now, total, elapsed.count()));
}

std::unique_ptr<StatusIteration> LinearConsoleIteration::make_iteration(upL_t) {
    refuse("LinearConsoleIteration::make_iteration()", "Iteration stacking is not supported.");
}

upL_t LinearConsoleIteration::get_completed() const {
    refuse("LinearConsoleIteration::get_completed()", NO_POLLING);
}

void LinearConsoleIteration::push_node(ColorString) {
    refuse("LinearConsoleIteration::push_node()", "Attempted to extend a linear status chain.");
}

}  // namespace lumo
