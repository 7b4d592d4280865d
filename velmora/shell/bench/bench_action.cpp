#include "velmora/shell/bench/bench_action.h"

#include <map>

#include "lumo/foundation/console/console.h"
#include "lumo/foundation/errors/exceptions.h"
#include "lumo/foundation/memory/allocators/allocator_registry.h"
#include "velmora/shell/bench/size_tables.h"
#include "velmora/shell/entry/value_parsers.h"
#include "velmora/shell/session/normal_float_session_b.h"
#include "velmora/shell/session/run_report.h"
#include "velmora/shell/session/run_session.h"

namespace velmora {

namespace {

struct Choice {
    NormalFloatSession& session;
    upL_t digits = 0;  ///< 0: no size so far
};

/// Called with the cursor on the option; the cursor moves past it afterwards.
using Handler = void (*)(Choice&, ArgumentList&);

void select_size(Choice& choice, ArgumentList& arguments) {
    const auto digits = benchmark_digits(arguments.current_key());
    if (!digits) throw lumo::InvalidParametersException("", "Invalid Command: " + arguments.current_raw());
    choice.digits = *digits;
}

std::map<std::string, Handler> make_bench_options() {
    std::map<std::string, Handler> options = {
        {"-o",
         [](Choice& c, ArgumentList& a) {
             a.advance();
             c.session.set_output_path(a.current_raw());
         }},
        {"-od",
         [](Choice& c, ArgumentList& a) {
             c.session.set_output_kind(parse_switch(a.current_value()) ? lumo::OutputKind::text
                                                                       : lumo::OutputKind::none);
         }},
        {"-TD",
         [](Choice& c, ArgumentList& a) {
             c.session.set_task_decomposition(parse_plain_count(a.current_value()));
         }},
        {"-PF", [](Choice& c, ArgumentList& a) { c.session.set_framework(a.current_value()); }},
        {"-MA",
         [](Choice& c, ArgumentList& a) {
             c.session.set_allocator(lumo::make_buffer_allocator(a.current_value()));
         }},
    };
    for (const auto sizes : {decimal_sizes(), binary_sizes()}) {
        for (const BenchmarkSize& size : sizes) options.emplace(size.key, select_size);
    }
    return options;
}

const std::map<std::string, Handler> BENCH_OPTIONS = make_bench_options();

}  // namespace

std::unique_ptr<NormalFloatSession> make_benchmark_session(const lumo::DetectedHardware& hardware) {
    auto session = std::make_unique<NormalFloatSessionB>(hardware, make_constant(find_by_key("pi")));
    session->set_hex_enabled(false);
    return session;
}

std::unique_ptr<NormalFloatSession> parse_bench(const lumo::DetectedHardware& hardware,
                                                ArgumentList& arguments) {
    auto session = make_benchmark_session(hardware);
    Choice choice{*session};
    while (!arguments.at_end()) {
        const auto found = BENCH_OPTIONS.find(arguments.current_key());
        if (found == BENCH_OPTIONS.end()) reject_parameter(arguments.current_key());
        found->second(choice, arguments);
        arguments.advance();
    }
    if (choice.digits == 0) throw lumo::InvalidParametersException("", "No benchmark size selected.");
    session->set_decimal_digits(choice.digits);
    return session;
}

int run_benchmark(NormalFloatSession& session, upL_t digits) {
    session.set_decimal_digits(digits);
    const int result = run_session(session);
    if (result != 0 || !session.spot_check_passed()) return result;
    // How far they appear to: the known digits end before those of the largest sizes do.
    print_spot_check(session.spot_check());
    lumo::Console::print_line("Benchmark Successful. The digits appear to be OK.", 'G');
    lumo::Console::set_color('w');
    return result;
}

int run_bench(Program& program) {
    if (program.arguments.at_end()) return run_bench_menu(program);
    const auto session = parse_bench(program.hardware, program.arguments);
    return run_benchmark(*session, session->decimal_digits());
}

}  // namespace velmora
