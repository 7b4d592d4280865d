/// Root of the one family of exceptions of the program.
///
/// Each class can name itself, print itself in a fixed layout, rethrow itself from a base reference, move itself to
/// the heap, to be handed on with its full type, and write itself to bytes, from which it can be rebuilt.
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace lumo {

class Exception {
 public:
    virtual ~Exception() = default;
    [[noreturn]] virtual void rethrow() const = 0;  ///< throws a copy under the most derived type
    virtual const char* get_typename() const = 0;   ///< class name without namespace
    virtual std::unique_ptr<Exception> move_to_heap() = 0;
    virtual void print() const = 0;  ///< prints the layout of the class under the console lock
    virtual void serialize(std::string& bytes) const = 0;

 protected:
    Exception() = default;
    Exception(const Exception&) = default;
    Exception(Exception&&) = default;
    Exception& operator=(const Exception&) = default;
    Exception& operator=(Exception&&) = default;
};

/// The exception being handled, moved to the heap: of this family as it is, a std::exception as StdException,
/// anything else as UnknownException. To be called inside a catch clause; outside one the process ends with
/// "Exceptions not handled!".
std::unique_ptr<Exception> capture_current_exception();

/// Rebuilds an exception from the bytes that serialize() wrote. Throws ParseException when they end early.
using ExceptionRebuilder = std::unique_ptr<Exception> (*)(std::string_view bytes);

/// Called during static initialisation, once a class. A second call with a name ends the program. The classes
/// of exceptions.h are registered before the first call returns, whatever the order of initialisation.
void register_exception(const std::string& name, ExceptionRebuilder rebuilder);
/// The type named, rebuilt. Throws KeyNotFoundException for a name that is not registered.
std::unique_ptr<Exception> rebuild_exception(const std::string& name, std::string_view bytes);

}  // namespace lumo
