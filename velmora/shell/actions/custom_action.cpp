#include "velmora/shell/actions/custom_action.h"

#include <map>

#include "lumo/foundation/console/console.h"
#include "lumo/foundation/console/parse_counts.h"
#include "lumo/foundation/errors/exceptions.h"
#include "lumo/foundation/memory/allocators/allocator_registry.h"
#include "velmora/shell/entry/value_parsers.h"
#include "velmora/shell/menus/compute_menu.h"
#include "velmora/shell/session/normal_float_session_b.h"
#include "velmora/shell/session/run_session.h"

namespace velmora {

namespace {

/// Called with the cursor on the option; the cursor moves past it afterwards.
using Handler = void (*)(NormalFloatSession&, ArgumentList&);

void set_mode(NormalFloatSession& session, ArgumentList& arguments) {
    if (arguments.current_value() != session.mode_token())
        throw lumo::InvalidParametersException("", "Invalid Command: " + arguments.current_raw());
}

/// 0: text files. N: compressed files of N digits. A negative number: a single compressed file.
void set_compression(NormalFloatSession& session, ArgumentList& arguments) {
    const std::int64_t digits = lumo::Console::parse_signed_count(arguments.current_value());
    if (digits == 0)
        session.set_output_kind(lumo::OutputKind::text);
    else
        session.set_compressed_output(digits < 0 ? 0 : static_cast<upL_t>(digits));
}

/// For options that other modes than those of this session know.
void refuse_for_mode(NormalFloatSession&, ArgumentList& arguments) {
    throw lumo::InvalidParametersException(
        "", "Option " + arguments.current_key() + " is not supported for this mode.");
}

const std::map<std::string, Handler> CUSTOM_OPTIONS = {
    {"-algorithm", [](NormalFloatSession& s, ArgumentList& a) { s.set_algorithm(a.current_value()); }},
    {"-dec",
     [](NormalFloatSession& s, ArgumentList& a) {
         s.set_decimal_digits(lumo::Console::parse_decimal_count(a.current_value()));
     }},
    {"-hex",
     [](NormalFloatSession& s, ArgumentList& a) {
         s.set_hex_digits(lumo::Console::parse_decimal_count(a.current_value()));
     }},
    {"-o",
     [](NormalFloatSession& s, ArgumentList& a) {
         a.advance();
         s.set_output_path(a.current_raw());
     }},
    {"-od",
     [](NormalFloatSession& s, ArgumentList& a) {
         s.set_output_kind(parse_switch(a.current_value()) ? lumo::OutputKind::text : lumo::OutputKind::none);
     }},
    {"-C", set_compression},
    {"-compress", set_compression},
    {"-verify",
     [](NormalFloatSession& s, ArgumentList& a) { s.set_output_verify(parse_switch(a.current_value())); }},
    {"-mode", set_mode},
    {"-MA", [](NormalFloatSession& s,
               ArgumentList& a) { s.set_allocator(lumo::make_buffer_allocator(a.current_value())); }},
    {"-PF", [](NormalFloatSession& s, ArgumentList& a) { s.set_framework(a.current_value()); }},
    {"-TD", [](NormalFloatSession& s,
               ArgumentList& a) { s.set_task_decomposition(parse_plain_count(a.current_value())); }},
    {"-M", refuse_for_mode},
    {"-minIO", refuse_for_mode},
    {"-swap", refuse_for_mode},
};

}  // namespace

std::unique_ptr<NormalFloatSession> parse_custom(const lumo::DetectedHardware& hardware,
                                                 ArgumentList& arguments) {
    const CatalogueEntry& entry = find_by_command_name(arguments.current_key());
    auto constant = make_constant(entry);
    if (constant->takes_argument() || !arguments.current_value().empty())
        constant->set_argument(arguments.current_value());
    arguments.advance();
    auto session = std::make_unique<NormalFloatSessionB>(hardware, std::move(constant));
    while (!arguments.at_end()) {
        const auto found = CUSTOM_OPTIONS.find(arguments.current_key());
        if (found == CUSTOM_OPTIONS.end()) reject_parameter(arguments.current_key());
        found->second(*session, arguments);
        arguments.advance();
    }
    return session;
}

int run_custom(Program& program) {
    if (program.arguments.at_end()) return run_compute_menu(program);
    return run_session(*parse_custom(program.hardware, program.arguments));
}

}  // namespace velmora
