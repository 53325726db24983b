// Cells from the text of a CSV file: the one place that knows of separators and quotes.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/sheet.h"

namespace qob {

// What parts the cells of a text: the one of comma, semicolon, tab and "|" that stands most evenly
// in its first lines, outside of quotes. A comma if none does.
char separator_of(std::string_view text);

// Reads the cells of a text in UTF-8 with LF line ends (text_encoding). A cell in quotes may hold
// separators, line ends and doubled quotes. Other quotes are wrong: what they enclose would be
// guessed, up to rows that are taken for a part of a cell. Returns what is wrong, with the row, or
// "".
std::string read_csv(std::string_view text, char separator, Sheet& sheet);

}  // namespace qob
