// What a standard stream may show: a terminal obeys control characters, also those of 8 bits.
#pragma once

#include <string>
#include <string_view>

namespace qob {

// `text` with "?" for every control character from U+0080 to U+009F, and for every byte of these
// values that is no part of a character of UTF-8.
std::string terminal_text(std::string_view text);

}  // namespace qob
