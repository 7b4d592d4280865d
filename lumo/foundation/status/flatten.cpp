#include "lumo/foundation/status/flatten.h"

#include "lumo/foundation/errors/exceptions.h"
#include "lumo/foundation/status/color_string.h"

namespace lumo {

namespace {

void flatten_into(StatusTree& rows, const StatusSnapshot& node, upL_t indent) {
    if (node.empty()) throw InvalidParametersException("StatusTree()", "Invalid ColorString.");
    rows.back().insert(rows.back().end(), node.text.begin(), node.text.end());
    indent += width_of(node.text);
    for (std::size_t i = 0; i < node.children.size(); i++) {
        if (i > 0) rows.push_back({{'w', std::string(indent, ' ')}});
        flatten_into(rows, node.children[i], indent);
    }
}

}  // namespace

StatusTree flatten(const StatusSnapshot& root) {
    StatusTree rows(1);
    flatten_into(rows, root, 0);
    return rows;
}

}  // namespace lumo
