#include "core/edit.h"

#include <fmt/compile.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <iterator>
#include <utility>

#include "core/decimal.h"

namespace qob {
namespace {

constexpr int kExponentColumns = 4;

std::size_t columns(int width) { return static_cast<std::size_t>(width); }

void overflow(std::string& out, int width) { out.append(columns(width), '*'); }

// Appends a magnitude, right-aligned, with its sign, and with a zero before a leading point where
// there is room for it.
void right_align(std::string& out, std::string_view magnitude, bool negative, int width) {
  const std::size_t needed = magnitude.size() + (negative ? 1 : 0);
  if (needed > columns(width)) return overflow(out, width);
  const bool zero = magnitude.starts_with('.') && needed < columns(width);
  out.append(columns(width), ' ');
  char* first = out.data() + out.size() - magnitude.size();
  magnitude.copy(first, magnitude.size());
  if (zero) *--first = '0';
  if (negative) *--first = '-';
}

// NaN and the infinities, by as long a name as fits.
void edit_special(std::string& out, double value, int width) {
  const std::string_view full = std::isnan(value) ? "NaN" : value < 0 ? "-Infinity" : "Infinity";
  const std::string_view brief = full.substr(0, value < 0 ? 4 : 3);
  if (columns(width) < brief.size()) return overflow(out, width);
  edit_text(out, columns(width) < full.size() ? brief : full, width);
}

// A point with the significant digits behind it, and the power of ten that they are to be
// multiplied by; it is 0 for the number zero.
struct Scientific {
  std::string digits;
  int exponent;
};

Scientific any_scientific(double magnitude, int digits) {
  std::string text = fmt::format(FMT_COMPILE("{:#.{}e}"), magnitude, digits - 1);  // d.ddde+ddd
  const std::size_t mark = text.find('e');
  const int exponent = std::atoi(text.c_str() + mark + 1);
  text.resize(mark);
  std::swap(text[0], text[1]);
  return {text, magnitude == 0 ? 0 : exponent + 1};
}

Scientific scientific(double magnitude, int digits) {
  auto [number, exponent] = significant(magnitude, digits);
  if (number == kNotScaled) return any_scientific(magnitude, digits);
  std::string text(columns(digits) + 1, '.');
  digits_before(text.data() + text.size(), number, digits);
  return {text, exponent};
}

// The fixed form of a magnitude that `number` holds as a multiple of 10^-decimals.
void edit_multiple(std::string& out, std::uint64_t number, int decimals, bool negative, int width) {
  char text[kMostDecimals + 20];
  char* const end = text + sizeof text;
  char* begin = digits_before(end, number, decimals);
  *--begin = '.';
  begin = digits_before(begin, number);
  if (decimals == 0 && *begin == '.') *--begin = '0';
  right_align(out, {begin, static_cast<std::size_t>(end - begin)}, negative, width);
}

// Digits of a number without exponent, from the first to the last that is not zero.
int significant_digits(std::string_view text) {
  constexpr std::string_view kNotZero = "123456789";
  const std::size_t first = text.find_first_of(kNotZero), last = text.find_last_of(kNotZero);
  if (first == std::string_view::npos) return 1;
  const std::size_t point = text.find('.');
  return static_cast<int>(last - first + (first < point && point < last ? 0 : 1));
}

}  // namespace

void edit_integer(std::string& out, std::int64_t value, int width, int least_digits) {
  auto rest = static_cast<std::uint64_t>(value);
  if (value < 0) rest = 0 - rest;
  char digits[20];
  char* const end = digits + sizeof digits;
  char* begin = digits_before(end, rest, std::min(least_digits, 1));
  begin = digits_before(begin, rest);
  const std::string_view text(begin, static_cast<std::size_t>(end - begin));
  if (text.size() >= columns(least_digits)) return right_align(out, text, value < 0, width);
  const std::string filled = std::string(columns(least_digits) - text.size(), '0').append(text);
  right_align(out, filled, value < 0, width);
}

void edit_fixed(std::string& out, double value, int width, int decimals) {
  if (!std::isfinite(value)) return edit_special(out, value, width);
  const double magnitude = std::fabs(value);
  const bool negative = std::signbit(value);
  const std::uint64_t number = scaled(magnitude, decimals);
  if (number != kNotScaled) return edit_multiple(out, number, decimals, negative, width);
  std::string text = fmt::format(FMT_COMPILE("{:#.{}f}"), magnitude, decimals);
  if (decimals > 0 && text.front() == '0') text.erase(0, 1);
  right_align(out, text, negative, width);
}

void edit_exponent(std::string& out, double value, int width, int digits) {
  if (!std::isfinite(value)) return edit_special(out, value, width);
  auto [text, exponent] = scientific(std::fabs(value), digits);
  const bool brief = std::abs(exponent) <= 99;
  if (brief) text.push_back('E');
  text.push_back(exponent < 0 ? '-' : '+');
  edit_integer(text, std::abs(exponent), brief ? 2 : 3, 2);
  right_align(out, text, std::signbit(value), width);
}

void edit_general(std::string& out, double value, int width, int digits) {
  if (!std::isfinite(value)) return edit_special(out, value, width);
  const double magnitude = std::fabs(value);
  double limit = 1;  // ten to the power `digits`
  for (int i = 0; i < digits; ++i) limit *= 10;
  // From `just_below` times a power of ten on, a magnitude rounds up to that power.
  const double just_below = 1 - 0.5 / limit;
  if (magnitude != 0 && (magnitude < 0.1 * just_below || limit - magnitude <= 0.5)) {
    return edit_exponent(out, value, width, digits);
  }
  int whole = magnitude == 0 ? 1 : 0;  // digits before the point
  for (double power = 1; whole < digits && magnitude >= power * just_below; power *= 10) ++whole;
  const std::size_t start = out.size();
  if (width <= kExponentColumns) return overflow(out, width);
  edit_fixed(out, value, width - kExponentColumns, digits - whole);
  out.append(kExponentColumns, out[start] == '*' ? '*' : ' ');
}

void edit_text(std::string& out, std::string_view text, int width) {
  const std::string_view shown = text.substr(0, columns(width));
  out.append(columns(width) - shown.size(), ' ').append(shown);
}

std::string shortest(double value) {
  const std::string text = fmt::format(FMT_COMPILE("{}"), value);
  const bool has_exponent = text.find('e') != std::string::npos;
  const double magnitude = std::fabs(value);
  if (!std::isfinite(value) || (has_exponent && magnitude < 1)) return text;
  if (has_exponent) {
    const std::string fixed = fmt::format(FMT_COMPILE("{:.0f}"), value);
    return fixed.size() <= text.size() ? fixed : text;
  }
  const int digits = significant_digits(text);
  const int with_exponent = (std::signbit(value) ? 1 : 0) + digits + (digits > 1 ? 5 : 4);
  if (text.size() <= columns(with_exponent)) return text;
  return fmt::format(FMT_COMPILE("{:.{}e}"), value, digits - 1);
}

}  // namespace qob
