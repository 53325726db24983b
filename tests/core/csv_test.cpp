#include "core/csv.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace qob {
namespace {

// The rows of a text, each cell in brackets, and behind them what is wrong.
std::string rows_of(std::string_view text, char separator) {
  Sheet sheet;
  const std::string fault = read_csv(text, separator, sheet);
  std::string rows;
  for (std::int64_t row = 1; row <= sheet.rows(); ++row) {
    for (std::int64_t column = 1; column <= sheet.cells(row); ++column)
      rows.append("[").append(sheet.cell(row, column)).append("]");
    rows += '/';
  }
  return rows + fault;
}

TEST(Csv, IsReadAsItIsWritten_AndQuotesThatMayMeanAnythingAreRefused) {
  const std::string open = "a quotation mark opens a cell that nothing closes";
  const std::string within =
      "a quotation mark within a cell : expected the cell in such marks, and it twice";
  struct Case {
    std::string text, rows;
    char separator = ',';
  };
  const std::vector<Case> cases = {
      {"", ""},
      {" \t", ""},
      {"a,b;c\n,\n1,", "[a][b;c]/[][]/[1][]/"},
      {"a\n\n \t\n\"\"\nb\n \n  ", "[a]///[]/[b]//"},
      {" a b ,\t\" c \"\t,\"d\" \n \"e\"", "[a b][c][d]/[e]/"},
      {"\t a\t\"b\tc\" \t\t\n\t", "[][a][b\tc][][]/[][]/", '\t'},
      {"\"a,\n\n\"\"b\"\"\",\"\"\"\",\"\"\"\"\"\"", "[a,\n\n\"b\"][\"][\"\"]/"},
      {std::string("a\0,\"\0b\"", 7), std::string("[a\0][\0b]/", 9)},
      {"a\r\"b\r\n\"c", "[a]/row 2: " + within},
      {"a,b\nc,d\"\ne", "[a][b]/row 2: " + within},
      {"\n\"a\nb\"\n\"c\"d", "/[a\nb]/row 3: " + within},
      {"\"a\" \"b\"", "row 1: " + within},
      {"a,\"b\" \"", "row 1: " + within},
      {"\"a\n\"\nb,\"c\n\nd\"\"", "[a]/row 2: " + open},
      {"a\n\"", "[a]/row 2: " + open},
  };
  for (const Case& one : cases) EXPECT_EQ(rows_of(one.text, one.separator), one.rows) << one.text;
}

}  // namespace
}  // namespace qob
