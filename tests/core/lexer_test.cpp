#include "core/lexer.h"

#include <gtest/gtest.h>

#include <cstring>
#include <iterator>
#include <random>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace qob {
namespace {

// What each word of `texts` converts to; ? where it is malformed, which must leave the value.
template <class Value>
std::string converted(int (*convert_text)(std::string_view, Value&), const std::string& texts) {
  std::istringstream words(texts);
  std::ostringstream out;
  out.precision(17);
  for (std::string word; words >> word;) {
    Value value = true;
    const int status = convert_text(word, value);
    EXPECT_TRUE(status == 0 || (status == kMalformed && value == Value{true})) << word;
    status == 0 ? out << value << ' ' : out << "? ";
  }
  return out.str();
}

TEST(Numbers, TakeEveryForm_AndRefuseEverythingElse) {
  const std::string zeros(400, '0');
  EXPECT_EQ(converted(to_real, "1 +1.5 -.5 5. 1.e2 1E+02 1.5d3 5D-1 1q2 1Q2 1.5+3 -25-2 +1+3"),
            "1 1.5 -0.5 5 100 100 1500 0.5 100 100 1500 -0.25 1000 ");
  EXPECT_EQ(converted(to_real, "1e-400 -1d-99999999999 1-99999999999999999999 0e99999999999 0." +
                                   zeros + "1 1" + zeros + "e-400 5e-324 1.7976931348623157e308"),
            "0 -0 0 0 0 1 4.9406564584124654e-324 1.7976931348623157e+308 ");
  EXPECT_EQ(converted(to_real, "+ - . -. +-1 --1 1e 1d+ 1+ 1++3 1de3 .e3 e3 +3x 1.2.3 0x10 1e3.5"),
            "? ? ? ? ? ? ? ? ? ? ? ? ? ? ? ? ? ");
  EXPECT_EQ(converted(to_real, "nan -inf +Infinity 1e400 -1d400 1e99999999999999999999 1" + zeros +
                                   " 0." + zeros + "1e+800"),
            "? ? ? ? ? ? ? ? ");
  EXPECT_EQ(
      converted(to_integer, "007 +3 2147483647 2147483648 -2147483648 -2147483649 1. 1e3 +-1"),
      "7 3 2147483647 ? -2147483648 ? ? ? ? ");
  EXPECT_EQ(converted(to_logical, "T .true. trunk t= .f FALSE . .x 1 ..t"), "1 1 1 1 0 0 ? ? ? ? ");
  double value;
  EXPECT_EQ(to_real("", value), kMalformed);
  EXPECT_EQ(to_real({"1\0", 2}, value), kMalformed);
}

TEST(ReadList, LeavesWhatIsNotGiven_AndStopsAtTheFirstFault) {
  const std::vector<std::pair<const char*, const char*>> cases = {
      {"1 2.5 abc", "0: 1 2.5 abc"},
      {"1,2d0,'a b'x", "5010: 1 2 ."},
      {"1 2 'a longer' text", "0: 1 2 a lon"},
      {"1,,x!", "0: 1 -7 x!"},
      {"1 2,", "-1: 1 2 ."},
      {"1 2,,", "0: 1 2 ."},
      {"1/", "0: 1 -7 ."},
      {"3*", "0: -7 -7 ."},
      {"1*5 1*6 3*7*8", "0: 5 6 7*8"},
      {"2*3 x", "5010: 3 -7 ."},
      {"1 2x y", "5010: 1 -7 ."},
      {"1.0 2", "5010: -7 -7 ."},
      {"1 '2' x", "5010: 1 -7 ."},
      {"'1' 2 x", "5010: -7 -7 ."},
      {"", "-1: -7 -7 ."},
  };
  for (const auto& [line, expected] : cases) {
    std::int32_t a = -7;
    double b = -7;
    Text<5> c = ".";
    std::ostringstream shown;
    const int status = read_list(line, a, b, c);
    shown << status << ": " << a << ' ' << b << ' ' << c.trimmed();
    EXPECT_EQ(shown.str(), expected) << line;
  }
}

// Lines of plain, odd and broken values, read by the lexer alone and as the program reads them.
TEST(ReadList, TakesPlainValuesAsTheLexerWould) {
  std::istringstream list(
      "2147483647 2147483648 -2147483648 -2147483649 +5 -0 007 +-1 - + 99999999999999999999 "
      "00000000000000000000012 18446744073709551617 2*3 3* 0*1 1*2 / 'a b' \"q\"x a*b 12ab 2x* word "
      ", ,, nan -inf 0x1p3 !c 1=2 1. -.5 . -. 1e5 1E-05 1.5d+3 2q-2 1.5+3 1e 1e+ 1d1234 1e22 1e23 "
      "1e-22 3e400 1e-400 0.976563E-03 9007199254740993 0.1234567890123456789 0e0 -0.0 1.2.3 1/ 2, "
      "a\x1b a\x7f'");
  const std::vector<std::string> words{std::istream_iterator<std::string>(list), {}};
  const std::vector<std::string> gaps = {" ", " ", "\t", "  ", ",", " , ", " ", "", "/"};
  std::mt19937 rng(5);
  const auto any = [&](const auto& of) { return of[rng() % of.size()]; };
  int plain = 0;
  for (int n = 0; n < 200000; ++n) {
    std::string line = rng() % 4 == 0 ? any(gaps) : "";
    for (auto k = rng() % 6; k > 0; --k) {
      const std::int64_t up_to_57_bits = static_cast<std::int64_t>(rng()) * (1 << 26) - (1LL << 57);
      std::string number = std::to_string(up_to_57_bits >> rng() % 57);
      if (rng() % 2 == 0) number.insert(number.size() - rng() % number.size(), ".");
      line += (rng() % 3 == 0 ? any(words) : number) + any(gaps);
    }
    std::int32_t i[3] = {}, j[3] = {};
    double x[3] = {};
    Text<4> text[3] = {".", ".", "."};
    const int status = read_list(line, x[0], i[0], j[0], text[0]);
    RecordReader lexer(line);
    static_cast<void>(lexer.read(x[1]) && lexer.read(i[1]) && lexer.read(j[1]) &&
                      lexer.read(text[1]));
    ASSERT_TRUE(status == lexer.status() && i[0] == i[1] && j[0] == j[1] && text[0] == text[1] &&
                std::memcmp(&x[0], &x[1], sizeof x[0]) == 0)
        << line;
    PlainValues values(line);
    plain += values.read(x[2]) && values.read(i[2]) && values.read(j[2]) && values.read(text[2]);
  }
  EXPECT_GT(plain, 1000);
}

}  // namespace
}  // namespace qob
