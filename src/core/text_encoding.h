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

}  // namespace qob
