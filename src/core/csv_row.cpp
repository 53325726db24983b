#include "core/csv_row.h"

namespace qob {

void append_csv_cell(std::string& row, std::string_view cell, bool is_first) {
  if (!is_first) row.push_back(',');
  if (cell.find_first_of(",\"\n\r") == std::string_view::npos) {
    row.append(cell);
    return;
  }
  row.push_back('"');
  for (const char c : cell) row.append(c == '"' ? 2 : 1, c);
  row.push_back('"');
}

std::string csv_row(std::initializer_list<std::string_view> cells) {
  std::string row;
  for (const std::string_view& cell : cells) append_csv_cell(row, cell, &cell == cells.begin());
  row.push_back('\n');
  return row;
}

}  // namespace qob
