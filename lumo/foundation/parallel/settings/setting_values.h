/// Settings that several frameworks share: reading, writing, printing and asking for them.
#pragma once

#include "lumo/foundation/config/value.h"
#include "lumo/foundation/types/types.h"

namespace lumo {

inline constexpr upL_t MAX_WORKER_THREADS = 0x10000;

/// "true" or "false"; the default when the key is absent. Throws ParseException "Expected true or false.".
bool load_flag(const Config::Object& object, const char* key, bool otherwise);
void add_flag(Config::Object& object, const char* key, bool value);

/// Capped at 65536. Throws InvalidParametersException for a negative number.
upL_t load_worker_threads(const Config::Object& object, upL_t otherwise);
/// Raised to at least 4.
upL_t load_max_sequential_dispatch(const Config::Object& object, upL_t otherwise);
/// For display the number stands in an object with its formatted text.
void add_max_sequential_dispatch(Config::Object& object, upL_t value, bool for_display);

upL_t ask_worker_threads();
/// Explains the parameter, then asks.
upL_t ask_max_sequential_dispatch();

/// A numbered row with a label of one width.
void print_setting(upL_t line, const char* label, const std::string& value);
std::string worker_threads_text(upL_t worker_threads);

}  // namespace lumo
