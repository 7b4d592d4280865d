/// Registers a class of the exception family that is declared above the foundation:
///
///     const ExceptionRegistration<StressTestFailedException> registration;
///
/// at namespace scope, in a source file that the program links for other reasons too: the linker drops the
/// objects of a library that nobody refers to.
#pragma once

#include "lumo/foundation/errors/exceptions.h"

namespace lumo {

template <typename T>
std::unique_ptr<Exception> rebuild_as(std::string_view bytes) {
    FieldReader reader(bytes);
    return std::make_unique<T>(reader);
}

template <typename T>
struct ExceptionRegistration {
    ExceptionRegistration() { register_exception(T::TYPENAME, &rebuild_as<T>); }
};

}  // namespace lumo
