/// The closed family of exceptions. Serial form: the fields in order; a string is a 64-bit little-endian
/// length and its bytes, a number its raw little-endian bytes.
///
/// A location ("aligned_malloc()") goes into `function`; errors in user input carry an empty one.
#pragma once

#include <vector>

#include "lumo/foundation/errors/exception.h"
#include "lumo/foundation/types/types.h"

namespace lumo {

/// Supplies the operations that differ only by type, and the constructors of `Base`. `Derived` holds its name
/// as TYPENAME and can be built from a reader of bytes; it overrides serialize() if it adds fields.
template <typename Derived, typename Base>
class ExceptionOf : public Base {
 public:
    using Base::Base;
    [[noreturn]] void rethrow() const override { throw static_cast<const Derived&>(*this); }
    const char* get_typename() const override { return Derived::TYPENAME; }
    std::unique_ptr<Exception> move_to_heap() override {
        return std::make_unique<Derived>(std::move(static_cast<Derived&>(*this)));
    }
};

/// Writing side of the serial form.
void append_string(std::string& bytes, std::string_view text);
void append_u64(std::string& bytes, std::uint64_t value);
void append_i32(std::string& bytes, std::int32_t value);

/// Reads serialized fields; throws ParseException "Unexpected end of string." when they end early.
class FieldReader {
 public:
    explicit FieldReader(std::string_view bytes) : rest(bytes) {}
    std::string read_string();
    std::uint64_t read_u64();
    std::int32_t read_i32();

 private:
    std::string_view rest;
};

/// A thing was thrown that is neither of this family nor a std::exception.
class UnknownException final : public ExceptionOf<UnknownException, Exception> {
 public:
    static constexpr const char* TYPENAME = "UnknownException";
    void print() const override;
    void serialize(std::string& bytes) const override;
};

/// Carries the text of a std::exception across threads.
class StdException final : public ExceptionOf<StdException, Exception> {
 public:
    static constexpr const char* TYPENAME = "StdException";
    explicit StdException(std::string text) : message(std::move(text)) {}
    explicit StdException(FieldReader& reader) : message(reader.read_string()) {}
    void print() const override;
    void serialize(std::string& bytes) const override;
    std::string message;
};

class StringException : public Exception {
 public:
    static constexpr const char* TYPENAME = "StringException";
    StringException(std::string location, std::string text)
        : function(std::move(location)), message(std::move(text)) {}
    explicit StringException(FieldReader& reader)
        : function(reader.read_string()), message(reader.read_string()) {}
    [[noreturn]] void rethrow() const override { throw *this; }
    const char* get_typename() const override { return TYPENAME; }
    std::unique_ptr<Exception> move_to_heap() override {
        return std::make_unique<StringException>(std::move(*this));
    }
    void print() const override;
    void serialize(std::string& bytes) const override;

    std::string function;
    std::string message;

 protected:
    virtual void print_fields() const;  ///< the class-specific lines between the frame's newlines
};

class ParseException : public ExceptionOf<ParseException, StringException> {
 public:
    static constexpr const char* TYPENAME = "ParseException";
    using ExceptionOf::ExceptionOf;
};

class EndOfStreamException : public ExceptionOf<EndOfStreamException, ParseException> {
 public:
    static constexpr const char* TYPENAME = "EndOfStreamException";
    using ExceptionOf::ExceptionOf;
};

class KeyNotFoundException : public ExceptionOf<KeyNotFoundException, ParseException> {
 public:
    static constexpr const char* TYPENAME = "KeyNotFoundException";
    using ExceptionOf::ExceptionOf;
};

class InvalidParametersException : public ExceptionOf<InvalidParametersException, StringException> {
 public:
    static constexpr const char* TYPENAME = "InvalidParametersException";
    using ExceptionOf::ExceptionOf;
};

class InvalidTransformException : public ExceptionOf<InvalidTransformException, InvalidParametersException> {
 public:
    static constexpr const char* TYPENAME = "InvalidTransformException";
    using ExceptionOf::ExceptionOf;
};

class TransformTooSmallException : public ExceptionOf<TransformTooSmallException, InvalidTransformException> {
 public:
    static constexpr const char* TYPENAME = "TransformTooSmallException";
    using ExceptionOf::ExceptionOf;
};

class ArithmeticException : public ExceptionOf<ArithmeticException, StringException> {
 public:
    static constexpr const char* TYPENAME = "ArithmeticException";
    using ExceptionOf::ExceptionOf;
};

class AlgorithmFailedException : public ExceptionOf<AlgorithmFailedException, StringException> {
 public:
    static constexpr const char* TYPENAME = "AlgorithmFailedException";
    using ExceptionOf::ExceptionOf;
};

class ConvolutionFailedException : public ExceptionOf<ConvolutionFailedException, AlgorithmFailedException> {
 public:
    static constexpr const char* TYPENAME = "ConvolutionFailedException";
    using ExceptionOf::ExceptionOf;
};

class ResourceAcquisitionFailedException
    : public ExceptionOf<ResourceAcquisitionFailedException, StringException> {
 public:
    static constexpr const char* TYPENAME = "ResourceAcquisitionFailedException";
    using ExceptionOf::ExceptionOf;
};

class FarMemoryException : public ExceptionOf<FarMemoryException, StringException> {
 public:
    static constexpr const char* TYPENAME = "FarMemoryException";
    using ExceptionOf::ExceptionOf;
};

class UnsupportedValueException : public ExceptionOf<UnsupportedValueException, StringException> {
 public:
    static constexpr const char* TYPENAME = "UnsupportedValueException";
    using ExceptionOf::ExceptionOf;
};

class UnsupportedZeroException : public ExceptionOf<UnsupportedZeroException, UnsupportedValueException> {
 public:
    static constexpr const char* TYPENAME = "UnsupportedZeroException";
    using ExceptionOf::ExceptionOf;
};

class UnsupportedNegativeException
    : public ExceptionOf<UnsupportedNegativeException, UnsupportedValueException> {
 public:
    static constexpr const char* TYPENAME = "UnsupportedNegativeException";
    using ExceptionOf::ExceptionOf;
};

class ExponentOverflowException final : public ExceptionOf<ExponentOverflowException, ArithmeticException> {
 public:
    static constexpr const char* TYPENAME = "ExponentOverflowException";
    using ExceptionOf::ExceptionOf;

 protected:
    void print_fields() const override;
};

class ConvolutionTooSmallException final
    : public ExceptionOf<ConvolutionTooSmallException, InvalidTransformException> {
 public:
    static constexpr const char* TYPENAME = "ConvolutionTooSmallException";
    ConvolutionTooSmallException(std::string location, std::string text, upL_t size, upL_t requested)
        : ExceptionOf(std::move(location), std::move(text)),
          convolution_size(size),
          requested_size(requested) {}
    explicit ConvolutionTooSmallException(FieldReader& reader)
        : ExceptionOf(reader), convolution_size(reader.read_u64()), requested_size(reader.read_u64()) {}
    void serialize(std::string& bytes) const override;
    upL_t convolution_size;
    upL_t requested_size;

 protected:
    void print_fields() const override;
};

class LimitExceededException final : public ExceptionOf<LimitExceededException, StringException> {
 public:
    static constexpr const char* TYPENAME = "LimitExceededException";
    static constexpr upL_t UNKNOWN_LIMIT = ~upL_t(0);
    LimitExceededException(std::string location, std::string text, upL_t limit_, upL_t attempted_)
        : ExceptionOf(std::move(location), std::move(text)), limit(limit_), attempted(attempted_) {}
    explicit LimitExceededException(FieldReader& reader)
        : ExceptionOf(reader), limit(reader.read_u64()), attempted(reader.read_u64()) {}
    void serialize(std::string& bytes) const override;
    upL_t limit;
    upL_t attempted;

 protected:
    void print_fields() const override;
};

class BSRModularCheckFailedException final
    : public ExceptionOf<BSRModularCheckFailedException, AlgorithmFailedException> {
 public:
    static constexpr const char* TYPENAME = "BSRModularCheckFailedException";
    using HashPair = std::pair<std::uint64_t, std::uint64_t>;  ///< stored, computed
    BSRModularCheckFailedException(std::string location, std::string text, std::vector<HashPair> pairs)
        : ExceptionOf(std::move(location), std::move(text)), hashes(std::move(pairs)) {}
    explicit BSRModularCheckFailedException(FieldReader& reader);
    void serialize(std::string& bytes) const override;
    std::vector<HashPair> hashes;

 protected:
    void print_fields() const override;
};

class MemoryAllocationFailedException final
    : public ExceptionOf<MemoryAllocationFailedException, ResourceAcquisitionFailedException> {
 public:
    static constexpr const char* TYPENAME = "MemoryAllocationFailedException";
    MemoryAllocationFailedException(std::string location, std::string text, std::string type, upL_t bytes)
        : ExceptionOf(std::move(location), std::move(text)),
          allocation_type(std::move(type)),
          allocation_size(bytes) {}
    explicit MemoryAllocationFailedException(FieldReader& reader)
        : ExceptionOf(reader), allocation_type(reader.read_string()), allocation_size(reader.read_u64()) {}
    void serialize(std::string& bytes) const override;
    std::string allocation_type;
    upL_t allocation_size;

 protected:
    void print_fields() const override;
};

class SystemException final : public ExceptionOf<SystemException, Exception> {
 public:
    static constexpr const char* TYPENAME = "SystemException";
    SystemException(std::string location, std::string text, std::int64_t code_)
        : function(std::move(location)), message(std::move(text)), code(code_) {}
    explicit SystemException(FieldReader& reader);
    void print() const override;
    void serialize(std::string& bytes) const override;
    std::string function;
    std::string message;
    std::int64_t code;
};

class BufferTooSmallException final : public ExceptionOf<BufferTooSmallException, Exception> {
 public:
    static constexpr const char* TYPENAME = "BufferTooSmallException";
    BufferTooSmallException(std::string location, upL_t available, upL_t required)
        : function(std::move(location)), buffer_size(available), required_size(required) {}
    explicit BufferTooSmallException(FieldReader& reader);
    void print() const override;
    void serialize(std::string& bytes) const override;
    std::string function;
    upL_t buffer_size;
    upL_t required_size;
};

namespace FileIO {
class FileException : public ExceptionOf<FileException, Exception> {
 public:
    static constexpr const char* TYPENAME = "FileException";
    FileException(std::string location, std::string text, std::string file = {}, std::int32_t error = 0)
        : function(std::move(location)), message(std::move(text)), path(std::move(file)), error_code(error) {}
    explicit FileException(FieldReader& reader);
    void print() const override;
    void serialize(std::string& bytes) const override;
    std::string function;
    std::string message;
    std::string path;
    std::int32_t error_code;
};
}  // namespace FileIO

class FarMemoryOutOfBoundsException final : public ExceptionOf<FarMemoryOutOfBoundsException, Exception> {
 public:
    static constexpr const char* TYPENAME = "FarMemoryOutOfBoundsException";
    FarMemoryOutOfBoundsException(std::string location, upL_t size, upL_t offset, upL_t length)
        : function(std::move(location)), object_size(size), access_offset(offset), access_length(length) {}
    explicit FarMemoryOutOfBoundsException(FieldReader& reader);
    void print() const override;
    void serialize(std::string& bytes) const override;
    std::string function;
    upL_t object_size;
    upL_t access_offset;
    upL_t access_length;
};

/// The failures of a RAID framework of far memory: where and what.
class RaidException : public Exception {
 public:
    RaidException(std::string location, std::string text)
        : function(std::move(location)), message(std::move(text)) {}
    explicit RaidException(FieldReader& reader);
    void print() const override;
    void serialize(std::string& bytes) const override;
    std::string function;
    std::string message;
};

namespace DiskRaid0 {
class Raid0Exception final : public ExceptionOf<Raid0Exception, RaidException> {
 public:
    static constexpr const char* TYPENAME = "Raid0Exception";
    using ExceptionOf::ExceptionOf;
};
}  // namespace DiskRaid0

namespace R03 {
class Raid03Exception final : public ExceptionOf<Raid03Exception, RaidException> {
 public:
    static constexpr const char* TYPENAME = "Raid03Exception";
    using ExceptionOf::ExceptionOf;
};
}  // namespace R03

/// Throws BufferTooSmallException when `available` is below `required`. Out of line: hot paths hold a call.
void require_capacity(const char* location, upL_t available, upL_t required);

}  // namespace lumo

namespace velmora::StressTest {
class StressTestFailedException final
    : public lumo::ExceptionOf<StressTestFailedException, lumo::StringException> {
 public:
    static constexpr const char* TYPENAME = "StressTestFailedException";
    using ExceptionOf::ExceptionOf;
};
}  // namespace velmora::StressTest

namespace DigitViewer2 {
class InconsistentMetaData final
    : public lumo::ExceptionOf<InconsistentMetaData, lumo::FileIO::FileException> {
 public:
    static constexpr const char* TYPENAME = "InconsistentMetaData";
    using ExceptionOf::ExceptionOf;
};
}  // namespace DigitViewer2
