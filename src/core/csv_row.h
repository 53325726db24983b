// Rows of CSV as they are written (RFC 4180, with LF).
#pragma once

#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>

namespace qob {

// Takes a line at a time, with its line end.
using Lines = std::function<void(const std::string& line)>;

// Appends a cell, in quotes where it needs them; the second cell of a row and all behind it begin
// with a comma. A row of one empty cell is an empty line.
void append_csv_cell(std::string& row, std::string_view cell, bool is_first);

std::string csv_row(std::initializer_list<std::string_view> cells);

}  // namespace qob
