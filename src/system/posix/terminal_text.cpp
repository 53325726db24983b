#include "system/posix/terminal_text.h"

#include <algorithm>
#include <utility>

namespace qob {
namespace {

bool is_within(char c, unsigned first, unsigned last) {
  const auto byte = static_cast<unsigned char>(c);
  return byte >= first && byte <= last;
}

// The bytes of the character of UTF-8 that begins the text; 1 for what begins none.
std::size_t character_size(std::string_view text) {
  const char first = text.front();
  const std::size_t size = is_within(first, 0xC2, 0xDF)   ? 2
                           : is_within(first, 0xE0, 0xEF) ? 3
                           : is_within(first, 0xF0, 0xF4) ? 4
                                                          : 1;
  if (size == 1 || size > text.size()) return 1;
  const std::string_view rest = text.substr(1, size - 1);
  const bool whole =
      std::all_of(rest.begin(), rest.end(), [](char c) { return is_within(c, 0x80, 0xBF); });
  const bool longer_than_needed =
      (is_within(first, 0xE0, 0xE0) && is_within(rest[0], 0x80, 0x9F)) ||
      (is_within(first, 0xF0, 0xF0) && is_within(rest[0], 0x80, 0x8F));
  return whole && !longer_than_needed ? size : 1;
}

bool begins_control(std::string_view text, std::size_t size) {
  return size == 1 ? is_within(text[0], 0x80, 0x9F)
                   : size == 2 && text[0] == '\xC2' && is_within(text[1], 0x80, 0x9F);
}

}  // namespace

std::string_view take_shown(std::string_view& text) {
  if (std::none_of(text.begin(), text.end(), [](char c) { return is_within(c, 0x80, 0x9F); })) {
    return std::exchange(text, {});
  }
  std::size_t end = 0;
  while (end < text.size()) {
    const std::string_view rest = text.substr(end);
    const std::size_t size = character_size(rest);
    if (begins_control(rest, size)) {
      if (end > 0) break;
      text.remove_prefix(size);
      return "?";
    }
    end += size;
  }
  const std::string_view shown = text.substr(0, end);
  text.remove_prefix(end);
  return shown;
}

}  // namespace qob
