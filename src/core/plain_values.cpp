#include "core/plain_values.h"

#include <fast_float/fast_float.h>

#include <array>
#include <cmath>
#include <limits>
#include <system_error>

namespace qob {
namespace {

// Powers of ten that a double holds exactly.
constexpr std::array<double, 23> kExactPowers = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                 1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr int kLargestPower = 22;
constexpr std::uint64_t kLargestExact = std::uint64_t{1} << 53;
constexpr std::ptrdiff_t kMostDigits = 19;  // that 64 bits hold, whatever they are

}  // namespace

// Goes to the next value, over one comma behind the value before.
void PlainValues::find_value() {
  while (at_ != end_ && is_blank(*at_)) ++at_;
  if (!comma_allowed_ || at_ == end_ || *at_ != ',') return;
  comma_allowed_ = false;
  for (++at_; at_ != end_ && is_blank(*at_);) ++at_;
}

void PlainValues::go_behind(const char* value_end) {
  at_ = value_end;
  comma_allowed_ = true;
}

bool PlainValues::is_value_end(const char* at) const {
  return at == end_ || is_blank(*at) || *at == ',' || *at == '/';
}

const char* PlainValues::digits(const char* at, std::uint64_t& number) const {
  for (; at != end_ && is_digit(*at); ++at) number = 10 * number + static_cast<unsigned>(*at - '0');
  return at;
}

PlainValues::Whole PlainValues::whole() const {
  Whole whole{at_, at_, 0, at_ != end_ && *at_ == '-'};
  if (at_ != end_ && (*at_ == '-' || *at_ == '+')) ++whole.behind;
  whole.end = digits(whole.behind, whole.number);
  return whole;
}

bool PlainValues::read(std::int32_t& value) {
  find_value();
  const Whole text = whole();
  const std::uint64_t largest = std::numeric_limits<std::int32_t>::max();
  if (text.digits() == 0 || text.digits() > kMostDigits || !is_value_end(text.end)) return false;
  if (text.number > largest + (text.negative ? 1 : 0)) return false;
  const auto number = static_cast<std::int64_t>(text.number);
  value = static_cast<std::int32_t>(text.negative ? -number : number);
  go_behind(text.end);
  return true;
}

// Digits that make an integer below 2^53, times or by a power of ten that is exact too: one
// operation rounds once, to the double nearest to the decimal number.
bool PlainValues::read(double& value) {
  find_value();
  const Whole text = whole();
  std::uint64_t number = text.number;
  std::ptrdiff_t count = text.digits();
  const char* at = text.end;
  if (at != end_ && *at == '.') {
    at = digits(at + 1, number);
    count = at - text.behind - 1;
  }
  if (count == 0) return false;
  int power = static_cast<int>(text.end == at ? 0 : text.end + 1 - at);
  if (!is_value_end(at) && !exponent(at, power)) return false;
  if (count > kMostDigits || number > kLargestExact || power < -kLargestPower ||
      power > kLargestPower) {
    return any_real(text, value);
  }
  const auto scale = kExactPowers[static_cast<std::size_t>(power < 0 ? -power : power)];
  const auto magnitude = static_cast<double>(number);
  const double result = power < 0 ? magnitude / scale : magnitude * scale;
  value = text.negative ? -result : result;
  go_behind(at);
  return true;
}

// Takes an exponent (E+05, d-3) and adds it to `power`. False: there is none, or it is odd.
bool PlainValues::exponent(const char*& at, int& power) const {
  const char letter = static_cast<char>(*at | 0x20);
  if (letter != 'e' && letter != 'd' && letter != 'q') return false;
  ++at;
  const bool negative = at != end_ && *at == '-';
  if (at != end_ && (*at == '-' || *at == '+')) ++at;
  std::uint64_t number = 0;
  const char* const end = digits(at, number);
  if (end == at || end - at > 3 || !is_value_end(end)) return false;
  at = end;
  power += negative ? -static_cast<int>(number) : static_cast<int>(number);
  return true;
}

// Any real without letter or with an e.
bool PlainValues::any_real(const Whole& text, double& value) {
  double magnitude;
  const auto result = fast_float::from_chars(text.behind, end_, magnitude);
  if (result.ec != std::errc() || !is_value_end(result.ptr) || !std::isfinite(magnitude)) {
    return false;
  }
  value = text.negative ? -magnitude : magnitude;
  go_behind(result.ptr);
  return true;
}

// A word that is neither quoted nor perhaps repeated; empty if there is none.
std::string_view PlainValues::word() {
  find_value();
  const char* at = at_;
  if (at == end_ || *at == '\'' || *at == '"') return {};
  for (; !is_value_end(at); ++at) {
    if (*at == '*' || is_control(*at)) return {};
  }
  const std::string_view text(at_, static_cast<std::size_t>(at - at_));
  if (!text.empty()) go_behind(at);
  return text;
}

}  // namespace qob
