/// SHA-256 and SHA-512 (FIPS 180-4), fed in pieces.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

namespace lumo {

/// `word` is std::uint32_t for SHA-256 and std::uint64_t for SHA-512. Not for use by two threads at once.
template <typename word>
class Sha2 {
    static_assert(std::is_same_v<word, std::uint32_t> || std::is_same_v<word, std::uint64_t>);

 public:
    static constexpr std::size_t BLOCK_BYTES = 16 * sizeof(word);
    static constexpr std::size_t DIGEST_BYTES = 8 * sizeof(word);
    using State = std::array<word, 8>;
    using Digest = std::array<std::uint8_t, DIGEST_BYTES>;

    Sha2();
    /// Appends bytes of the message.
    void update(const void* data, std::size_t bytes);
    void update(std::string_view text) { update(text.data(), text.size()); }
    /// The digest of all that was fed. The object then stands as newly made.
    Digest final();

    static Digest digest(std::string_view message);

 private:
    State state;
    std::uint64_t length = 0;  ///< bytes fed
    std::uint8_t pending[BLOCK_BYTES];
};

extern template class Sha2<std::uint32_t>;
extern template class Sha2<std::uint64_t>;

using Sha256 = Sha2<std::uint32_t>;
using Sha512 = Sha2<std::uint64_t>;

/// Lower-case hexadecimal digits, most significant first.
std::string to_hex(const std::uint8_t* bytes, std::size_t count);

template <std::size_t count>
std::string to_hex(const std::array<std::uint8_t, count>& bytes) {
    return to_hex(bytes.data(), count);
}

}  // namespace lumo
