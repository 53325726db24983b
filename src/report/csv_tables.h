// Tables as CSV (RFC 4180, with LF) in UTF-8: a row of headings, reals with all their digits, and
// texts byte for byte.
#pragma once

#include "core/csv_row.h"
#include "report/tables.h"

namespace qob {

void write_csv(const ReportTable& table, const Lines& lines);

}  // namespace qob
