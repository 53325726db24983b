#include "report/names.h"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "report/small_report.h"

namespace qob::test {
namespace {

// Lines, and cells parted by blanks; "_" is an empty one.
Sheet sheet_of_text(const std::string& text) {
  std::vector<std::vector<std::string>> rows;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    std::istringstream cells(line);
    rows.emplace_back();
    for (std::string cell; cells >> cell;) rows.back().push_back(cell == "_" ? "" : cell);
  }
  return sheet_of_rows(rows);
}

TEST(Names, AreFoundByNumberAndByIdentifier) {
  Names names;
  EXPECT_EQ(names.number_of("A"), 0);
  EXPECT_EQ(names.identifier(1), "");
  ASSERT_EQ(names.read(sheet_of_text("alive herd Identifier completeness number name birth\n\n"
                                     "Lebt north DE-12 0.5000 1 Ann 2001-04\n"
                                     "nein _ =7 _ -2147483648\n"
                                     "sold _ 2 1e-1 7 Bob _\n")),
            "");
  EXPECT_EQ(names.count(), 3);
  EXPECT_TRUE(names.tells_living());
  EXPECT_EQ(names.identifier(1), "DE-12");
  EXPECT_EQ(names.name(1), "Ann");
  EXPECT_EQ(names.birth(1), "2001-04");
  EXPECT_EQ(names.completeness(1), 0.5);
  EXPECT_EQ(names.name(-2147483648), "");
  EXPECT_TRUE(std::isnan(names.completeness(-2147483648)));
  EXPECT_EQ(names.alive(1), Alive::kYes);
  EXPECT_EQ(names.alive(-2147483648), Alive::kNo);
  EXPECT_EQ(names.alive(7), Alive::kNotTold);
  EXPECT_EQ(names.number_of(" DE-12 "), 1);
  EXPECT_EQ(names.number_of("2"), 7);
  for (const std::int32_t nobody : {0, 2, 3}) EXPECT_EQ(names.identifier(nobody), "") << nobody;
  EXPECT_EQ(names.number_of("7"), 0);
}

TEST(Names, FaultsAreToldWithTheirRow) {
  for (const auto& [text, fault] : std::vector<std::pair<std::string, std::string>>{
           {"", "row 1: no column \"number\" : expected a names file as qob-prepare writes it"},
           {"\nnumber name\n1 A",
            "row 2: no column \"identifier\" : expected a names file as qob-prepare writes it"},
           {"number name identifier NAME", "row 1: the column \"name\" stands twice"},
           {"number identifier\n1 A\n\n1.5 B",
            "row 4: the number is \"1.5\" : expected a whole number, not 0"},
           {"number identifier\n0 A",
            "row 2: the number is \"0\" : expected a whole number, not 0"},
           {"number identifier\n_ A", "row 2: the number is \"\" : expected a whole number, not 0"},
           {"number identifier\n4294967297 A",
            "row 2: the number is \"4294967297\" : expected a whole number, not 0"},
           {"number identifier\n3\n", "row 2: no identifier"},
           {"number identifier\n3 A\n4 B\n3 C", "row 4: the number 3 stands in row 2 already"},
           {"number identifier\n3 A\n1 B\n2 A",
            "the identifier \"A\" stands for the numbers 2 and 3"}}) {
    Names names;
    EXPECT_EQ(names.read(sheet_of_text(text)), fault) << text;
  }
}

}  // namespace
}  // namespace qob::test
