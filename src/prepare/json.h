// What was found in a herd book as JSON, for programs that show it; docs/manual.md describes it.
#pragma once

#include <string>

#include "core/csv_row.h"
#include "prepare/prepare.h"

namespace qob {

// What a prepared herd book does not know of itself.
struct Telling {
  std::string program;  // with its version
  std::string file;     // the herd book
  std::string summary;  // what the screen shows of it
};

// One object in one line; every key is there whatever was found. Tables are objects of columns,
// arrays of equal length. Bytes that are no UTF-8 become U+FFFD.
void write_json(const Prepared& prepared, const Telling& telling, const Lines& lines);

}  // namespace qob
