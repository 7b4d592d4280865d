// Settings of a session, and the checks on them.

#include "digitviewer/files/lmd/lmd_header.h"
#include "lumo/foundation/console/console.h"
#include "lumo/foundation/errors/exceptions.h"
#include "lumo/foundation/memory/allocators/allocator_registry.h"
#include "lumo/foundation/parallel/settings/framework_registry.h"
#include "velmora/shell/session/normal_float_session.h"
#include "velmora/shell/session/output_folder.h"
#include "velmora/shell/session/precision.h"

namespace velmora {

using lumo::Console::format_commas;

NormalFloatSession::NormalFloatSession(const lumo::DetectedHardware& hardware,
                                       std::unique_ptr<Constant> chosen)
    : machine(hardware),
      selected(std::move(chosen)),
      memory(lumo::default_buffer_allocator(hardware.numa_nodes.size())) {}

std::string NormalFloatSession::algorithm_name() const {
    const std::string name = selected->algorithm_name(selected->algorithm());
    const std::string remark = selected->algorithm_remark(selected->algorithm());
    // A remark of several lines explains the choice, it does not belong to the name.
    return remark.empty() || remark.find('\n') != std::string::npos ? name : name + "  " + remark;
}

upL_t NormalFloatSession::hex_digits() const {
    return hex_on ? hex_digits_of(digits) : 0;
}

upL_t NormalFloatSession::precision_words() const {
    return precision_words_of(working_digits());
}

void NormalFloatSession::check_digits(upL_t n) const {
    if (n < MIN_DIGITS)
        throw lumo::InvalidParametersException(
            "", "Computation size must be at least " + format_commas(MIN_DIGITS) + " decimal digits.");
    const upL_t limit = selected->max_digits();
    if (n > limit)
        throw lumo::InvalidParametersException(
            "", "Computation size cannot be larger than " + format_commas(limit) + " decimal digits.");
}

void NormalFloatSession::repair_digits() {
    const upL_t limit = selected->max_digits();
    const char* warning = nullptr;
    if (digits < MIN_DIGITS) {
        digits = MIN_DIGITS;
        warning = "Precision below minimum. Adjusting to minimum.";
    } else if (digits > limit) {
        digits = limit;
        warning = "Precision above maximum: Clipping to maximum.";
    }
    if (warning) lumo::Console::print_label_line("Warning", warning, 'Y');
}

void NormalFloatSession::set_constant(std::unique_ptr<Constant> chosen) {
    selected = std::move(chosen);
    repair_digits();
    refresh();
}

void NormalFloatSession::set_algorithm(std::string_view token) {
    selected->set_algorithm(token);
    refresh();
}

void NormalFloatSession::set_decimal_digits(upL_t n) {
    check_digits(n);
    digits = n;
    refresh();
}

void NormalFloatSession::set_hex_digits(upL_t n) {
    if (n != 0) {
        check_digits(n);
        const upL_t decimal = decimal_digits_of(n);
        check_digits(decimal);
        digits = decimal;
    }
    set_hex_enabled(n != 0);
}

void NormalFloatSession::set_hex_enabled(bool on) {
    hex_on = on;
    refresh();
}

void NormalFloatSession::set_output_kind(lumo::OutputKind kind) {
    output = kind;
    refresh();
}

void NormalFloatSession::set_compressed_output(upL_t digits_per_file) {
    if (digits_per_file != 0 && digits_per_file < DigitViewer2::LmdHeader::SMALLEST_BLOCK)
        throw lumo::InvalidParametersException("", "Invalid Digits per File");
    file_digits = digits_per_file;
    set_output_kind(lumo::OutputKind::lmd);
}

void NormalFloatSession::set_output_path(const std::string& path) {
    std::string chosen = as_folder(path);
    if (const int error = folder_error(chosen))
        throw lumo::ParseException("", "Path is not writable.\n" + (chosen.empty() ? "./" : chosen) + ": " +
                                           std::generic_category().message(error));
    folder = std::move(chosen);
}

void NormalFloatSession::set_parallelism(lumo::Parallelism chosen) {
    parallel = std::move(chosen);
    refresh();
}

void NormalFloatSession::set_framework(std::string_view name) {
    parallel.set_framework(lumo::make_parallel_framework(name));
    refresh();
}

void NormalFloatSession::set_task_decomposition(upL_t tasks) {
    parallel.set_task_decomposition(tasks);
    refresh();
}

}  // namespace velmora
