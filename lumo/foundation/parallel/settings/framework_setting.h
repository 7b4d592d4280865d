/// One setting of a framework: reading, writing, printing and asking for it.
#pragma once

#include "lumo/foundation/config/value.h"
#include "lumo/foundation/parallel/dispatch/fan_out.h"

namespace lumo {

inline constexpr upL_t MAX_WORKER_THREADS = 0x10000;

/// The values of all settings; a framework looks at its own.
struct FrameworkValues {
    bool async_only = true;
    upL_t worker_threads = 0;  ///< up to 65536; 0 is unlimited
    bool randomization = true;
    upL_t max_sequential_dispatch = DEFAULT_MAX_SEQUENTIAL_DISPATCH;  ///< at least 4
};

struct FrameworkSetting {
    const char* label;
    std::string (*text)(const FrameworkValues&);
    /// Keeps the value when the key is absent; corrects a number that is out of range.
    void (*load)(FrameworkValues&, const Config::Object&);
    /// For display a number may stand in an object with its formatted text.
    void (*add)(const FrameworkValues&, Config::Object&, bool for_display);
    /// Turns a flag over, asks on the console for a number.
    void (*change)(FrameworkValues&);
};

/// `AsyncOnly` and `Randomization` are "true" or "false"; ParseException "Expected true or false.".
extern const FrameworkSetting ASYNC_ONLY, RANDOMIZATION;
/// `WorkerThreads`; InvalidParametersException for a negative number.
extern const FrameworkSetting WORKER_THREADS;
/// `MaxSequentialDispatch`.
extern const FrameworkSetting MAX_SEQUENTIAL_DISPATCH;

}  // namespace lumo
