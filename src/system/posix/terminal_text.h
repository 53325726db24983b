// What a standard stream may show: a terminal obeys control characters, also those of 8 bits.
#pragma once

#include <string_view>

namespace qob {

// Takes the next piece of `text` that may be shown: "?" in place of a control character from U+0080
// to U+009F, and of every byte of these values that is no part of a character of UTF-8; else all up
// to the next of them. It asks for no memory: the message that none is left passes here.
std::string_view take_shown(std::string_view& text);

}  // namespace qob
