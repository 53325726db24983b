// What the fuzz targets of the herd-book reader share.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/fuzz.h"
#include "prepare/animals.h"
#include "prepare/herd.h"

namespace qob::fuzz {

// Every kind of fault that can be accepted.
inline std::vector<Kind> all_kinds() {
  std::vector<Kind> kinds;
  for (std::size_t k = 0; k < kKindCount; ++k) {
    if (!text_of(static_cast<Kind>(k)).remedy.empty()) kinds.push_back(static_cast<Kind>(k));
  }
  return kinds;
}

inline void add_row(Sheet& sheet, std::initializer_list<std::string_view> cells) {
  for (const std::string_view cell : cells) require(sheet.add_cell(cell), "a small sheet");
  require(sheet.end_row(), "a small sheet");
}

// Animals of whom nothing is known but the cells of one column: the lines of a text.
struct Column {
  Column(std::string_view heading, std::string_view lines, PrepareOptions how = {})
      : options(std::move(how)) {
    add_row(sheet, {"identifier", "sire", "dam", heading});
    for (int i = 1; !lines.empty(); ++i) {
      const std::size_t end = lines.find('\n');
      add_row(sheet, {"A" + std::to_string(i), "", "", lines.substr(0, end)});
      lines.remove_prefix(end == lines.npos ? lines.size() : end + 1);
    }
    book.columns = find_columns(sheet, options, book.findings);
    require(!book.findings.hinder(), "the columns are there");
    enter_animals(book);
  }
  Column(const Column&) = delete;
  Column& operator=(const Column&) = delete;

  PrepareOptions options;
  Sheet sheet;
  Book book{sheet, options, Findings({}), {}, {}};
};

}  // namespace qob::fuzz
