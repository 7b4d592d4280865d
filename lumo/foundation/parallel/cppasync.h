/// The framework "cppasync": the asynchronous tasks of the standard library.
#pragma once

#include <future>

#include "lumo/foundation/parallel/basic_parallelizer.h"

namespace lumo {

class CppAsyncParallelizer final : public BasicParallelizer {
 public:
    /// `async_only`: always a new thread; otherwise the library may also run the task when it is waited for.
    CppAsyncParallelizer(bool async_only, upL_t max_sequential_dispatch);
    using BasicParallelizer::run_in_parallel;
    void run_in_parallel(BasicAction& a, BasicAction& b) override;
    void run_in_parallel(BasicAction& action, upL_t start, upL_t end) override;

 private:
    const std::launch policy;
    const upL_t max_sequential;
};

}  // namespace lumo
