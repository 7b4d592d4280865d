/// What a polled node and a polled iteration are made of.
#pragma once

#include <atomic>
#include <chrono>
#include <optional>

#include "lumo/foundation/status/flatten.h"
#include "lumo/foundation/status/spin_lock.h"

namespace lumo {

/// Levels of text, the parts made below this one, and a count of steps for an iteration. The spin lock is
/// held only while a text or a child is swapped or the tree is copied. Lock order: parent before child.
class PolledPart {
 public:
    /// `class_name` opens the message of the fatal path. `parent` may be null and must outlive this part.
    PolledPart(const char* class_name, PolledPart* parent, std::optional<upL_t> steps = {});
    /// Fatal while parts below this one live: they hold pointers into it.
    ~PolledPart();
    PolledPart(const PolledPart&) = delete;
    PolledPart& operator=(const PolledPart&) = delete;

    void push(ColorString text);
    /// Throws InvalidParametersException "Attempted to pop a non-existent node." when no level stands.
    void pop();
    void set(ColorString text);
    void complete(upL_t count) { done.fetch_add(count, std::memory_order_relaxed); }
    /// Finished steps here and below.
    upL_t completed() const;
    /// A copy of the texts from here down, without the parts that have nothing to show.
    StatusSnapshot snapshot() const;
    /// The rows of the snapshot, none if it is empty.
    StatusTree rows() const;

 private:
    const char* name;
    PolledPart* owner;
    const std::optional<upL_t> total;
    const std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();
    std::atomic<upL_t> done{0};
    mutable SpinLock guard;
    std::vector<ColorString> levels;
    std::vector<PolledPart*> children;
};

}  // namespace lumo
