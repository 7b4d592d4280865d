#include "lumo/foundation/parallel/dispatch/exception_holder.h"

#include <memory>

#include "lumo/foundation/errors/fatal.h"

namespace lumo {

ExceptionHolder::~ExceptionHolder() {
    delete stored.load(std::memory_order_acquire);
    if (!checked && std::uncaught_exceptions() == 0) abort_with("Exceptions not handled!");
}

void ExceptionHolder::store_current() noexcept {
    auto wrapped = std::make_unique<std::exception_ptr>(std::current_exception());
    std::exception_ptr* expected = nullptr;
    if (stored.compare_exchange_strong(expected, wrapped.get(), std::memory_order_acq_rel)) wrapped.release();
}

void ExceptionHolder::rethrow() {
    checked = true;
    if (std::uncaught_exceptions() > 0) return;
    if (std::exception_ptr* wrapped = stored.load(std::memory_order_acquire))
        std::rethrow_exception(*wrapped);
}

}  // namespace lumo
