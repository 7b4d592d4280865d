// From the arguments to the exit code.

#include <algorithm>
#include <cstdlib>

#include "digitviewer/files/incomplete_files.h"
#include "lumo/foundation/console/console.h"
#include "lumo/foundation/errors/exception.h"
#include "lumo/foundation/hardware/environment_file.h"
#include "lumo/foundation/hardware/feature_list.h"
#include "lumo/foundation/hardware/program_path.h"
#include "lumo/foundation/parallel/thread_priority.h"
#include "lumo/multiply/kernels/kernel_select.h"
#include "velmora/shell/entry/help.h"
#include "velmora/shell/entry/program.h"
#include "velmora/shell/entry/resume_check.h"

namespace velmora {

namespace Console = lumo::Console;

namespace {

void read_machine(Program& program) {
    lumo::check_required_features(lumo::cpu_features(), program.options.skip_warnings);
    lumo::DetectionSettings settings;
    settings.show_pii = program.options.show_pii;
    settings.status = [](std::string_view text) { Console::print_line(text); };
    if (const std::string& problem = lumo::chosen_kernels().problem; !problem.empty())
        Console::print_error("Warning: " + problem);
    program.hardware = lumo::load_or_detect_hardware(program.program_dir + "environment.cfg", settings);
    Console::new_line();
}

int start(Program& program, const Action& action) {
    Console::new_line();
    lumo::set_thread_priority(program.options.priority_value);
    read_machine(program);
    check_for_checkpoint();
    return action(program);
}

/// What a run that ended early has left.
void tell_incomplete_files() {
    for (const std::string& path : DigitViewer2::IncompleteFiles::on_disk())
        Console::print_line("Left on disk: " + path, 'Y');
    Console::set_color('w');
}

/// The one place where failures end: printed, and told to the caller by the exit code.
template <typename Body>
int guarded(const Body& body) {
    try {
        return body();
    } catch (const lumo::Exception& failure) {
        failure.print();
    } catch (const std::exception& failure) {
        std::lock_guard lock(Console::lock());
        Console::print("\n", 'R');
        Console::print_line("Uncaught std exception");
        Console::new_line();
        Console::print_line(failure.what());
        Console::new_line();
        Console::set_color('w');
    }
    tell_incomplete_files();
    return 1;
}

}  // namespace

int run_program(std::vector<std::string> arguments, const Action& action) {
    const std::string path = lumo::read_program_path();
    // No action has an option of this name, and no file will.
    const bool help_among_options =
        std::find(arguments.begin(), arguments.end(), "--help") != arguments.end();
    Program program{ArgumentList(std::move(arguments)), {}, path, lumo::folder_of(path), {}};
    bool answered = false;  // a question that needs no start-up, and no pause
    // The wish of a user for all programs; an option of this one outranks it.
    if (const char* plain = std::getenv("NO_COLOR"); plain && *plain != '\0')
        Console::settings().colors_enabled = false;
    const int result = guarded([&] {
        read_global_options(program.options, program.arguments);
        const std::string request = program.arguments.at_end() ? "" : program.arguments.current_raw();
        answered = help_among_options || is_help_request(request);
        if (!answered) return start(program, action);
        print_help(request);
        return 0;
    });
    if (answered) return result;
    Console::reset_color();
    Console::new_line();
    if (pauses_at_exit(program.options, result)) Console::pause(' ');
    return result;
}

}  // namespace velmora
