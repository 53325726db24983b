// Tables as the sheets of one workbook (.xlsx), numbers as numbers and texts as texts: none of them
// is ever a formula or a link.
#pragma once

#include <memory>
#include <string>

#include "report/tables.h"

struct lxw_workbook;
struct lxw_format;

namespace qob {

class Workbook {
 public:
  // The file at `path` is written when the workbook is closed; rows wait in the system's folder for
  // temporary files.
  explicit Workbook(const std::string& path);

  // Adds the table as a sheet of its name, with its headings in bold and always in view. A sheet
  // has 1,048,576 rows: of a longer table the last one says so, and the rest is left to the CSV.
  void add(const ReportTable& table);
  // Writes the file. Returns what went wrong, or "". Nothing is added thereafter.
  std::string close();

 private:
  struct Free {
    void operator()(lxw_workbook* book) const;
  };
  std::unique_ptr<lxw_workbook, Free> book_;
  [[maybe_unused]] lxw_format* bold_ = nullptr;  // the workbook's
  std::string fault_;
};

}  // namespace qob
