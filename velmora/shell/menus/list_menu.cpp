#include "velmora/shell/menus/list_menu.h"

#include "lumo/foundation/console/console.h"

namespace velmora {

namespace Console = lumo::Console;

namespace {

constexpr std::size_t TEXT_COLUMN = 10;

void print_row(std::size_t number, const MenuRow& row) {
    std::string head = std::to_string(number);
    head.resize(TEXT_COLUMN, ' ');
    Console::print(head, 'G');
    Console::print_line(row.text, 'w');
    for (const char* line : row.details) Console::print_line(std::string(TEXT_COLUMN, ' ') + line, 'g');
    if (!row.details.empty()) Console::set_color('w');
}

}  // namespace

int ask_option(std::size_t last) {
    Console::new_line();
    Console::print_line("Enter your choice:", 'w');
    return static_cast<int>(Console::prompt_integer("option: ", 0, static_cast<std::int64_t>(last)));
}

int run_list_menu(const char* title, const std::vector<MenuRow>& rows, Program& program) {
    {
        std::lock_guard lock(Console::lock());
        if (*title != '\0') {
            Console::print_line(title, 'T');
            Console::new_line();
        }
        for (std::size_t i = 0; i < rows.size(); i++) print_row(i, rows[i]);
    }
    const int choice = ask_option(rows.size() - 1);
    Console::new_line();
    return rows[choice].run(program);
}

}  // namespace velmora
