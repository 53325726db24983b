#include "report/csv_tables.h"

#include <cmath>

#include "core/edit.h"

namespace qob {
namespace {

struct CellText {
  std::string operator()(std::monostate) const { return ""; }
  std::string operator()(const std::string& text) const { return text; }
  std::string operator()(std::int64_t number) const { return std::to_string(number); }
  std::string operator()(double number) const {
    return std::isfinite(number) ? shortest(number) : "";
  }
};

}  // namespace

void write_csv(const ReportTable& table, const Lines& lines) {
  std::string line;
  for (const std::string_view& heading : table.headings)
    append_csv_cell(line, heading, &heading == table.headings.data());
  lines(line.append("\n"));
  for (std::int64_t row = 0; row < table.rows; ++row) {
    line.clear();
    for (std::size_t k = 0; k < table.headings.size(); ++k)
      append_csv_cell(line, std::visit(CellText(), table.cell(row, k)), k == 0);
    lines(line.append("\n"));
  }
}

}  // namespace qob
