/// The compression functions of SHA-2 over whole blocks.
#pragma once

#include <cstddef>
#include <cstdint>

namespace lumo {

/// Takes `count` blocks of 16 words, big-endian and of any alignment, into the state of 8 words.
template <typename word>
void sha2_blocks_portable(word* state, const std::uint8_t* data, std::size_t count);

extern template void sha2_blocks_portable(std::uint32_t*, const std::uint8_t*, std::size_t);
extern template void sha2_blocks_portable(std::uint64_t*, const std::uint8_t*, std::size_t);

/// The same for SHA-256 by the processor's own instructions, which it must have: see has_sha_instructions().
void sha256_blocks_native(std::uint32_t* state, const std::uint8_t* data, std::size_t count);
bool has_sha_instructions();

}  // namespace lumo
