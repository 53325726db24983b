#include <gtest/gtest.h>

#include <cstring>
#include <iterator>
#include <random>
#include <sstream>
#include <vector>

#include "core/lexer.h"

namespace qob {
namespace {

// Lines of plain, odd and broken values, read by the lexer alone and as the program reads them.
TEST(PlainValues, WhatTheyTakeTheLexerWouldTake) {
  std::istringstream list(
      "2147483647 2147483648 -2147483648 -2147483649 +5 -0 007 +-1 - + 99999999999999999999 "
      "00000000000000000000012 18446744073709551617 2*3 3* 0*1 1*2 / 'a b' \"q\"x a*b 12ab 2x* word "
      ", ,, nan -inf 0x1p3 !c 1=2 1. -.5 . -. 1e5 1E-05 1.5d+3 2q-2 1.5+3 1e 1e+ 1d1234 1e22 1e23 "
      "1e-22 3e400 1e-400 0.976563E-03 9007199254740993 0.1234567890123456789 0e0 -0.0 1.2.3 1/ 2,");
  const std::vector<std::string> words{std::istream_iterator<std::string>(list), {}};
  const std::vector<std::string> gaps = {" ", " ", "\t", "  ", ",", " , ", "\r", "", "/"};
  std::mt19937 rng(5);
  const auto any = [&](const auto& of) { return of[rng() % of.size()]; };
  int plain = 0;
  for (int n = 0; n < 200000; ++n) {
    std::string line = rng() % 4 == 0 ? any(gaps) : "";
    for (auto k = rng() % 6; k > 0; --k) {
      std::string number = std::to_string(static_cast<std::int32_t>(rng()) >> rng() % 32);
      if (rng() % 2 == 0) number.insert(number.size() - rng() % number.size(), ".");
      line += (rng() % 3 == 0 ? any(words) : number) + any(gaps);
    }
    std::int32_t i[3] = {}, j[3] = {};
    double x[3] = {};
    Text<4> text[3] = {".", ".", "."};
    const int status = read_list(line, i[0], j[0], x[0], text[0]);
    RecordReader lexer(line);
    static_cast<void>(lexer.read(i[1]) && lexer.read(j[1]) && lexer.read(x[1]) &&
                      lexer.read(text[1]));
    ASSERT_TRUE(status == lexer.status() && i[0] == i[1] && j[0] == j[1] && text[0] == text[1] &&
                std::memcmp(&x[0], &x[1], sizeof x[0]) == 0)
        << line;
    PlainValues values(line);
    plain += values.read(i[2]) && values.read(j[2]) && values.read(x[2]) && values.read(text[2]);
  }
  EXPECT_GT(plain, 2000);
}

}  // namespace
}  // namespace qob
