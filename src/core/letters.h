// Characters of UTF-8 texts, and what of them counts where texts are compared or shown.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace qob {

// A character and its length in bytes; a byte that is no UTF-8 is kNoCharacter, of length 1.
struct Character {
  char32_t code;
  std::size_t length;
};
inline constexpr char32_t kNoCharacter = 0xFFFFFFFF;

// The first of a text that is not empty.
Character first_character(std::string_view text);

// Calls `use(code, bytes)` for each character.
template <class Use>
void for_each_character(std::string_view text, Use use) {
  while (!text.empty()) {
    const auto [code, length] = first_character(text);
    use(code, text.substr(0, length));
    text.remove_prefix(length);
  }
}

// `text` without the blanks about it, among them line ends and those of typesetters.
std::string_view without_blanks(std::string_view text);

// `text` without blanks and in lower case, to tell identifiers that differ in nothing else: "DE 12"
// and "de12" are the same. UTF-8; bytes that are none stay as they are.
std::string folded(std::string_view text);

// The lower-case ASCII letters and digits of `text`, of letters with accents the letter ("Käl-be"
// is "kalbe", "æ" is "ae", "ß" is "ss"); all else is dropped.
std::string plain(std::string_view text);

// `text` as a message names it: its first characters, if it is long, and no control characters.
std::string excerpt(std::string_view text);

// `text` with U+FFFD for each byte that is no UTF-8.
std::string valid_utf8(std::string_view text);

// Its first bytes, at most `most`, or its last, cut between characters.
std::string_view first_bytes(std::string_view text, std::size_t most);
std::string_view last_bytes(std::string_view text, std::size_t most);

}  // namespace qob
