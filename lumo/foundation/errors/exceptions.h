/// The closed family of exceptions. Serial form: the fields in order; a string is a 64-bit little-endian
/// length and its bytes, a number its raw little-endian bytes.
///
/// A location ("aligned_malloc()") goes into `function`; errors in user input carry an empty one.
#pragma once

#include <algorithm>
#include <concepts>
#include <vector>

#include "lumo/foundation/errors/exception.h"
#include "lumo/foundation/types/types.h"

namespace lumo {

/// A text as a template argument.
template <std::size_t N>
struct FixedText {
    char text[N];
    constexpr FixedText(const char (&from)[N]) { std::copy_n(from, N, text); }
};

/// A class that adds a name only.
template <FixedText NAME, typename Base>
class NamedException : public Base {
 public:
    static constexpr const char* TYPENAME = NAME.text;
    using Base::Base;
    [[noreturn]] void rethrow() const override { throw *this; }
    const char* get_typename() const override { return TYPENAME; }
    std::unique_ptr<Exception> move_to_heap() override {
        return std::make_unique<NamedException>(std::move(*this));
    }
};

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
void append_field(std::string& bytes, std::string_view text);
template <std::integral Number>
void append_field(std::string& bytes, Number value) {
    bytes.append(reinterpret_cast<const char*>(&value), sizeof(value));
}
template <typename... Fields>
void append_fields(std::string& bytes, const Fields&... fields) {
    (append_field(bytes, fields), ...);
}

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

class StringException : public ExceptionOf<StringException, Exception> {
 public:
    static constexpr const char* TYPENAME = "StringException";
    StringException(std::string location, std::string text)
        : function(std::move(location)), message(std::move(text)) {}
    explicit StringException(FieldReader& reader)
        : function(reader.read_string()), message(reader.read_string()) {}
    void print() const override;
    void serialize(std::string& bytes) const override;

    std::string function;
    std::string message;

 protected:
    virtual void print_fields() const;  ///< the class-specific lines between the frame's newlines
};

using ParseException = NamedException<"ParseException", StringException>;
using EndOfStreamException = NamedException<"EndOfStreamException", ParseException>;
using KeyNotFoundException = NamedException<"KeyNotFoundException", ParseException>;
using InvalidParametersException = NamedException<"InvalidParametersException", StringException>;
using InvalidTransformException = NamedException<"InvalidTransformException", InvalidParametersException>;
using TransformTooSmallException = NamedException<"TransformTooSmallException", InvalidTransformException>;
using ArithmeticException = NamedException<"ArithmeticException", StringException>;
using AlgorithmFailedException = NamedException<"AlgorithmFailedException", StringException>;
using ConvolutionFailedException = NamedException<"ConvolutionFailedException", AlgorithmFailedException>;
using ResourceAcquisitionFailedException =
    NamedException<"ResourceAcquisitionFailedException", StringException>;
using FarMemoryException = NamedException<"FarMemoryException", StringException>;
using UnsupportedValueException = NamedException<"UnsupportedValueException", StringException>;
using UnsupportedZeroException = NamedException<"UnsupportedZeroException", UnsupportedValueException>;
using UnsupportedNegativeException =
    NamedException<"UnsupportedNegativeException", UnsupportedValueException>;

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
using Raid0Exception = NamedException<"Raid0Exception", RaidException>;
}  // namespace DiskRaid0

namespace R03 {
using Raid03Exception = NamedException<"Raid03Exception", RaidException>;
}  // namespace R03

/// Throws BufferTooSmallException when `available` is below `required`. Out of line: hot paths hold a call.
void require_capacity(const char* location, upL_t available, upL_t required);

}  // namespace lumo

namespace velmora::StressTest {
using StressTestFailedException = lumo::NamedException<"StressTestFailedException", lumo::StringException>;
}  // namespace velmora::StressTest

namespace DigitViewer2 {
using InconsistentMetaData = lumo::NamedException<"InconsistentMetaData", lumo::FileIO::FileException>;
}  // namespace DigitViewer2
