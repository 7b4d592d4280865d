#include "lumo/foundation/memory/allocators/page_policy.h"

#include <cstdio>

#include "lumo/foundation/console/console.h"
#include "lumo/foundation/errors/exceptions.h"

namespace lumo {

namespace {

struct PolicyNames {
    const char* word;
    const char* text;
};
constexpr PolicyNames NAMES[] = {{"disabled", "Disabled"}, {"attempt", "Attempt"}, {"forced", "Forced"}};

std::string percent(upL_t part, upL_t whole) {
    char text[16];
    std::snprintf(text, sizeof(text), "%.1f%%", whole == 0 ? 0. : 100. * double(part) / double(whole));
    return text;
}

}  // namespace

const char* page_policy_word(PagePolicy policy) {
    return NAMES[static_cast<int>(policy)].word;
}
const char* page_policy_text(PagePolicy policy) {
    return NAMES[static_cast<int>(policy)].text;
}

PagePolicy parse_page_policy(const std::string& word) {
    for (int i = 0; i < 3; i++)
        if (word == NAMES[i].word) return static_cast<PagePolicy>(i);
    throw InvalidParametersException("", "Invalid Page Mode: " + word);
}

std::string PageAllocation::describe() const {
    std::string text = Console::format_bytes(bytes);
    if (page_bytes > 0) text += ", " + std::to_string(page_bytes >> 10) + " KiB pages";
    if (locked_bytes > 0)
        text += locked_bytes >= bytes ? ", locked" : ", " + percent(locked_bytes, bytes) + " locked";
    if (nodes.size() == 1) text += ", node " + std::to_string(nodes[0].node);
    if (nodes.size() > 1) {
        text += ", spread:";
        for (const NodeBytes& share : nodes)
            text += " " + std::to_string(share.node) + "=" + percent(share.bytes, bytes);
    }
    return text;
}

}  // namespace lumo
