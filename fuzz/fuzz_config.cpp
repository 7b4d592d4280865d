#include <cstdlib>

#include "lumo/foundation/config/reader.h"
#include "lumo/foundation/config/text_file.h"
#include "lumo/foundation/config/writer.h"
#include "lumo/foundation/errors/exceptions.h"

namespace {

namespace Config = lumo::Config;

void check_round_trip(Config::ValuePtr (*parse)(std::string_view), std::string (*write)(const Config::Value&),
                      const std::string& text) {
    try {
        const std::string first = write(*parse(text));
        if (write(*parse(first)) != first) std::abort();
    } catch (const lumo::Exception&) {
        // A text that is refused.
    }
}

}  // namespace

/// Parses the bytes in both syntaxes. What is read must be written to a text that reads as the same.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    Config::utf16le_to_utf8(text);
    check_round_trip(Config::parse_text, Config::write_cfg, text);
    check_round_trip(Config::parse_strict_text, Config::write_strict, text);
    return 0;
}
