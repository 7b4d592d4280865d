#pragma once

#include <string_view>

namespace velmora {

/// Whether the argument asks for help or for the version; these are answered without start-up.
bool is_help_request(std::string_view argument);
/// Prints the answer.
void print_help(std::string_view argument);

}  // namespace velmora
