// Tables as the sheets of one workbook (.xlsx), numbers as numbers and texts as texts: none of them
// is ever a formula or a link.
#pragma once

#include <memory>
#include <string>

#include "report/tables.h"

namespace qob {

class Workbook {
 public:
  // The file at `path` appears when the workbook is closed.
  explicit Workbook(const std::string& path);
  Workbook(const Workbook&) = delete;
  Workbook& operator=(const Workbook&) = delete;
  ~Workbook();

  // Adds the table as a sheet of its name, with its headings in bold and in view. A sheet has
  // 1,048,576 rows: of a longer table the last one says so, and the rest is left to the CSV.
  void add(const ReportTable& table);
  // Writes the file. Returns what went wrong, or "".
  std::string close();

 private:
  struct Book;
  std::unique_ptr<Book> book_;
};

}  // namespace qob
