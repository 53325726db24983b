// How the bytes of a text file stand for characters.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace qob {

enum class Encoding : std::uint8_t { kUtf8, kUtf16, kWindows1252, kBinary };

// Turns the bytes of a text file into UTF-8 with LF line ends, without a byte order mark, and says
// what they were. UTF-16 is known by its mark or by the zeros between Latin letters; what is not
// UTF-8 is Windows-1252, a superset of what ISO 8859-1 prints. kBinary: a NUL is left, so that it
// is no text.
Encoding decode_text(std::string& bytes);

// The bytes that one character of UTF-8 takes at the start of `text`, which is not empty: 1 to 4;
// 0 if they are no character.
std::size_t character_size(std::string_view text);

// `text` as a message names it: its first characters, if it is long, and no control characters.
std::string excerpt(std::string_view text);

}  // namespace qob
