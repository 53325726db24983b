// The tables of a report as files of one folder: one CSV a table, and all of them as the sheets of
// a workbook.
#pragma once

#include <string>

#include "driver/report_files.h"
#include "report/tables.h"

namespace qob {

// Makes the folder if it is not there. Nothing is written if one of the files may not be.
void write_tables(const std::string& folder, const Outputs& outputs, const Report& report,
                  const AnimalFigures& animals);

}  // namespace qob
