#include "core/text_encoding.h"

#include <algorithm>
#include <array>

#include "core/letters.h"

namespace qob {
namespace {

using Code = std::uint32_t;

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr Code kReplacement = 0xFFFD;

// The characters 0x80 to 0x9F of Windows-1252; those that it does not have stand for themselves.
constexpr std::array<Code, 32> kWindows = {
    0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x8D,   0x017D, 0x8F,   0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};

Code byte(char c) { return static_cast<unsigned char>(c); }

void append_utf8(std::string& out, Code code) {
  const auto put = [&](Code value) { out.push_back(static_cast<char>(value)); };
  if (code < 0x80) return put(code);
  if (code < 0x800) {
    put(0xC0 | code >> 6U);
  } else {
    if (code < 0x10000) {
      put(0xE0 | code >> 12U);
    } else {
      put(0xF0 | code >> 18U);
      put(0x80 | (code >> 12U & 0x3F));
    }
    put(0x80 | (code >> 6U & 0x3F));
  }
  put(0x80 | (code & 0x3F));
}

std::string from_windows(std::string_view bytes) {
  std::string out;
  out.reserve(bytes.size() + bytes.size() / 8);
  for (const char c : bytes) {
    const Code code = byte(c);
    append_utf8(out, code >= 0x80 && code < 0xA0 ? kWindows[code - 0x80] : code);
  }
  return out;
}

bool is_high_half(Code code) { return code >= 0xD800 && code < 0xDC00; }
bool is_low_half(Code code) { return code >= 0xDC00 && code < 0xE000; }

// low_first: the less significant byte of each pair comes first.
std::string from_utf16(std::string_view bytes, bool low_first) {
  const auto unit = [&](std::size_t k) {
    if (k + 1 >= bytes.size()) return kReplacement;
    return low_first ? byte(bytes[k]) | byte(bytes[k + 1]) << 8U
                     : byte(bytes[k]) << 8U | byte(bytes[k + 1]);
  };
  std::string out;
  out.reserve(bytes.size() / 2 + bytes.size() / 8);
  for (std::size_t k = 0; k < bytes.size(); k += 2) {
    Code code = unit(k);
    if (is_high_half(code) && is_low_half(unit(k + 2))) {
      code = 0x10000 + ((code & 0x3FF) << 10U) + (unit(k + 2) & 0x3FF);
      k += 2;
    }
    append_utf8(out, is_high_half(code) || is_low_half(code) ? kReplacement : code);
  }
  return out;
}

bool is_utf8(std::string_view text) {
  std::size_t at = 0;
  while (at < text.size()) {
    const bool is_ascii = byte(text[at]) < 0x80;
    const Character character = is_ascii ? Character{0, 1} : first_character(text.substr(at));
    if (character.code == kNoCharacter) return false;
    at += character.length;
  }
  return true;
}

// Latin text in UTF-16 without a mark: a zero beside nearly every letter. Sets which comes first.
bool looks_like_utf16(std::string_view bytes, bool& low_first) {
  const std::string_view start = bytes.substr(0, std::min<std::size_t>(bytes.size(), 4096));
  std::array<std::size_t, 2> zeros = {0, 0};
  for (std::size_t k = 0; k < start.size(); ++k) zeros[k % 2] += start[k] == '\0';
  low_first = zeros[1] > zeros[0];
  const std::size_t more = std::max(zeros[0], zeros[1]), fewer = std::min(zeros[0], zeros[1]);
  return more > 0 && fewer == 0 && more > start.size() / 4;
}

Encoding to_utf8(std::string& bytes) {
  bool low_first = bytes.starts_with("\xFF\xFE");
  if (low_first || bytes.starts_with("\xFE\xFF")) {
    bytes = from_utf16(std::string_view(bytes).substr(2), low_first);
    return Encoding::kUtf16;
  }
  if (bytes.starts_with(kUtf8Mark)) bytes.erase(0, kUtf8Mark.size());
  if (looks_like_utf16(bytes, low_first)) {
    bytes = from_utf16(bytes, low_first);
    return Encoding::kUtf16;
  }
  if (is_utf8(bytes)) return Encoding::kUtf8;
  bytes = from_windows(bytes);
  return Encoding::kWindows1252;
}

// CR LF and CR become LF.
void unify_line_ends(std::string& text) {
  std::size_t to = 0;
  for (std::size_t from = 0; from < text.size(); ++from) {
    const char c = text[from];
    if (c == '\r' && from + 1 < text.size() && text[from + 1] == '\n') continue;
    text[to++] = c == '\r' ? '\n' : c;
  }
  text.resize(to);
}

}  // namespace

Encoding decode_text(std::string& bytes) {
  const Encoding encoding = to_utf8(bytes);
  if (bytes.find('\0') != std::string::npos) return Encoding::kBinary;
  unify_line_ends(bytes);
  return encoding;
}

}  // namespace qob
