// What a session is about to do, and whether the machine can do it.

#include "lumo/foundation/console/console.h"
#include "velmora/shell/session/memory_limit.h"
#include "velmora/shell/session/normal_float_session_b.h"
#include "velmora/shell/session/output_folder.h"

namespace velmora {

using lumo::Console::format_bytes;
using lumo::Console::format_commas;

namespace {

void print_row(std::string label, const std::string& value, char letter) {
    constexpr std::size_t COLUMN = 23;
    if (label.size() < COLUMN) label.resize(COLUMN, ' ');
    lumo::Console::print(label, 'w');
    lumo::Console::print_line(value, letter);
}

/// Bytes of the digit files without their heads.
upL_t digit_file_bytes(const NormalFloatSession& session) {
    const upL_t dec = session.decimal_digits(), hex = session.hex_digits();
    switch (session.output_kind()) {
        case lumo::OutputKind::none:
            return 0;
        case lumo::OutputKind::text:
            return dec + hex;
        case lumo::OutputKind::lmd:
            break;
    }
    return dec / 19 * 8 + hex / 16 * 8;
}

/// A long computation must not find out at its end.
void warn_of_little_room(const NormalFloatSession& session) {
    const upL_t needed = digit_file_bytes(session);
    const upL_t room = free_bytes(session.output_path());
    if (needed <= room) return;
    lumo::Console::new_line();
    lumo::Console::print_label_line("Warning",
                                    "The digit files will take " + format_bytes(needed) +
                                        ". The output folder has room for " + format_bytes(room) + ".",
                                    'Y');
}

}  // namespace

void NormalFloatSession::print_summary() const {
    std::lock_guard lock(lumo::Console::lock());
    const std::string bound = sizes.problem.empty() ? "" : "at least ";
    print_row("Constant:", constant_name(), 'T');
    print_row("Algorithm:", algorithm_name(), 'w');
    lumo::Console::new_line();
    print_row("Decimal Digits:", format_commas(digits), 'G');
    print_row("Hexadecimal Digits:", hex_on ? format_commas(hex_digits()) : "Disabled", 'G');
    lumo::Console::new_line();
    print_row("Computation Mode:", mode_name(), 'w');
    print_row("Threading Mode:", parallel.summary_string(), 'w');
    print_row("Working Memory:", bound + format_bytes(sizes.working_bytes), 'G');
    print_row("Total Memory:", bound + format_bytes(sizes.total_bytes()), 'G');
    lumo::Console::set_color('w');
}

bool NormalFloatSessionB::can_run(bool print) const {
    if (print) print_summary();
    const upL_t needed = sizes.total_bytes();
    const upL_t limit = memory_limit(hardware());
    if (limit != 0 && needed > limit) {
        if (print)
            lumo::Console::print_error("Not enough memory: this computation needs " +
                                       std::string(sizes.problem.empty() ? "" : "at least ") +
                                       format_bytes(needed) + ", this machine has " + format_bytes(limit) +
                                       ".");
        return false;
    }
    if (!sizes.problem.empty()) {
        if (print) lumo::Console::print_error(sizes.problem);
        return false;
    }
    const upL_t usable = hardware().memory.usable;
    if (print && usable != 0 && needed > usable) {
        lumo::Console::new_line();
        lumo::Console::print_label_line(
            "Warning", "This computation needs more memory than is free: " + format_bytes(usable) + ".", 'Y');
    }
    if (print) warn_of_little_room(*this);
    return true;
}

}  // namespace velmora
