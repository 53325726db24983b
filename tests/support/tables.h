// Tables of texts and what is to be made of them.
#pragma once

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace qob::test {

// Each line of the table: what is to be told of the texts behind it, all parted by "|".
template <class Tell>
void check(const char* table, Tell tell) {
  std::istringstream lines(table);
  for (std::string line; std::getline(lines, line);) {
    std::istringstream texts(line);
    std::string expected;
    std::getline(texts, expected, '|');
    for (std::string text; std::getline(texts, text, '|');) EXPECT_EQ(tell(text), expected) << text;
  }
}

}  // namespace qob::test
