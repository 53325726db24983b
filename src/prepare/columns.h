// Which column of a herd book holds what.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "core/sheet.h"
#include "prepare/findings.h"
#include "prepare/options.h"

namespace qob {

struct Columns {
  std::array<std::int32_t, kFields> at{};  // by field, from 1; 0: there is none
  std::int32_t alive = 0;                  // the column that tells who may be a candidate
  std::int64_t head = 0;                   // the row of the headings; 0: there is none
  std::int32_t count = 0;                  // columns with a heading, or of the widest row

  std::int32_t of(Field field) const { return at[static_cast<std::size_t>(field)]; }
};

// Finds them by the headings in the first row that holds anything, or as the options say. What is
// missing, or there twice, is a fault of the table.
Columns find_columns(const Sheet& sheet, const PrepareOptions& options, Findings& findings);

// The heading of a column as messages name it (excerpt), or its position: "column 3".
std::string heading(const Sheet& sheet, const Columns& columns, std::int32_t column);

// The headings of some columns, "sire, dam, sex", or the first of them if they are many.
std::string headings(const Sheet& sheet, const Columns& columns,
                     const std::vector<std::int32_t>& which);

}  // namespace qob
