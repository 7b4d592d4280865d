#include "lumo/foundation/digest/sha2.h"

#include <algorithm>
#include <cstring>

#include "lumo/foundation/digest/sha2_blocks.h"
#include "lumo/foundation/digest/sha2_constants.h"

namespace lumo {

namespace {

void take_blocks(std::uint32_t* state, const std::uint8_t* data, std::size_t count) {
    if (has_sha_instructions())
        sha256_blocks_native(state, data, count);
    else
        sha2_blocks_portable(state, data, count);
}

void take_blocks(std::uint64_t* state, const std::uint8_t* data, std::size_t count) {
    sha2_blocks_portable(state, data, count);
}

template <typename word>
void store_big_endian(std::uint8_t* bytes, word value) {
    for (std::size_t i = 0; i < sizeof(word); i++)
        bytes[i] = static_cast<std::uint8_t>(value >> (8 * (sizeof(word) - 1 - i)));
}

template <typename word>
typename Sha2<word>::State initial_state() {
    typename Sha2<word>::State state;
    for (std::size_t i = 0; i < 8; i++)
        state[i] = static_cast<word>(Sha2Constants::SQUARE_ROOTS[i] >> (64 - 8 * sizeof(word)));
    return state;
}

}  // namespace

template <typename word>
Sha2<word>::Sha2() : state(initial_state<word>()) {}

template <typename word>
void Sha2<word>::update(const void* data, std::size_t bytes) {
    if (bytes == 0) return;
    const auto* from = static_cast<const std::uint8_t*>(data);
    const std::size_t held = length % BLOCK_BYTES;
    length += bytes;
    if (held > 0) {
        const std::size_t taken = std::min(bytes, BLOCK_BYTES - held);
        std::memcpy(pending + held, from, taken);
        from += taken;
        bytes -= taken;
        if (held + taken < BLOCK_BYTES) return;
        take_blocks(state.data(), pending, 1);
    }
    take_blocks(state.data(), from, bytes / BLOCK_BYTES);
    const std::size_t rest = bytes % BLOCK_BYTES;
    if (rest > 0) std::memcpy(pending, from + bytes - rest, rest);
}

template <typename word>
typename Sha2<word>::Digest Sha2<word>::final() {
    // A one bit, zeros, and the length in bits as two words, up to a whole number of blocks. The length is
    // below 2^67 bits, so for 64-bit words its upper word holds three bits at most.
    const std::uint64_t message_bytes = length;
    const std::size_t held = message_bytes % BLOCK_BYTES;
    const std::size_t field = 2 * sizeof(word);
    const std::size_t blocks = held + 1 + field <= BLOCK_BYTES ? 1 : 2;
    std::uint8_t tail[2 * BLOCK_BYTES] = {};
    std::memcpy(tail, pending, held);
    tail[held] = 0x80;
    std::uint8_t* end = tail + blocks * BLOCK_BYTES;
    store_big_endian<std::uint64_t>(end - 8, message_bytes << 3);
    if (sizeof(word) == 8) store_big_endian<std::uint64_t>(end - 16, message_bytes >> 61);
    take_blocks(state.data(), tail, blocks);

    Digest result;
    for (std::size_t i = 0; i < 8; i++) store_big_endian(result.data() + i * sizeof(word), state[i]);
    *this = Sha2();
    return result;
}

template <typename word>
typename Sha2<word>::Digest Sha2<word>::digest(std::string_view message) {
    Sha2 hash;
    hash.update(message);
    return hash.final();
}

template class Sha2<std::uint32_t>;
template class Sha2<std::uint64_t>;

std::string to_hex(const std::uint8_t* bytes, std::size_t count) {
    static constexpr char DIGITS[] = "0123456789abcdef";
    std::string text;
    text.reserve(2 * count);
    for (std::size_t i = 0; i < count; i++) {
        text += DIGITS[bytes[i] >> 4];
        text += DIGITS[bytes[i] & 15];
    }
    return text;
}

}  // namespace lumo
