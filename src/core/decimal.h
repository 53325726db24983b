// Decimal digits of a binary number by integer arithmetic: a number times a power of ten, rounded
// once from its exact binary value, a tie to the even integer. These are the digits that
// std::to_chars gives with a precision, for the magnitudes that reports are full of, in a fraction
// of the time; what lies outside goes to std::to_chars.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace qob {

// 10 to the power 0 .. 19, all that 64 bits hold.
inline constexpr auto kPowersOfTen = [] {
  std::array<std::uint64_t, 20> powers{1};
  for (std::size_t k = 1; k < powers.size(); ++k) powers[k] = 10 * powers[k - 1];
  return powers;
}();
inline constexpr int kMostDecimals = 19;

// What `scaled` returns where it does not apply.
inline constexpr std::uint64_t kNotScaled = ~std::uint64_t{0};

// magnitude * 10^decimals as an integer below 10^18, for 0 <= decimals <= kMostDecimals and
// 0 <= magnitude < 2^52; kNotScaled for a result or arguments beyond that, NaN among them.
inline std::uint64_t scaled(double magnitude, int decimals) {
  if (!(magnitude < 0x1p52) || decimals < 0 || decimals > kMostDecimals) return kNotScaled;
  using Wide = unsigned __int128;
  // magnitude = mantissa / 2^shift, with shift >= 1
  const auto bits = std::bit_cast<std::uint64_t>(magnitude);
  const auto exponent = static_cast<int>(bits >> 52);
  const std::uint64_t fraction = bits & ((std::uint64_t{1} << 52) - 1);
  const std::uint64_t mantissa = exponent == 0 ? fraction : fraction | std::uint64_t{1} << 52;
  const int shift = 1075 - (exponent == 0 ? 1 : exponent);
  if (shift >= 128) return 0;  // the product is below 2^117
  const Wide product = Wide{mantissa} * kPowersOfTen[static_cast<std::size_t>(decimals)];
  const Wide half = Wide{1} << (shift - 1);
  const Wide whole = product >> shift;
  const Wide rest = product & (2 * half - 1);
  if (whole >= kPowersOfTen[18]) return kNotScaled;
  const auto result = static_cast<std::uint64_t>(whole);
  const bool up = rest > half || (rest == half && (result & 1) != 0);
  return up ? result + 1 : result;
}

// Writes the last `count` digits of `number`, zeros in front if it has fewer, so that they end
// before `end`. Returns the first of them and leaves in `number` what is in front of them.
inline char* digits_before(char* end, std::uint64_t& number, int count) {
  for (; count > 0; --count, number /= 10) *--end = static_cast<char>('0' + number % 10);
  return end;
}

}  // namespace qob
