#include "velmora/shell/menus/main_menu.h"

#include "lumo/foundation/console/console.h"
#include "lumo/foundation/hardware/environment_file.h"
#include "lumo/foundation/hardware/feature_list.h"
#include "velmora/shell/bench/bench_action.h"
#include "velmora/shell/entry/version.h"
#include "velmora/shell/menus/about.h"
#include "velmora/shell/menus/compute_menu.h"
#include "velmora/shell/menus/digit_viewer.h"
#include "velmora/shell/menus/formula_generator.h"
#include "velmora/shell/menus/list_menu.h"
#include "velmora/shell/menus/validate.h"

namespace velmora {

namespace {

int show_hardware_features(Program& program) {
    lumo::print_hardware_report(program.hardware);
    lumo::Console::new_line();
    lumo::print_feature_list(lumo::cpu_features());
    return 0;
}

int show_compilation_options(Program&) {
    print_compilation_options();
    return 0;
}

/// What was detected, for a user to keep or to correct.
int save_environment(Program& program) {
    const std::string path = program.program_dir + "environment.cfg";
    lumo::save_environment(program.hardware, path);
    lumo::Console::print_line("Saved: " + path);
    return 0;
}

int run_advanced_options(Program& program) {
    return run_list_menu("Advanced Options",
                         {
                             {"Benchmark Validator", {}, run_validate},
                             {"Log(n) Formula Generator", {}, run_formula_generator},
                             {"Hardware Features", {}, show_hardware_features},
                             {"Compilation Options", {}, show_compilation_options},
                             {"Save Environment Configuration",
                              {"-   The machine as detected, to be read in place of detecting it"},
                              save_environment},
                         },
                         program);
}

}  // namespace

int run_main_menu(Program& program) {
    lumo::Console::print_line(version_text() + "  ( " + tuning_text() + " )", 'P');
    lumo::Console::new_line();
    return run_list_menu(
        "",
        {
            {"Benchmark Pi  (all in ram)", {}, run_bench_menu},
            {"Custom Compute a Constant",
             {"-   Compute other constants (e, Golden Ratio, etc...)", "-   Choose your own settings"},
             run_compute_menu},
            {"Digit Viewer", {}, run_digit_viewer},
            {"Advanced Options", {}, run_advanced_options},
            {"About", {}, run_about},
        },
        program);
}

}  // namespace velmora
