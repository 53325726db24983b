// One value into a field of fixed width, appended to a text. Every digit comes from the exact
// binary value, rounded once (a tie goes to the even digit), whatever the locale. A number that
// does not fit its field becomes `width` asterisks; a width is at least 1.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace qob {

// What a number of digits or decimals may be: {fmt} gives so many exactly, whatever the magnitude.
inline constexpr int kLargestPrecision = 400;

// Iw.m: right-aligned, with leading zeros up to `least_digits` digits.
void edit_integer(std::string& out, std::int64_t value, int width, int least_digits = 1);

// Fw.d: `decimals` digits after the point. The zero before the point goes only where it does not
// fit; a negative number that rounds to zero keeps its sign.
void edit_fixed(std::string& out, double value, int width, int decimals);

// Ew.d: 0.ddddE+XX with `digits` >= 1 digits; an exponent of three digits takes the E's place.
void edit_exponent(std::string& out, double value, int width, int digits);

// Gw.d: fixed point with `digits` >= 1 significant digits and four blanks behind them where the
// magnitude allows it, otherwise as Ew.d.
void edit_general(std::string& out, double value, int width, int digits);

// Aw: the last character in the last column; a text that is too long keeps its first `width`.
void edit_text(std::string& out, std::string_view text, int width);

// The shortest text that reads back to the same number.
std::string shortest(double value);

}  // namespace qob
