#pragma once

#include "lumo/foundation/console/console.h"

namespace velmora {

/// Colours are off and nothing pauses while this lives; the settings come back afterwards.
class PlainConsole {
 public:
    PlainConsole() : saved(lumo::Console::settings()) {
        lumo::Console::settings().colors_enabled = false;
        lumo::Console::settings().pause_on_fatal = false;
    }
    ~PlainConsole() { lumo::Console::settings() = saved; }
    PlainConsole(const PlainConsole&) = delete;
    PlainConsole& operator=(const PlainConsole&) = delete;

 private:
    const lumo::Console::Settings saved;
};

}  // namespace velmora
