#include "digitviewer/viewer/viewer.h"

#include "digitviewer/files/incomplete_files.h"
#include "digitviewer/viewer/choices.h"
#include "digitviewer/viewer/questions.h"
#include "lumo/foundation/console/console.h"
#include "lumo/foundation/errors/exceptions.h"

namespace DigitViewer2 {

namespace Console = lumo::Console;

namespace {

struct Choice {
    const char* text;
    const char* heading;
    void (*run)(const Source&);
};

constexpr Choice CHOICES[] = {
    {"View a small range of digits.", "\n\nView a Range of Digits", view_range},
    {"Compute Stats (Digit Counts + Hash).", "\n\nCompute Digit Statistics", compute_statistics},
    {"Extract digits into a .txt file.", "\n\nWrite to Text File", extract_text},
    {"Compress digits 1 - N into one or more .lmd files.", "\n\nWrite to Compressed File", compress_all},
    {"Compress a subset of digits into .lmd files.", "\n\nWrite to Compressed File (partial)",
     compress_subset},
    {"Exit.", nullptr, nullptr},
    {"Add search directory.   (if .lmd files are in multiple paths)", "\n\nAdd search directory.",
     add_search_directory},
};
constexpr upL_t EXIT = 5;
constexpr upL_t ADD_DIRECTORY = 6;

/// Asks for a row; those behind the exit are for compressed files.
upL_t ask_choice(const Source& source) {
    const upL_t last = source.lmd ? ADD_DIRECTORY : EXIT;
    {
        std::lock_guard lock(Console::lock());
        Console::new_line();
        Console::print_line("What would you like to do?\n", 'w');
        for (upL_t i = 0; i <= last; i++) {
            Console::print("  " + std::to_string(i) + "    ", 'G');
            Console::print_line(CHOICES[i].text, 'w');
        }
        Console::print_line("\nEnter your choice:");
    }
    return ask_number("option: ", 0, last);
}

/// A failure is told, with what it leaves on the disk, and leads back to the menu.
void run_choice(const Source& source, const Choice& choice) {
    Console::print_line(choice.heading, 'T');
    Console::new_line();
    try {
        choice.run(source);
    } catch (const lumo::FileIO::FileException& failure) {
        failure.print();
    } catch (const lumo::InvalidParametersException& failure) {
        failure.print();
    }
    for (const std::string& path : IncompleteFiles::on_disk())
        Console::print_line("Left on disk: " + path, 'Y');
    IncompleteFiles::clear();
    Console::set_color('w');
}

}  // namespace

void Menu_DigitViewer(const lumo::ParallelContext& parallel) {
    Console::print_line("Digit Viewer", 'T');
    Console::new_line();
    const std::string path = ask_text("Enter the path of the file (include .txt or .lmd extensions):");
    Console::new_line();
    const Source source = Source::open(path, parallel);
    source.print();
    for (;;) {
        const upL_t choice = ask_choice(source);
        if (choice == EXIT) return;
        run_choice(source, CHOICES[choice]);
    }
}

}  // namespace DigitViewer2
