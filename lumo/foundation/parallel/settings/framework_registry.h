/// The frameworks by name: `none`, `spawn`, `cppasync`, `taskqueue`, `pushpool`.
#pragma once

#include "lumo/foundation/parallel/settings/framework_config.h"

namespace lumo {

/// With default settings. Throws InvalidParametersException "Invalid Parallel Framework: <name>".
std::unique_ptr<ParallelFrameworkConfig> make_parallel_framework(std::string_view name);
/// The framework that the key `Framework` names, with the settings beside it; the default one without the
/// key.
std::unique_ptr<ParallelFrameworkConfig> load_parallel_framework(const Config::Object& object);
std::unique_ptr<ParallelFrameworkConfig> default_parallel_framework();

/// Lists the frameworks and asks for one.
std::unique_ptr<ParallelFrameworkConfig> ask_parallel_framework();

}  // namespace lumo
