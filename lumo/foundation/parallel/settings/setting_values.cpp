#include "lumo/foundation/parallel/settings/setting_values.h"

#include "lumo/foundation/console/console.h"
#include "lumo/foundation/errors/exceptions.h"

namespace lumo {

bool load_flag(const Config::Object& object, const char* key, bool otherwise) {
    const std::string word = object.get_optional_string(key, otherwise ? "true" : "false");
    if (word != "true" && word != "false") throw ParseException("", "Expected true or false.");
    return word == "true";
}

void add_flag(Config::Object& object, const char* key, bool value) {
    object.add_string(key, value ? "true" : "false");
}

void print_setting(upL_t line, const char* label, const std::string& value) {
    constexpr std::size_t LABEL_COLUMNS = 32;
    std::string number = std::to_string(line);
    if (number.size() < 3) number.insert(0, 3 - number.size(), ' ');
    std::string padded(label);
    if (padded.size() < LABEL_COLUMNS) padded.resize(LABEL_COLUMNS, ' ');
    std::lock_guard lock(Console::lock());
    Console::print(number + padded);
    Console::print_line(value, 'G');
}

}  // namespace lumo
