// Decimal digits of a binary number by integer arithmetic: a number times a power of ten, rounded
// once from its exact binary value, a tie to the even integer. These are the digits that {fmt}
// gives with a precision, for the magnitudes that reports are full of, several times as fast; what
// lies outside is left to {fmt}.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

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
  std::uint64_t bits;
  std::memcpy(&bits, &magnitude, sizeof bits);
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

// A magnitude as number * 10^(exponent - digits), where `number` has so many digits.
struct Significant {
  std::uint64_t number;  // kNotScaled: not applicable
  int exponent;
};

// Rounds a magnitude below 1 to 1 <= digits <= 15 significant digits. Where the product misjudges
// on which side of a power of ten the magnitude lies, it rounds to that power from either side: so
// many digits cannot tell a double from its neighbours.
inline Significant significant(double magnitude, int digits) {
  if (!(magnitude < 1) || digits > 15) return {kNotScaled, 0};
  int exponent = 0;
  double power = 1;  // 10 to the power -exponent
  for (; magnitude * power < 0.1; power *= 10) {
    if (digits - --exponent > kMostDecimals) return {kNotScaled, 0};
  }
  const std::uint64_t number = scaled(magnitude, digits - exponent);
  const std::uint64_t one = kPowersOfTen[static_cast<std::size_t>(digits)];
  return number < one ? Significant{number, exponent} : Significant{one / 10, exponent + 1};
}

inline constexpr auto kDigitPairs = [] {
  std::array<char, 200> pairs{};
  for (std::size_t k = 0; k < 100; ++k) {
    pairs[2 * k] = static_cast<char>('0' + k / 10);
    pairs[2 * k + 1] = static_cast<char>('0' + k % 10);
  }
  return pairs;
}();

// Writes the last `count` digits of `number`, zeros in front if it has fewer, so that they end
// before `end`. Returns the first of them and leaves in `number` what is in front of them.
inline char* digits_before(char* end, std::uint64_t& number, int count) {
  for (; count > 1; count -= 2, number /= 100) {
    std::memcpy(end -= 2, &kDigitPairs[static_cast<std::size_t>(number % 100) * 2], 2);
  }
  if (count == 1) {
    *--end = static_cast<char>('0' + number % 10);
    number /= 10;
  }
  return end;
}

// Writes all digits of `number`, none for 0, so that they end before `end`. Returns the first.
inline char* digits_before(char* end, std::uint64_t number) {
  while (number >= 10) end = digits_before(end, number, 2);
  return number > 0 ? digits_before(end, number, 1) : end;
}

}  // namespace qob
