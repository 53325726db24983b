#include "analysis/kernels/relationship_text.h"

#include <string>

#include "core/decimal.h"
#include "core/edit.h"
#include "core/text.h"

namespace qob {
namespace {

constexpr int kDigits = 6;
constexpr double kJustBelow = 1 - 0.5 / 1e6;  // rounds up to 1

char* put_general(char* at, double a) {
  std::string field;
  edit_general(field, a, static_cast<int>(kRelationshipWidth), kDigits);
  const std::string_view text = adjustl_trim(field);
  return at + text.copy(at, kRelationshipWidth);
}

// 0.dddddd or d.ddddd
char* put_fixed(char* at, double a) {
  const int whole = a < kJustBelow ? 0 : 1;
  std::uint64_t number = scaled(a, kDigits - whole);
  if (number >= kPowersOfTen[kDigits]) return put_general(at, a);
  char* const end = at + 2 + kDigits - whole;
  digits_before(end, number, kDigits - whole);
  at[0] = static_cast<char>('0' + number);
  at[1] = '.';
  return end;
}

// 0.ddddddE-dd
char* put_exponent(char* at, double a) {
  auto [number, exponent] = significant(a, kDigits);
  if (number == kNotScaled || exponent >= 0) return put_general(at, a);
  at[0] = '0';
  at[1] = '.';
  digits_before(at + 2 + kDigits, number, kDigits);
  at[2 + kDigits] = 'E';
  at[3 + kDigits] = '-';
  auto tens = static_cast<std::uint64_t>(-exponent);
  digits_before(at + kRelationshipWidth, tens, 2);
  return at + kRelationshipWidth;
}

}  // namespace

char* put_relationship(char* at, double a) {
  if (a >= 0.1 * kJustBelow && a < 10 * kJustBelow) return put_fixed(at, a);
  if (a >= 1e-8 && a < 0.1 * kJustBelow) return put_exponent(at, a);
  return put_general(at, a);
}

}  // namespace qob
