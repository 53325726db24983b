#include "driver/report_tables.h"

#include "driver/sheet_file.h"
#include "report/csv_tables.h"
#include "report/workbook.h"

namespace qob {
namespace {

std::string path_of(const std::string& folder, const ReportTable& table) {
  return folder + "/" + std::string(table.name) + ".csv";
}

std::string headings_of(const ReportTable& table) {
  std::string line;
  for (const std::string_view heading : table.headings)
    append_csv_cell(line, heading, line.empty());
  return line;
}

}  // namespace

void write_tables(const std::string& folder, const Outputs& outputs, const Report& report,
                  const AnimalFigures& animals) {
  const std::string workbook_file = folder + "/tables.xlsx";
  std::string first;
  for_each_table(report, animals, [&](const ReportTable& table) {
    if (first.empty()) first = path_of(folder, table);
    outputs.expect_table(path_of(folder, table), headings_of(table));
  });
  outputs.expect_workbook(workbook_file, first);
  make_or_refuse(folder);

  Workbook workbook(workbook_file);
  for_each_table(report, animals, [&](const ReportTable& table) {
    write_lines(path_of(folder, table), [&](const Lines& lines) { write_csv(table, lines); });
    workbook.add(table);
  });
  const std::string fault = workbook.close();
  if (!fault.empty()) refuse(workbook_file, fault);
}

}  // namespace qob
