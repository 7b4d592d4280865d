/// Carries an exception from the thread of a task to the thread that waits for it.
#pragma once

#include <atomic>
#include <exception>

namespace lumo {

/// The first exception stored wins; later ones are dropped. Destroying a holder whose content nobody looked
/// at is fatal ("Exceptions not handled!"), unless another exception is unwinding the thread.
class ExceptionHolder {
 public:
    ExceptionHolder() = default;
    ExceptionHolder(const ExceptionHolder&) = delete;
    ExceptionHolder& operator=(const ExceptionHolder&) = delete;
    ~ExceptionHolder();

    /// Inside a catch clause: keeps the exception being handled. Any thread may call.
    void store_current() noexcept;
    void mark_checked() noexcept { checked = true; }
    /// Marks the holder checked and throws what it holds, if anything. Does nothing while another exception
    /// unwinds the thread.
    void rethrow();

    /// Runs f, keeping whatever it throws.
    template <typename F>
    void run_guarded(F&& f) noexcept {
        try {
            f();
        } catch (...) {
            store_current();
        }
    }

 private:
    bool checked = false;
    std::atomic<std::exception_ptr*> stored{nullptr};
};

}  // namespace lumo
