#include "core/edit.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <utility>

namespace qob {
namespace {

constexpr int kExponentColumns = 4;

std::size_t columns(int width) { return static_cast<std::size_t>(width); }

void overflow(std::string& out, std::size_t start, int width) {
  out.resize(start);
  out.append(columns(width), '*');
}

// Right-aligns the magnitude that stands in `out` from `start` on, with its sign, and with a zero
// before a leading point where there is room for it.
void right_align(std::string& out, std::size_t start, bool negative, int width) {
  const std::size_t size = out.size() - start;
  const std::size_t needed = size + (negative ? 1 : 0);
  if (needed > columns(width)) return overflow(out, start, width);
  const bool zero = out[start] == '.' && needed < columns(width);
  out.insert(start, columns(width) - size, ' ');
  std::size_t first = out.size() - size;
  if (zero) out[--first] = '0';
  if (negative) out[--first] = '-';
}

// NaN and the infinities, by as long a name as fits.
void edit_special(std::string& out, double value, int width) {
  const std::string_view full = std::isnan(value) ? "NaN" : value < 0 ? "-Infinity" : "Infinity";
  const std::string_view brief = full.substr(0, value < 0 ? 4 : 3);
  if (columns(width) < brief.size()) return overflow(out, out.size(), width);
  edit_text(out, columns(width) < full.size() ? brief : full, width);
}

// Appends a point and the significant digits of a finite magnitude. Returns the power of ten that
// they are to be multiplied by; it is 0 for the number zero.
int append_digits(std::string& out, double magnitude, int digits) {
  const std::size_t start = out.size();
  out.resize(start + columns(digits) + 7);  // d.ddde+ddd
  char* const begin = out.data() + start;
  const char* const end = std::to_chars(begin, out.data() + out.size(), magnitude,
                                        std::chars_format::scientific, digits - 1)
                              .ptr;
  const char* const mark = std::find<const char*>(begin, end, 'e');
  int exponent = 0;
  std::from_chars(mark + (mark[1] == '+' ? 2 : 1), end, exponent);
  out.resize(static_cast<std::size_t>(mark - out.data()));
  if (digits > 1) {
    std::swap(out[start], out[start + 1]);
  } else {
    out.insert(start, 1, '.');
  }
  return magnitude == 0 ? 0 : exponent + 1;
}

}  // namespace

void edit_integer(std::string& out, std::int64_t value, int width, int least_digits) {
  const auto bits = static_cast<std::uint64_t>(value);
  char buffer[20];
  const char* end = std::to_chars(buffer, buffer + sizeof buffer, value < 0 ? 0 - bits : bits).ptr;
  if (value == 0 && least_digits == 0) end = buffer;  // a field of blanks
  const auto count = static_cast<std::size_t>(end - buffer);
  const std::size_t start = out.size();
  if (count < columns(least_digits)) out.append(columns(least_digits) - count, '0');
  out.append(buffer, count);
  right_align(out, start, value < 0, width);
}

void edit_fixed(std::string& out, double value, int width, int decimals) {
  if (!std::isfinite(value)) return edit_special(out, value, width);
  // One character more than the field, for a leading zero that is dropped; what needs still more
  // does not fit anyway.
  const std::size_t start = out.size();
  out.resize(start + columns(width) + 1);
  const auto [end, error] = std::to_chars(out.data() + start, out.data() + out.size(),
                                          std::fabs(value), std::chars_format::fixed, decimals);
  if (error != std::errc{}) return overflow(out, start, width);
  out.resize(static_cast<std::size_t>(end - out.data()));
  if (decimals == 0) out.push_back('.');
  if (decimals > 0 && out[start] == '0') out.erase(start, 1);
  right_align(out, start, std::signbit(value), width);
}

void edit_exponent(std::string& out, double value, int width, int digits) {
  if (!std::isfinite(value)) return edit_special(out, value, width);
  const std::size_t start = out.size();
  const int exponent = append_digits(out, std::fabs(value), digits);
  const bool brief = std::abs(exponent) <= 99;
  if (brief) out.push_back('E');
  out.push_back(exponent < 0 ? '-' : '+');
  edit_integer(out, std::abs(exponent), brief ? 2 : 3, 2);
  right_align(out, start, std::signbit(value), width);
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
  if (width <= kExponentColumns) return overflow(out, start, width);
  edit_fixed(out, value, width - kExponentColumns, digits - whole);
  out.append(kExponentColumns, out[start] == '*' ? '*' : ' ');
}

void edit_text(std::string& out, std::string_view text, int width) {
  const std::string_view shown = text.substr(0, columns(width));
  out.append(columns(width) - shown.size(), ' ').append(shown);
}

std::string shortest(double value) {
  char buffer[32];
  return {buffer, std::to_chars(buffer, buffer + sizeof buffer, value).ptr};
}

}  // namespace qob
