// A names file of any bytes, and any text on its way to tables and JSON.
#include <algorithm>

#include "core/csv.h"
#include "core/letters.h"
#include "core/text_encoding.h"
#include "fuzz/fuzz.h"
#include "report/csv_tables.h"
#include "report/json.h"
#include "report/names.h"

using namespace qob;

namespace {

// An animal that is found by its identifier is found by its number, too.
void check_names(std::string text) {
  if (decode_text(text) == Encoding::kBinary) return;
  Sheet sheet;
  if (!read_csv(text, separator_of(text), sheet).empty()) return;
  std::vector<std::string> cells;
  for (std::int64_t row = 1; row <= sheet.rows(); ++row) {
    for (std::int64_t k = 1; k <= sheet.cells(row); ++k) cells.emplace_back(sheet.cell(row, k));
  }
  Names names;
  if (!names.read(std::move(sheet)).empty()) return;
  std::int64_t found = 0;
  for (const std::string& cell : cells) {
    const std::int32_t number = names.number_of(cell);
    fuzz::require(number == 0 || names.identifier(number) == cell, "an identifier leads back");
    found += number != 0;
    static_cast<void>(names.alive(number));
    static_cast<void>(names.completeness(number));
  }
  fuzz::require(found >= names.count(), "all animals are found");
}

void check_table(const std::string& text) {
  const ReportTable table{
      "texts", {"text", "number"}, 2, [&](std::int64_t, std::size_t column) -> Cell {
        return column == 0 ? Cell(text) : Cell(0.1);
      }};
  std::string csv;
  write_csv(table, [&](const std::string& line) { csv += line; });
  Sheet sheet;
  fuzz::require(read_csv(csv, ',', sheet).empty() && sheet.rows() == 3, "a table reads");
  for (const std::int64_t row : {2, 3}) {
    fuzz::require(sheet.cell(row, 1) == without_blanks(text), "a text comes back");
    fuzz::require(sheet.cell(row, 2) == "0.1", "so does its neighbour");
  }
}

void check_json(const std::string& text) {
  Report report;
  report.title = text;
  const std::string json = json_of(report);
  fuzz::require(valid_utf8(json) == json, "a report is UTF-8");
  const auto breaks = [](char c) { return static_cast<unsigned char>(c) < ' '; };
  fuzz::require(std::none_of(json.begin(), json.end(), breaks), "and one line");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(fuzz::text_of(data, size));
  check_names(text);
  check_table(text);
  check_json(text);
  return 0;
}
