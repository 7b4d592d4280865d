#pragma once

#include "lumo/foundation/status/status_node.h"

namespace lumo {

inline ColorString white(std::string text) {
    return {{'w', std::move(text)}};
}

}  // namespace lumo
