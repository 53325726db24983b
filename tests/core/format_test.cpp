#include "core/format.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <fstream>
#include <iomanip>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "core/edit.h"
#include "core/text.h"

namespace qob {
namespace {

// The items of a line of the case file; `texts` keeps the texts among them.
std::vector<Item> read_items(std::istringstream list, std::deque<std::string>& texts) {
  std::vector<Item> items;
  for (std::string token; list >> std::ws && !list.eof();) {
    const bool quoted = list.peek() == '"';
    list >> std::quoted(token);
    if (quoted) {
      items.emplace_back(texts.emplace_back(token));
    } else if (token.find_first_not_of("-0123456789") == std::string::npos) {
      items.emplace_back(std::strtoll(token.c_str(), nullptr, 10));
    } else {
      items.emplace_back(std::strtod(token.c_str(), nullptr));
    }
  }
  return items;
}

TEST(Record, FollowsTheTableOfCases) {
  std::ifstream file(QOB_SOURCE_DIR "/tests/core/format_cases.txt");
  int count = 0;
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with('#')) continue;
    const std::size_t first = line.find(" |"), second = line.find('|', first + 2);
    const std::string format = line.substr(0, first);
    std::string expected = line.substr(second + 1, line.size() - second - 3);
    for (std::size_t at; (at = expected.find("\\n")) != std::string::npos;) {
      expected.replace(at, 2, "\n");
    }
    std::deque<std::string> texts;
    const std::vector<Item> items =
        read_items(std::istringstream(line.substr(first + 2, second - first - 2)), texts);
    std::vector<ItemKind> kinds;
    for (const Item& item : items) kinds.push_back(item.kind);
    ASSERT_EQ(check_format(format, kinds), FormatFault::kNone) << line;
    std::string record;
    append_items(record, format, items);
    EXPECT_EQ(record, expected) << line;
    ++count;
  }
  EXPECT_EQ(count, 39);
}

// Multiples and neighbours of powers of ten and binary fractions, many of them ties.
TEST(Record, DigitsAreThoseOfTheExactBinaryValue) {
  std::mt19937_64 rng(3);
  for (int n = 0; n < 200000; ++n) {
    const int decimals = static_cast<int>(rng() % 21);
    const double power = std::pow(10.0, static_cast<int>(rng() % 40) - 22);
    const double fraction = std::ldexp(static_cast<double>(rng() >> rng() % 64), -(n % 120));
    const double x = n % 3 == 0   ? fraction
                     : n % 3 == 1 ? std::nextafter(power, n % 2 == 0 ? 0.0 : 1e99)
                                  : static_cast<double>(rng() % 2000) * power;
    char printed[80];
    std::string fixed, exponent;
    std::snprintf(printed, sizeof printed, "%#60.*f", decimals, x);
    edit_fixed(fixed, x, 60, decimals);
    ASSERT_EQ(fixed, printed);
    std::snprintf(printed, sizeof printed, "%.*e", decimals % 15, x);
    edit_exponent(exponent, x, 60, decimals % 15 + 1);
    ASSERT_EQ(std::strtod(exponent.c_str(), nullptr), std::strtod(printed, nullptr)) << exponent;
  }
}

TEST(Record, TheShortestTextIsFixedUnlessAnExponentIsShorter) {
  std::istringstream texts(
      "0 -0 1 -2.5 0.001 0.0012 1e-04 0.000123 1.2e-05 10000 12345 1e+05 120000 1e+15 5e-324 "
      "1.7976931348623157e+308 -1e+22 9007199254740992 123456789012345683968 nan inf -inf");
  for (std::string text; texts >> text;) {
    EXPECT_EQ(shortest(std::strtod(text.c_str(), nullptr)), text);
  }
}

TEST(Record, AFormatAtFaultIsFoundWhileCompiling) {
  using enum ItemKind;
  static constexpr std::array kItems{kInteger, kReal, kText};
  const auto expect = [](FormatFault fault, const char* formats) {
    std::istringstream list(formats);
    for (std::string format; std::getline(list, format, ';');) {
      EXPECT_EQ(check_format(format, kItems), fault) << format;
    }
  };
  expect(FormatFault::kNone, "(I3,F5.1,A);(3G9.2);(I3,(E9.2),A);(i3/f5.1/a);(////////I3,F5.1,A)");
  expect(FormatFault::kWrongFormat, " ;I3;(I3;I3);();(I3,());(I3,,A);(I3,);(,I3);(I3 A);(I3))");
  expect(FormatFault::kWrongFormat, "(I);(I0);(0I3);(A0);(F8);(E8.0);(G8);(B8);(-1X);(X2);(I3)x");
  expect(FormatFault::kWrongFormat, "(T);(TR);(T0);(3T5);(2'x');('x);(\"x');('x' 'y');('x'I3)");
  expect(FormatFault::kWrongFormat, "((((((((((I3))))))))));(I10000);(F900.401);(2A66666666666)");
  expect(FormatFault::kTakesNoItems, "(X);('x',/);(I3,(/));(I3,F5.1,2(X,'x'))");
  expect(FormatFault::kWrongItemType, "(2I3,A);(I3,2A);(F5.1);(I3,A);(I3,E9.2);(I3,(F5.1))");
  static_assert(check_format("(I3,F5.1,A)", kItems) == FormatFault::kNone);
  static_assert(kItemKind<bool> == kNone && kItemKind<char> == kNone && kItemKind<int*> == kNone);
}

}  // namespace
}  // namespace qob
