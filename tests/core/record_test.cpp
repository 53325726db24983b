#include "core/record.h"

#include <gtest/gtest.h>

#include <cctype>
#include <cstdlib>
#include <deque>
#include <fstream>
#include <string>
#include <vector>

#include "core/text.h"

namespace qob {
namespace {

// The items of a line of the case file.
struct CaseItems {
  explicit CaseItems(const std::string& list) {
    for (std::size_t at = 0; (at = list.find_first_not_of(' ', at)) != std::string::npos;) {
      const bool quoted = list[at] == '"';
      const std::size_t end = list.find(quoted ? '"' : ' ', at + 1);
      const std::string token = list.substr(quoted ? at + 1 : at, end - (quoted ? at + 1 : at));
      add(token, quoted);
      at = end == std::string::npos ? end : end + 1;
    }
    for (const Item& item : items) kinds.push_back(item.kind);
  }
  void add(const std::string& token, bool quoted) {
    if (quoted) {
      items.emplace_back(texts.emplace_back(token));
    } else if (token.find_first_not_of("-0123456789") == std::string::npos) {
      items.emplace_back(std::strtoll(token.c_str(), nullptr, 10));
    } else {
      items.emplace_back(std::strtod(token.c_str(), nullptr));
    }
  }
  std::deque<std::string> texts;  // the items refer to them
  std::vector<Item> items;
  std::vector<ItemKind> kinds;
};

TEST(Record, FollowsTheTableOfCases) {
  std::ifstream file(QOB_SOURCE_DIR "/tests/core/record_cases.txt");
  int count = 0;
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with('#')) continue;
    const std::size_t first = line.find(" | "), second = line.find(" |", first + 2);
    const std::string format = line.substr(0, first);
    std::string expected = line.substr(second + 2, line.size() - second - 4);
    for (std::size_t at; (at = expected.find("\\n")) != std::string::npos;) {
      expected.replace(at, 2, "\n");
    }
    const CaseItems given(line.substr(first + 3, second < first + 3 ? 0 : second - first - 3));
    ASSERT_EQ(check_format(format, given.kinds), FormatFault::kNone) << line;
    EXPECT_EQ(format_items(format, given.items), expected) << line;
    ++count;
  }
  EXPECT_EQ(count, 38);
}

TEST(Record, AFormatAtFaultIsFoundWhileCompiling) {
  using enum ItemKind;
  constexpr std::array kItems{kInteger, kReal, kText};
  for (const char* format : {"",
                             "I3",
                             "(I3",
                             "I3)",
                             "()",
                             "(I3,())",
                             "(I3,,A)",
                             "(I3,)",
                             "(,I3)",
                             "(I3 A)",
                             "(I)",
                             "(I0)",
                             "(0I3)",
                             "(A0)",
                             "(F8)",
                             "(E8.0)",
                             "(G8)",
                             "(T)",
                             "(TR)",
                             "(T0)",
                             "(3T5)",
                             "(B8)",
                             "(2'x')",
                             "('x)",
                             "(\"x')",
                             "('x' 'y')",
                             "(I3))",
                             "(I3)x",
                             "(X2)",
                             "(-1X)",
                             "((((((((((I3))))))))))"}) {
    EXPECT_EQ(check_format(format, {}), FormatFault::kWrongFormat) << format;
  }
  for (const char* format : {"(X)", "('x',/)", "(I3,(/))", "(I3,F5.1,2(X,'x'))"}) {
    EXPECT_EQ(check_format(format, kItems), FormatFault::kTakesNoItems) << format;
  }
  for (const char* format :
       {"(2I3,A)", "(I3,2A)", "(F5.1)", "(I3,A)", "(I3,E9.2)", "(I3,(F5.1))"}) {
    EXPECT_EQ(check_format(format, kItems), FormatFault::kWrongItemType) << format;
  }
  static_assert(check_format("(I3,F5.1,A)", kItems) == FormatFault::kNone);
  static_assert(check_format("(3G9.2)", kItems) == FormatFault::kNone);
  static_assert(kItemKind<bool> == kNone && kItemKind<char> == kNone && kItemKind<int*> == kNone);
}

TEST(Record, TakesEveryTypeOfItemAndWritesToOneUnitOrTwo) {
  std::string first_lines, second_lines;
  Unit first(11), second(6);
  first.open_memory(&first_lines);
  second.open_memory(&second_lines);
  const std::string text = "string";
  const char* pointer = "pointer";
  write(first, "(4I4,2F5.2,5A8)", 1, std::size_t{2}, std::int8_t{-3}, 4U, 0.5F, 0.25, text, pointer,
        Text<5>("abc"), "array", std::string_view("view"));
  both(first, second, "(/,A,I3)", "both", 7);
  write(first, "(A)");
  EXPECT_EQ(first_lines,
            "   1   2  -3   4 0.50 0.25  string pointer   abc     array    view\n\nboth  7\n\n");
  EXPECT_EQ(second_lines, "\nboth  7\n");
}

TEST(Record, ALineWithoutAFormatKeepsEveryDigit) {
  std::string first_lines, second_lines;
  Unit first(11), second(6);
  first.open_memory(&first_lines);
  second.open_memory(&second_lines);
  write_list(first);
  both_list(first, second, "n =", 42, -1234567890123, Text<4>("ab"), 0.1, -2.5e-300, "end ");
  EXPECT_EQ(second_lines, " n =          42-1234567890123ab   0.1 -2.5e-300end \n");
  EXPECT_EQ(first_lines, " \n" + second_lines);
}

}  // namespace
}  // namespace qob
