#include "velmora/shell/menus/compute_menu.h"

#include <limits>

#include "lumo/foundation/console/console.h"
#include "lumo/foundation/errors/exceptions.h"
#include "lumo/foundation/memory/allocators/allocator_registry.h"
#include "lumo/foundation/parallel/settings/framework_registry.h"
#include "velmora/shell/menus/list_menu.h"
#include "velmora/shell/session/normal_float_session_b.h"
#include "velmora/shell/session/run_session.h"
#include "velmora/shell/session/session_cfg.h"

namespace velmora {

namespace Console = lumo::Console;

namespace {

/// Shows the settings of a framework or an allocator and changes them as asked.
template <typename Configurable>
void ask_own_settings(Configurable& chosen) {
    for (;;) {
        Console::new_line();
        Console::print_line(chosen.display_name(), 'T');
        const lumo::upL_t end = chosen.print_settings(1);
        if (end == 1) return;
        Console::print_line("  0    Done");
        const int choice = ask_option(end - 1);
        if (choice == 0) return;
        chosen.menu_action(choice - 1);
    }
}

std::string on_off(bool on) {
    return on ? "Enabled" : "Disabled";
}

struct Setting {
    const char* label;
    std::string (*value)(const NormalFloatSession&);
    void (*ask)(NormalFloatSession&);
};

void ask_digits(NormalFloatSession& s) {
    Console::new_line();
    s.set_decimal_digits(
        static_cast<upL_t>(Console::prompt_integer("Decimal Digits: ", NormalFloatSession::MIN_DIGITS,
                                                   static_cast<std::int64_t>(s.constant().max_digits()))));
}

void ask_path(NormalFloatSession& s) {
    Console::new_line();
    s.set_output_path(Console::read_answer("Output Path: "));
}

std::string output_text(const NormalFloatSession& s) {
    if (s.output_kind() == lumo::OutputKind::none) return "None";
    if (s.output_kind() == lumo::OutputKind::text) return "Text Files";
    if (s.digits_per_file() == 0) return "Compressed File";
    return "Compressed Files of " + Console::format_commas(s.digits_per_file()) + " digits";
}

/// None, compressed and text follow each other.
void ask_output(NormalFloatSession& s) {
    if (s.output_kind() == lumo::OutputKind::text) return s.set_output_kind(lumo::OutputKind::none);
    if (s.output_kind() == lumo::OutputKind::lmd) return s.set_output_kind(lumo::OutputKind::text);
    Console::new_line();
    s.set_compressed_output(static_cast<upL_t>(Console::prompt_integer(
        "Digits per file (0 for single file): ", 0, std::numeric_limits<std::int64_t>::max())));
}

void ask_framework(NormalFloatSession& s) {
    lumo::Parallelism changed = s.parallelism();
    changed.set_framework(lumo::ask_parallel_framework());
    ask_own_settings(changed.framework());
    s.set_parallelism(std::move(changed));
}

void ask_tasks(NormalFloatSession& s) {
    lumo::Parallelism changed = s.parallelism();
    changed.ask_task_decomposition();
    s.set_parallelism(std::move(changed));
}

void ask_allocator(NormalFloatSession& s) {
    auto chosen = lumo::ask_buffer_allocator();
    ask_own_settings(*chosen);
    s.set_allocator(std::move(chosen));
}

void ask_save(NormalFloatSession& s) {
    Console::new_line();
    std::string path = Console::read_answer("File: ");
    if (path.find('.') == std::string::npos) path += ".cfg";
    save_session(s, path);
    Console::print_line("Saved: " + path);
}

using S = const NormalFloatSession&;
constexpr Setting SETTINGS[] = {
    {"Start Computation!", nullptr, nullptr},
    {"Constant:", [](S s) { return s.constant_name(); },
     [](NormalFloatSession& s) { s.set_constant(ask_constant()); }},
    {"Algorithm:", [](S s) { return s.algorithm_name(); }, ask_algorithm},
    {"Decimal Digits:", [](S s) { return Console::format_commas(s.decimal_digits()); }, ask_digits},
    {"Hexadecimal Digits:",
     [](S s) { return s.hex_enabled() ? Console::format_commas(s.hex_digits()) : std::string("Disabled"); },
     [](NormalFloatSession& s) { s.set_hex_enabled(!s.hex_enabled()); }},
    {"Digit Output:", output_text, ask_output},
    {"Output Path:", [](S s) { return s.output_path().empty() ? std::string("./") : s.output_path(); },
     ask_path},
    {"Output Verification:", [](S s) { return on_off(s.output_verify()); },
     [](NormalFloatSession& s) { s.set_output_verify(!s.output_verify()); }},
    {"Multi-Threading:", [](S s) { return s.parallelism().summary_string(); }, ask_framework},
    {"Task Decomposition:", [](S s) { return Console::format_commas(s.parallelism().task_decomposition()); },
     ask_tasks},
    {"Memory Allocator:", [](S s) { return std::string(s.allocator().display_name()); }, ask_allocator},
    {"Save Settings to a File", nullptr, ask_save},
};

void print_settings(S session) {
    std::lock_guard lock(Console::lock());
    Console::new_line();
    for (std::size_t i = 0; i < std::size(SETTINGS); i++) {
        std::string number = "  " + std::to_string(i);
        number.resize(6, ' ');
        Console::print(number, 'G');
        std::string label = SETTINGS[i].label;
        if (SETTINGS[i].value) label.resize(24, ' ');
        Console::print(label, 'w');
        Console::print_line(SETTINGS[i].value ? SETTINGS[i].value(session) : "", 'T');
    }
    Console::set_color('w');
    Console::new_line();
    const MemoryEstimate& sizes = session.estimate();
    Console::print_line("Total Memory:  " + std::string(sizes.problem.empty() ? "" : "at least ") +
                        Console::format_bytes(sizes.total_bytes()));
}

}  // namespace

void ask_settings(NormalFloatSession& session) {
    for (;;) {
        print_settings(session);
        const int choice = ask_option(std::size(SETTINGS) - 1);
        if (choice == 0) return;
        // A value that is refused leaves the setting as it was.
        try {
            SETTINGS[choice].ask(session);
        } catch (const lumo::StringException& refused) {
            Console::print_error(refused.message);
        } catch (const lumo::FileIO::FileException& refused) {
            refused.print();
        }
    }
}

int run_compute_menu(Program& program) {
    NormalFloatSessionB session(program.hardware, ask_constant());
    ask_algorithm(session);
    ask_settings(session);
    return run_session(session);
}

}  // namespace velmora
