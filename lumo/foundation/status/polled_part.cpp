#include "lumo/foundation/status/polled_part.h"

#include <mutex>

#include "lumo/foundation/errors/exceptions.h"
#include "lumo/foundation/errors/fatal.h"
#include "lumo/foundation/status/color_string.h"

namespace lumo {

PolledPart::PolledPart(const char* class_name, PolledPart* parent, std::optional<upL_t> steps)
    : name(class_name), owner(parent), total(steps) {
    if (owner == nullptr) return;
    const std::lock_guard hold(owner->guard);
    owner->children.push_back(this);
}

PolledPart::~PolledPart() {
    if (owner != nullptr) {
        const std::lock_guard hold(owner->guard);
        std::erase(owner->children, this);
    }
    if (!children.empty()) fatal_error(std::string(name) + ": Attempted to destroy a node with subnodes.");
}

void PolledPart::push(ColorString text) {
    const std::lock_guard hold(guard);
    levels.push_back(std::move(text));
}

void PolledPart::pop() {
    ColorString last;  // freed outside the lock
    {
        const std::lock_guard hold(guard);
        if (!levels.empty()) {
            last.swap(levels.back());
            levels.pop_back();
            return;
        }
    }
    throw InvalidParametersException(std::string(name) + "::pop_frame()",
                                     "Attempted to pop a non-existent node.");
}

void PolledPart::set(ColorString text) {
    const std::lock_guard hold(guard);
    if (levels.empty()) levels.emplace_back();
    levels.back().swap(text);
}

upL_t PolledPart::completed() const {
    upL_t sum = done.load(std::memory_order_relaxed);
    const std::lock_guard hold(guard);
    for (const PolledPart* child : children) sum += child->completed();
    return sum;
}

StatusSnapshot PolledPart::snapshot() const {
    StatusSnapshot copy;
    const std::lock_guard hold(guard);
    for (const ColorString& level : levels) append(copy.text, level);
    if (total) {
        const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
        ColorString progress = progress_text(done.load(std::memory_order_relaxed), *total, elapsed.count());
        progress.push_back({'w', "  "});
        append(copy.text, progress);
    }
    for (const PolledPart* child : children) {
        StatusSnapshot below = child->snapshot();
        if (!below.empty()) copy.children.push_back(std::move(below));
    }
    return copy;
}

StatusTree PolledPart::rows() const {
    const StatusSnapshot copy = snapshot();
    return copy.empty() ? StatusTree() : flatten(copy);
}

}  // namespace lumo
