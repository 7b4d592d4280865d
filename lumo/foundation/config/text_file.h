/// Files of text as editors leave them.
#pragma once

#include <string>
#include <string_view>

namespace lumo::Config {

/// Larger files are refused: they are digits or data named by mistake.
inline constexpr std::size_t MAX_TEXT_FILE_BYTES = std::size_t(64) << 20;

/// The whole file as UTF-8. A file that opens with the bytes FF FE is UTF-16 little-endian and is converted;
/// any other is taken as it is, without a UTF-8 byte-order mark. Throws FileIO::FileException for a file
/// that cannot be opened or read, is a folder, or is too large.
std::string read_text_file(const std::string& path);

/// UTF-16 little-endian bytes, without a byte-order mark, to UTF-8. Unpaired surrogates and an odd last byte
/// become U+FFFD.
std::string utf16le_to_utf8(std::string_view bytes);

}  // namespace lumo::Config
