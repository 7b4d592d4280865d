#include <bit>
#include <cstring>

#include "lumo/foundation/errors/exceptions.h"

namespace lumo {

namespace {

static_assert(std::endian::native == std::endian::little, "fields are written as they lie in memory");

template <typename T>
void append_raw(std::string& bytes, T value) {
    char raw[sizeof(T)];
    std::memcpy(raw, &value, sizeof(T));
    bytes.append(raw, sizeof(T));
}

/// Built before they are needed: reading goes wrong when memory may be the thing that ran out.
const ParseException SHORT_STRING("", "Unexpected end of string.");
const ParseException SHORT_U64("", "Unexpected end of string.");
const ParseException SHORT_I32("", "Unexpected end of string.");

template <typename T>
T read_raw(std::string_view& rest, const ParseException& failure) {
    if (rest.size() < sizeof(T)) failure.rethrow();
    T value;
    std::memcpy(&value, rest.data(), sizeof(T));
    rest.remove_prefix(sizeof(T));
    return value;
}

}  // namespace

void append_string(std::string& bytes, std::string_view text) {
    append_u64(bytes, text.size());
    bytes += text;
}

void append_u64(std::string& bytes, std::uint64_t value) {
    append_raw(bytes, value);
}
void append_i32(std::string& bytes, std::int32_t value) {
    append_raw(bytes, value);
}

std::string FieldReader::read_string() {
    const auto length = read_raw<std::uint64_t>(rest, SHORT_STRING);
    if (length > rest.size()) SHORT_STRING.rethrow();
    std::string text(rest.substr(0, length));
    rest.remove_prefix(length);
    return text;
}

std::uint64_t FieldReader::read_u64() {
    return read_raw<std::uint64_t>(rest, SHORT_U64);
}
std::int32_t FieldReader::read_i32() {
    return read_raw<std::int32_t>(rest, SHORT_I32);
}

void UnknownException::serialize(std::string&) const {}

void StdException::serialize(std::string& bytes) const {
    append_string(bytes, message);
}

void StringException::serialize(std::string& bytes) const {
    append_string(bytes, function);
    append_string(bytes, message);
}

void ConvolutionTooSmallException::serialize(std::string& bytes) const {
    StringException::serialize(bytes);
    append_u64(bytes, convolution_size);
    append_u64(bytes, requested_size);
}

void LimitExceededException::serialize(std::string& bytes) const {
    StringException::serialize(bytes);
    append_u64(bytes, limit);
    append_u64(bytes, attempted);
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
    append_u64(bytes, hashes.size());
    for (const auto& [stored, computed] : hashes) {
        append_u64(bytes, stored);
        append_u64(bytes, computed);
    }
}

void MemoryAllocationFailedException::serialize(std::string& bytes) const {
    StringException::serialize(bytes);
    append_string(bytes, allocation_type);
    append_u64(bytes, allocation_size);
}

SystemException::SystemException(FieldReader& reader)
    : function(reader.read_string()),
      message(reader.read_string()),
      code(static_cast<std::int64_t>(reader.read_u64())) {}

void SystemException::serialize(std::string& bytes) const {
    append_string(bytes, function);
    append_string(bytes, message);
    append_u64(bytes, static_cast<std::uint64_t>(code));
}

BufferTooSmallException::BufferTooSmallException(FieldReader& reader)
    : function(reader.read_string()), buffer_size(reader.read_u64()), required_size(reader.read_u64()) {}

void BufferTooSmallException::serialize(std::string& bytes) const {
    append_string(bytes, function);
    append_u64(bytes, buffer_size);
    append_u64(bytes, required_size);
}

FileIO::FileException::FileException(FieldReader& reader)
    : function(reader.read_string()),
      message(reader.read_string()),
      path(reader.read_string()),
      error_code(reader.read_i32()) {}

void FileIO::FileException::serialize(std::string& bytes) const {
    append_string(bytes, function);
    append_string(bytes, message);
    append_string(bytes, path);
    append_i32(bytes, error_code);
}

FarMemoryOutOfBoundsException::FarMemoryOutOfBoundsException(FieldReader& reader)
    : function(reader.read_string()),
      object_size(reader.read_u64()),
      access_offset(reader.read_u64()),
      access_length(reader.read_u64()) {}

void FarMemoryOutOfBoundsException::serialize(std::string& bytes) const {
    append_string(bytes, function);
    append_u64(bytes, object_size);
    append_u64(bytes, access_offset);
    append_u64(bytes, access_length);
}

RaidException::RaidException(FieldReader& reader)
    : function(reader.read_string()), message(reader.read_string()) {}

void RaidException::serialize(std::string& bytes) const {
    append_string(bytes, function);
    append_string(bytes, message);
}

}  // namespace lumo
