#include <map>

#include "lumo/foundation/console/console.h"
#include "lumo/foundation/errors/exceptions.h"
#include "lumo/foundation/errors/fatal.h"

namespace lumo {

namespace {

using Registry = std::map<std::string, ExceptionRebuilder>;

template <typename T>
std::unique_ptr<Exception> rebuild_as(std::string_view bytes) {
    FieldReader reader(bytes);
    return std::make_unique<T>(reader);
}

template <typename... Types>
Registry registry_of() {
    return {{Types::TYPENAME, &rebuild_as<Types>}...};
}

/// Built on first use, so that registrations of other files may come in any order.
Registry& registry() {
    static Registry instance =
        registry_of<StdException, StringException, SystemException, ParseException, EndOfStreamException,
                    KeyNotFoundException, InvalidParametersException, BufferTooSmallException,
                    ArithmeticException, ExponentOverflowException, LimitExceededException,
                    AlgorithmFailedException, ResourceAcquisitionFailedException,
                    MemoryAllocationFailedException, FileIO::FileException, FarMemoryException,
                    FarMemoryOutOfBoundsException, DiskRaid0::Raid0Exception, R03::Raid03Exception,
                    InvalidTransformException, TransformTooSmallException, ConvolutionTooSmallException,
                    ConvolutionFailedException, UnsupportedValueException, UnsupportedZeroException,
                    UnsupportedNegativeException, BSRModularCheckFailedException,
                    DigitViewer2::InconsistentMetaData, velmora::StressTest::StressTestFailedException>();
    return instance;
}

/// Read-only from main() on: worker threads look names up without a lock.
[[maybe_unused]] const Registry& built_before_main = registry();

}  // namespace

void register_exception(const std::string& name, ExceptionRebuilder rebuilder) {
    if (registry().emplace(name, rebuilder).second) return;
    Console::print_error("Duplicate Exception Type");
    exit_with_pause(1);
}

std::unique_ptr<Exception> rebuild_exception(const std::string& name, std::string_view bytes) {
    const auto found = registry().find(name);
    if (found == registry().end()) throw KeyNotFoundException("", "Unknown exception type: " + name);
    return found->second(bytes);
}

std::unique_ptr<Exception> capture_current_exception() {
    if (!std::current_exception()) abort_with("Exceptions not handled!");
    try {
        throw;
    } catch (Exception& e) {
        return e.move_to_heap();
    } catch (const std::exception& e) {
        return std::make_unique<StdException>(e.what());
    } catch (...) {
        return std::make_unique<UnknownException>();
    }
}

}  // namespace lumo
