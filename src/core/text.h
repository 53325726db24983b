// Fixed-width text: always N characters, short values padded with blanks, long ones cut.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace qob {

inline bool is_digit(char c) { return c >= '0' && c <= '9'; }

// What separates values.
inline bool is_blank(char c) { return c == ' ' || c == '\t'; }

inline bool is_blank_text(std::string_view text) {
  return text.find_first_not_of(" \t") == std::string_view::npos;
}

// How many words a line has that blanks or commas part.
inline std::size_t count_words(std::string_view line) {
  std::size_t words = 0;
  bool within = false;
  for (const char c : line) {
    const bool part = !is_blank(c) && c != ',';
    words += part && !within ? 1 : 0;
    within = part;
  }
  return words;
}

// What no text holds: a NUL, an escape, a line end of another system within a line, ...
inline bool is_control(char c) {
  return (static_cast<unsigned char>(c) < ' ' && c != '\t') || c == '\x7f';
}

// `text` as it may be shown on a terminal.
inline std::string printable(std::string_view text) {
  std::string out(text);
  for (char& c : out) {
    if (is_control(c)) c = '?';
  }
  return out;
}

// `text` without its trailing blanks.
inline std::string_view trim(std::string_view text) {
  const auto last = text.find_last_not_of(' ');
  return last == std::string_view::npos ? std::string_view{} : text.substr(0, last + 1);
}

// `text` without its leading and trailing blanks.
inline std::string_view adjustl_trim(std::string_view text) {
  const auto first = text.find_first_not_of(' ');
  return first == std::string_view::npos ? std::string_view{} : trim(text.substr(first));
}

// `text` with the letters A to Z turned into a to z, every other character as it is.
inline std::string lowercase(std::string_view text) {
  std::string out(text);
  for (char& c : out) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return out;
}

// An option text as it is compared: lower case, left-adjusted, trimmed.
inline std::string option_text(std::string_view text) { return lowercase(adjustl_trim(text)); }

template <std::size_t N>
class Text {
 public:
  Text() { chars_.fill(' '); }
  Text(std::string_view value) {
    chars_.fill(' ');
    value.substr(0, N).copy(chars_.data(), N);
  }
  Text(const std::string& value) : Text(std::string_view(value)) {}
  Text(const char* value) : Text(std::string_view(value)) {}

  // All N characters.
  std::string_view view() const { return {chars_.data(), N}; }
  operator std::string_view() const { return view(); }
  std::string_view trimmed() const { return trim(view()); }

  friend bool operator==(const Text& a, const Text& b) { return a.chars_ == b.chars_; }

 private:
  std::array<char, N> chars_;
};

}  // namespace qob
