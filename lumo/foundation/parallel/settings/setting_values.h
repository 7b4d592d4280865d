/// How settings are read, written and printed.
#pragma once

#include "lumo/foundation/config/value.h"
#include "lumo/foundation/types/types.h"

namespace lumo {

/// "true" or "false"; the default when the key is absent. Throws ParseException "Expected true or false.".
bool load_flag(const Config::Object& object, const char* key, bool otherwise);
void add_flag(Config::Object& object, const char* key, bool value);

/// A numbered row with a label of one width.
void print_setting(upL_t line, const char* label, const std::string& value);

}  // namespace lumo
