#include "velmora/shell/entry/argument_list.h"

#include "lumo/foundation/console/console.h"
#include "lumo/foundation/errors/fatal.h"

namespace velmora {

ArgumentList::ArgumentList(std::vector<std::string> arguments) : raw(std::move(arguments)) {
    split.reserve(raw.size());
    for (const std::string& argument : raw) {
        const std::size_t colon = argument.find(':');
        if (colon == std::string::npos) {
            split.push_back({argument, {}});
        } else {
            split.push_back({argument.substr(0, colon), argument.substr(colon + 1)});
        }
    }
}

const std::string& ArgumentList::current_key() const {
    expect_more();
    return split[cursor].key;
}

const std::string& ArgumentList::current_value() const {
    expect_more();
    return split[cursor].value;
}

const std::string& ArgumentList::current_raw() const {
    expect_more();
    return raw[cursor];
}

void ArgumentList::advance() {
    expect_more();
    cursor++;
}

void ArgumentList::expect_more() const {
    if (at_end()) throw lumo::CommandLine::CommandLineException("Expected more parameters.");
}

void reject_parameter(const std::string& key) {
    lumo::Console::print_error("Invalid Parameter: " + key);
    lumo::exit_with_pause(1);
}

}  // namespace velmora
