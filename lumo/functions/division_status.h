#pragma once

#include "lumo/foundation/status/status_node.h"

namespace lumo {

/// What a large division shows while it runs: its title and the head of its line of progress, behind which
/// the texts of its steps follow each other.
class LargeDivisionStatus {
 public:
    explicit LargeDivisionStatus(StatusNode& status)
        : title(status, {{'G', "Large Division...  "}}),
          head(status, {{'w', "Iterating: "}}),
          steps(status, {{'T', ""}}) {}

 private:
    const StatusSection title, head, steps;
};

}  // namespace lumo
