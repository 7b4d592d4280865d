/// From a tree of status texts to rows on the screen.
#pragma once

#include "lumo/foundation/status/status_node.h"

namespace lumo {

/// A copy of a tree of nodes at one moment.
struct StatusSnapshot {
    ColorString text;
    std::vector<StatusSnapshot> children;

    bool empty() const { return text.empty() && children.empty(); }
};

/// The first child of a node continues its row; each further child opens a row with blanks as wide as what
/// stands before its column, so that the children of one node line up behind their parent's text. A node
/// with neither text nor children has no row to give: throws InvalidParametersException
/// "Invalid ColorString.".
StatusTree flatten(const StatusSnapshot& root);

}  // namespace lumo
