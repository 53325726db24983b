#include "core/letters.h"

#include <algorithm>

#include "core/text.h"

namespace qob {
namespace {

constexpr std::size_t kExcerpt = 80;  // bytes of a text that a message shows

constexpr bool is_plain(char c) { return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9'); }

// Blanks, line ends, the blanks of typesetters, marks of byte order.
bool is_space(char32_t c) {
  return c == ' ' || (c >= '\t' && c <= '\r') || c == 0xA0 || (c >= 0x2000 && c <= 0x200B) ||
         c == 0x202F || c == 0x3000 || c == 0xFEFF;
}

// ASCII, Latin-1 and Latin Extended-A. What is not as it was has at most two bytes.
char32_t lower(char32_t c) {
  if ((c >= 'A' && c <= 'Z') || (c >= 0xC0 && c <= 0xDE && c != 0xD7)) return c + 0x20;
  if (c == 0x130) return 'i';
  if (c == 0x178) return 0xFF;
  if (c == 0x17F) return 's';
  if (c == 0x1E9E) return 0xDF;
  if ((c >= 0x100 && c <= 0x137) || (c >= 0x14A && c <= 0x177)) return c | 1;
  if ((c >= 0x139 && c <= 0x148) || (c >= 0x179 && c <= 0x17E)) return c + (c & 1);
  return c;
}

// The plain letters of U+00C0 to U+017F; capitals stand for the pairs behind them.
constexpr std::string_view kLetters =
    "aaaaaaAceeeeiiiidnooooo ouuuuyTSaaaaaaAceeeeiiiidnooooo ouuuuyTy"
    "aaaaaaccccccccddddeeeeeeeeeegggggggghhhhiiiiiiiiiiIIjjkkkllllllllll"
    "nnnnnnnnnooooooOOrrrrrrssssssssttttttuuuuuuuuuuuuwwyyyzzzzzzs";
constexpr std::string_view kPairs = "AaeIijOoeSssTth";
static_assert(kLetters.size() == 0x180 - 0xC0);

}  // namespace

Character first_character(std::string_view text) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  if (byte(0) < 0x80) return {byte(0), 1};
  const std::size_t length = byte(0) < 0xE0 ? 2 : byte(0) < 0xF0 ? 3 : 4;
  if (byte(0) < 0xC0 || byte(0) > 0xF4 || text.size() < length) return {kNoCharacter, 1};
  char32_t code = byte(0) & (0x7Fu >> length);
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return {kNoCharacter, 1};
    code = code << 6 | (byte(i) & 0x3Fu);
  }
  if (code < (length == 2 ? 0x80u : length == 3 ? 0x800u : 0x10000u)) return {kNoCharacter, 1};
  if ((code >= 0xD800 && code < 0xE000) || code > 0x10FFFF) return {kNoCharacter, 1};
  return {code, length};
}

std::string folded(std::string_view text) {
  std::string out;
  for_each_character(text, [&](char32_t c, std::string_view bytes) {
    const char32_t low = lower(c);
    if (is_space(c)) return;
    if (low == c) {
      out += bytes;
    } else if (low < 0x80) {
      out += static_cast<char>(low);
    } else {
      out += {static_cast<char>(0xC0 | low >> 6), static_cast<char>(0x80 | (low & 0x3F))};
    }
  });
  return out;
}

std::string plain(std::string_view text) {
  std::string out;
  for_each_character(text, [&](char32_t c, std::string_view) {
    const char32_t low = lower(c);
    const bool accented = low >= 0xC0 && low < 0x180;
    const char letter = accented ? kLetters[low - 0xC0] : low < 0x80 ? static_cast<char>(low) : ' ';
    const std::size_t pair = kPairs.find(letter);
    if (accented && letter >= 'A' && letter <= 'Z') out += kPairs.substr(pair + 1, 2);
    if (is_plain(letter)) out += letter;
  });
  return out;
}

std::string_view without_blanks(std::string_view text) {
  const auto begins_with_space = [&] { return is_space(first_character(text).code); };
  while (!text.empty() && begins_with_space()) text.remove_prefix(first_character(text).length);
  const auto last = [&] {  // the last character begins at most three bytes before the last byte
    std::size_t at = text.size() - 1;
    while (at > 0 && at + 3 > text.size() && (text[at] & 0xC0) == 0x80) --at;
    return text.substr(at);
  };
  while (!text.empty() && is_space(first_character(last()).code)) text.remove_suffix(last().size());
  return text;
}

std::string_view first_bytes(std::string_view text, std::size_t most) {
  std::size_t end = 0;
  while (end < text.size()) {
    const std::size_t length = first_character(text.substr(end)).length;
    if (end + length > most) break;
    end += length;
  }
  return text.substr(0, end);
}

std::string_view last_bytes(std::string_view text, std::size_t most) {
  while (text.size() > most) text.remove_prefix(first_character(text).length);
  return text;
}

std::string valid_utf8(std::string_view text) {
  std::string out;
  for_each_character(text, [&](char32_t c, std::string_view bytes) {
    out += c == kNoCharacter ? std::string_view("\xEF\xBF\xBD") : bytes;
  });
  return out;
}

std::string excerpt(std::string_view text) {
  const std::string_view first = first_bytes(text, kExcerpt);
  return printable(first) + (first.size() < text.size() ? "..." : "");
}

}  // namespace qob
