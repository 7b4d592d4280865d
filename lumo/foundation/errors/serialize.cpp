#include <bit>
#include <cstring>

#include "lumo/foundation/errors/exceptions.h"

namespace lumo {

namespace {

static_assert(std::endian::native == std::endian::little, "fields are written as they lie in memory");

/// Built before it is needed: reading goes wrong when memory may be the thing that ran out.
const ParseException ENDED_EARLY("", "Unexpected end of string.");

template <typename T>
T read_raw(std::string_view& rest) {
    if (rest.size() < sizeof(T)) ENDED_EARLY.rethrow();
    T value;
    std::memcpy(&value, rest.data(), sizeof(T));
    rest.remove_prefix(sizeof(T));
    return value;
}

}  // namespace

void append_field(std::string& bytes, std::string_view text) {
    append_field(bytes, std::uint64_t(text.size()));
    bytes += text;
}

std::string FieldReader::read_string() {
    const auto length = read_raw<std::uint64_t>(rest);
    if (length > rest.size()) ENDED_EARLY.rethrow();
    std::string text(rest.substr(0, length));
    rest.remove_prefix(length);
    return text;
}

std::uint64_t FieldReader::read_u64() {
    return read_raw<std::uint64_t>(rest);
}
std::int32_t FieldReader::read_i32() {
    return read_raw<std::int32_t>(rest);
}

void UnknownException::serialize(std::string&) const {}

void StdException::serialize(std::string& bytes) const {
    append_field(bytes, message);
}

void StringException::serialize(std::string& bytes) const {
    append_fields(bytes, function, message);
}

void ConvolutionTooSmallException::serialize(std::string& bytes) const {
    StringException::serialize(bytes);
    append_fields(bytes, convolution_size, requested_size);
}

void LimitExceededException::serialize(std::string& bytes) const {
    StringException::serialize(bytes);
    append_fields(bytes, limit, attempted);
}

BSRModularCheckFailedException::BSRModularCheckFailedException(FieldReader& reader) : ExceptionOf(reader) {
    // Grows as pairs are read: a damaged count must not become an allocation.
    for (std::uint64_t count = reader.read_u64(); count > 0; count--) {
        const std::uint64_t stored = reader.read_u64();
        const std::uint64_t computed = reader.read_u64();
        hashes.emplace_back(stored, computed);
    }
}

void BSRModularCheckFailedException::serialize(std::string& bytes) const {
    StringException::serialize(bytes);
    append_field(bytes, std::uint64_t(hashes.size()));
    for (const auto& [stored, computed] : hashes) append_fields(bytes, stored, computed);
}

void MemoryAllocationFailedException::serialize(std::string& bytes) const {
    StringException::serialize(bytes);
    append_fields(bytes, allocation_type, allocation_size);
}

SystemException::SystemException(FieldReader& reader)
    : function(reader.read_string()),
      message(reader.read_string()),
      code(static_cast<std::int64_t>(reader.read_u64())) {}

void SystemException::serialize(std::string& bytes) const {
    append_fields(bytes, function, message, code);
}

BufferTooSmallException::BufferTooSmallException(FieldReader& reader)
    : function(reader.read_string()), buffer_size(reader.read_u64()), required_size(reader.read_u64()) {}

void BufferTooSmallException::serialize(std::string& bytes) const {
    append_fields(bytes, function, buffer_size, required_size);
}

FileIO::FileException::FileException(FieldReader& reader)
    : function(reader.read_string()),
      message(reader.read_string()),
      path(reader.read_string()),
      error_code(reader.read_i32()) {}

void FileIO::FileException::serialize(std::string& bytes) const {
    append_fields(bytes, function, message, path, error_code);
}

FarMemoryOutOfBoundsException::FarMemoryOutOfBoundsException(FieldReader& reader)
    : function(reader.read_string()),
      object_size(reader.read_u64()),
      access_offset(reader.read_u64()),
      access_length(reader.read_u64()) {}

void FarMemoryOutOfBoundsException::serialize(std::string& bytes) const {
    append_fields(bytes, function, object_size, access_offset, access_length);
}

RaidException::RaidException(FieldReader& reader)
    : function(reader.read_string()), message(reader.read_string()) {}

void RaidException::serialize(std::string& bytes) const {
    append_fields(bytes, function, message);
}

}  // namespace lumo
