#include "velmora/shell/session/run_in_memory.h"

#include <cstring>

#include "digitviewer/files/file_handle.h"
#include "lumo/foundation/console/console.h"
#include "lumo/foundation/memory/large_buffer.h"
#include "lumo/multiply/multiply.h"
#include "velmora/shell/session/allocation_report.h"
#include "velmora/shell/session/event_log.h"
#include "velmora/shell/session/output_folder.h"
#include "velmora/shell/session/phase_log.h"
#include "velmora/shell/session/run_report.h"
#include "velmora/shell/session/run_validation.h"
#include "velmora/shell/session/status_display.h"
#include "velmora/validation/spot_check.h"

namespace velmora {

namespace Console = lumo::Console;
using Number = lumo::BigFloat<std::uint64_t>;

namespace {

/// Takes the twiddle tables out of use before their buffer goes.
struct TableRelease {
    ~TableRelease() { lumo::Multiply::release_tables(); }
};

class Run {
 public:
    Run(const NormalFloatSession& owner, OutputProbe* output_probe)
        : session(owner),
          probe(output_probe),
          parallelizer(owner.parallelism().framework().make_parallelizer()),
          parallel{owner.parallelism().task_decomposition(), parallelizer.get()},
          spot_checks(SpotChecks::load(owner.constant().file_name(), SpotChecks::folders())) {}

    /// Returns what the comparison with known digits came to.
    std::string execute();

 private:
    lumo::OutputSettings output_settings() const;
    void prepare_output() const;
    void announce();
    lumo::LargeBuffer allocate(const char* name, upL_t bytes);
    void tell_shortfalls();
    Number compute(lumo::AlignedBufferC buffer);
    void report_times();
    void write(const Number& value, lumo::AlignedBufferC scratch);

    const NormalFloatSession& session;
    OutputProbe* const probe;
    const std::unique_ptr<lumo::BasicParallelizer> parallelizer;
    const lumo::ParallelContext parallel;
    EventLog events;
    const RunStart begun;
    const SpotChecks spot_checks;
    RunOutcome outcome;
    std::uint64_t recorded_hash = 0;
    bool allocation_fell_short = false;
};

std::string Run::execute() {
    const bool writes_digits = session.output_kind() != lumo::OutputKind::none;
    if (writes_digits) prepare_output();
    announce();

    const MemoryEstimate& sizes = session.estimate();
    const lumo::LargeBuffer working = allocate("Working Memory", sizes.working_bytes);
    const lumo::LargeBuffer tables = allocate("Twiddle Tables", sizes.table_bytes);
    const TableRelease release;
    lumo::Multiply::build_tables(tables.buffer(), sizes.product_bits, parallel);
    if (allocation_fell_short) tell_shortfalls();

    const Number value = compute(working.buffer());
    report_times();
    lumo::AlignedBufferC rest = working.buffer();
    rest.spawn(value_bytes(session.precision_words()));
    write(value, rest);
    outcome.wall_seconds = events.elapsed();
    outcome.used = CpuTime::now() - begun.cpu;
    print_end_report(session, events, outcome);
    // A record that cannot be written is told when the results stand on the console.
    if (!writes_digits) prepare_output_folder(session.output_path());
    save_run_record(session, events, begun, outcome);
    return outcome.spot_check;
}

lumo::OutputSettings Run::output_settings() const {
    return {session.output_path() + session.constant().file_name(), session.output_kind(),
            session.constant().algorithm().token, session.digits_per_file()};
}

/// What could not be written at the end is refused at the start.
void Run::prepare_output() const {
    prepare_output_folder(session.output_path());
    const lumo::OutputSettings settings = output_settings();
    if (session.hex_digits() != 0)
        DigitViewer2::FileHandle::require_replaceable(digit_file_path(settings, 16));
    DigitViewer2::FileHandle::require_replaceable(digit_file_path(settings, 10));
}

void Run::announce() {
    Console::print("Computation Mode:      ");
    Console::print_line(session.mode_name(), 'R');
    Console::set_color('w');
    Console::print("Multi-Threading:       ");
    Console::print_line(session.parallelism().summary_string());
    Console::new_line();
    log_start(events);
}

lumo::LargeBuffer Run::allocate(const char* name, upL_t bytes) {
    Console::print(std::string(name) + "...  ");
    lumo::LargeBuffer buffer(session.allocator(), bytes, parallel);
    if (reinterpret_cast<std::uintptr_t>(buffer.buffer().data()) % lumo::ALIGNMENT_BYTES != 0)
        lumo::fatal_error("Alignment Error");
    Console::print_line(Console::format_bytes(bytes), 'G');
    Console::set_color('w');
    events.log(std::string(name) + ": " + buffer.pages().describe());
    for (const std::string& line : allocation_shortfalls(session.allocator(), buffer.pages())) {
        events.log("Allocation Error: " + line);
        allocation_fell_short = true;
    }
    return buffer;
}

void Run::tell_shortfalls() {
    Console::new_line();
    Console::print_line("Memory allocation errors detected. Possible performance degradation.", 'Y');
    Console::print_line("Please see event log for details.", 'Y');
    Console::set_color('w');
}

/// Returns the value with its words at the start of the buffer, so that the rest is one block.
Number Run::compute(lumo::AlignedBufferC buffer) {
    Console::new_line();
    Console::print_line("Begin Computation:");
    Console::new_line();
    events.log("Begin Computation");
    const double start = events.elapsed();
    const upL_t p = session.precision_words();

    Number value;
    {
        StatusDisplay display(session.parallelism());
        PhaseLog phases(display.node(), events);
        value = session.constant().compute({p, parallel, buffer, phases});
    }
    value.check_normalization();
    value.truncate(p);
    recorded_hash = lumo::FloatWriterB::hash_value(value, parallel);
    auto* const words = static_cast<std::uint64_t*>(buffer.data());
    std::memmove(words, value.T, 8 * value.L);
    value.T = value.base = words;
    value.capacity = value_bytes(p) / 8;
    // The digits of zero are read from its buffer, like those of any number.
    if (value.is_zero()) std::memset(words, 0, value_bytes(p));
    outcome.computation_seconds = events.elapsed() - start;
    events.log("End Computation");
    return value;
}

void Run::report_times() {
    Console::new_line();
    print_time_lines(outcome.computation_seconds, events.elapsed());
    print_utilization(CpuTime::now() - begun.cpu, events.elapsed(), session.parallelism().threads());
    Console::new_line();
}

void Run::write(const Number& value, lumo::AlignedBufferC scratch) {
    const lumo::FloatWriterPlan plan(session.decimal_digits(), session.hex_digits(), parallel.tds);
    const lumo::MultiplyContext ctx{parallel.tds,   parallel.parallelizer, 0, 0,
                                    scratch.data(), scratch.size()};
    {
        StatusDisplay display(session.parallelism());
        lumo::FloatWriterB writer(&value, plan, output_settings(), ctx, display.node(), recorded_hash, probe);
        writer.verify_binary_words();
        events.log("Verified Binary Output");
        if (plan.hex_digits != 0) {
            writer.write_hex_digits();
            events.log("Wrote Hexadecimal Digits");
        }
        writer.convert();
        events.log("Processed Decimal Digits");
        writer.verify();
        events.log("Verified Base Conversion");
        writer.write_dec_digits();
        events.log("Wrote Decimal Digits");
        // Written before they are compared: known digits may be the wrong ones, and those computed then stay,
        // under the name of a file that is not whole.
        outcome.spot_check = spot_checks.check(*writer.make_reader(10));
        events.log("Spot Check: " + outcome.spot_check);
        if (session.output_verify()) {
            writer.read_check();
            events.log("Verified Digit Output");
        } else {
            writer.publish();
        }
        outcome.digits = writer.report();
    }
    print_digits(outcome.digits);
    print_spot_check(outcome.spot_check);
    Console::new_line();
}

}  // namespace

std::string run_in_memory(const NormalFloatSession& session, OutputProbe* probe) {
    return Run(session, probe).execute();
}

void NormalFloatSessionB::run() {
    verdict = run_in_memory(*this);
}

}  // namespace velmora
