/// Settings of page-wise allocation and the record of what came of them.
#pragma once

#include <string>
#include <vector>

#include "lumo/foundation/types/types.h"

namespace lumo {

/// How much a kind of pages is wanted. The numbers are those of the menus.
enum class PagePolicy { DISABLED = 0, ATTEMPT = 1, FORCED = 2 };

/// "disabled", "attempt", "forced": the words of configuration files.
const char* page_policy_word(PagePolicy policy);
/// "Disabled", "Attempt", "Forced".
const char* page_policy_text(PagePolicy policy);
/// Throws InvalidParametersException for any other word.
PagePolicy parse_page_policy(const std::string& word);

struct NodeBytes {
    upL_t node;
    upL_t bytes;
};

/// The outcome of an allocation.
struct PageAllocation {
    upL_t bytes = 0;
    upL_t page_bytes = 0;        ///< 0 if the pages are not the allocator's business
    upL_t large_page_bytes = 0;  ///< bytes in reserved large pages
    upL_t locked_bytes = 0;
    std::vector<NodeBytes> nodes;  ///< only for interleaving, and only as far as the system tells

    /// One line: bytes, page size, how much is locked, and the nodes.
    std::string describe() const;
};

}  // namespace lumo
