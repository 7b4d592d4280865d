#include "velmora/shell/entry/program_options.h"

#include <algorithm>
#include <limits>
#include <map>

#include "lumo/foundation/console/console.h"
#include "lumo/foundation/console/parse_counts.h"

namespace velmora {

namespace {

using Handler = void (*)(ProgramOptions&, ArgumentList&);

int signed_value(const ArgumentList& arguments) {
    const std::int64_t value = lumo::Console::parse_signed_count(arguments.current_value());
    return static_cast<int>(
        std::clamp<std::int64_t>(value, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

const std::map<std::string, Handler> GLOBAL_OPTIONS = {
    {"pause",
     [](ProgramOptions& options, ArgumentList& arguments) {
         options.pause_value = signed_value(arguments);
         lumo::Console::settings().pause_on_fatal = options.pause_value >= -1;
     }},
    {"priority", [](ProgramOptions& options,
                    ArgumentList& arguments) { options.priority_value = signed_value(arguments); }},
    {"colors",
     [](ProgramOptions&, ArgumentList& arguments) {
         lumo::Console::settings().colors_enabled = signed_value(arguments) > 0;
     }},
    {"PII",
     [](ProgramOptions& options, ArgumentList& arguments) {
         const int value = signed_value(arguments);
         if (value != 0) options.show_pii = value > 0;
     }},
    // Heights of consoles are not managed; scripts that give one keep working.
    {"height", [](ProgramOptions&, ArgumentList&) {}},
    {"skip-warnings", [](ProgramOptions& options, ArgumentList&) { options.skip_warnings = true; }},
};

}  // namespace

void read_global_options(ProgramOptions& options, ArgumentList& arguments) {
    while (!arguments.at_end()) {
        const auto found = GLOBAL_OPTIONS.find(arguments.current_key());
        if (found == GLOBAL_OPTIONS.end()) return;
        found->second(options, arguments);
        arguments.advance();
    }
}

bool pauses_at_exit(const ProgramOptions& options, int result) {
    if (options.pause_value < -1) return false;
    return result != 0 || options.pause_value > 0;
}

}  // namespace velmora
