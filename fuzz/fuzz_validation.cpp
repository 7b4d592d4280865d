#include <cstdint>
#include <cstdlib>

#include "velmora/validation/validator.h"

/// Validates the bytes. What passes must not pass with its first byte changed.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string text(reinterpret_cast<const char*>(data), size);
    const auto outcome = velmora::validate_text(text);
    if (outcome.messages.empty()) std::abort();
    if (!outcome.passed) return 0;
    text[0] = static_cast<char>(text[0] ^ 1);
    if (velmora::validate_text(text).passed) std::abort();
    return 0;
}
