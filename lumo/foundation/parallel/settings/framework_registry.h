/// The frameworks by name.
#pragma once

#include <span>

#include "lumo/foundation/parallel/settings/framework_config.h"

namespace lumo {

using FrameworkFactory = std::unique_ptr<ParallelFrameworkConfig> (*)();

/// Makers of all frameworks with default settings, in the order of the menus.
std::span<const FrameworkFactory> parallel_frameworks();
/// With default settings. Throws InvalidParametersException "Invalid Parallel Framework: <name>".
std::unique_ptr<ParallelFrameworkConfig> make_parallel_framework(std::string_view name);
/// The framework that the key `Framework` names, with the settings beside it; the default one without the
/// key.
std::unique_ptr<ParallelFrameworkConfig> load_parallel_framework(const Config::Object& object);
std::unique_ptr<ParallelFrameworkConfig> default_parallel_framework();

/// Lists the frameworks and asks for one.
std::unique_ptr<ParallelFrameworkConfig> ask_parallel_framework();

}  // namespace lumo
