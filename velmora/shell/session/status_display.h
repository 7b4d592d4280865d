#pragma once

#include <memory>

#include "lumo/foundation/parallel/settings/parallelism.h"
#include "lumo/foundation/status/status_node.h"

namespace lumo {
class ParallelConsoleStatus;
}

namespace velmora {

/// The status of one stretch of a run. Work by several threads before a terminal is polled and redrawn in
/// place; all other work writes its line as it goes. Nothing else prints while this lives.
class StatusDisplay {
 public:
    explicit StatusDisplay(const lumo::Parallelism& parallelism);
    ~StatusDisplay();
    lumo::StatusNode& node() { return *root; }

 private:
    std::unique_ptr<lumo::StatusNode> root;
    std::unique_ptr<lumo::ParallelConsoleStatus> drawing;
};

}  // namespace velmora
