#include "report/workbook.h"

#include <xlsxwriter.h>

#include <cmath>

#include "core/letters.h"

namespace qob {
namespace {

constexpr std::int64_t kRows = 1'048'576;     // of a sheet
constexpr std::size_t kLongestText = 32'767;  // of a cell, in characters
constexpr double kWidth = 14.0;               // of a column, in digits

struct Place {
  lxw_worksheet* sheet;
  lxw_row_t row;
  lxw_col_t column;
  lxw_format* format = nullptr;

  // An empty cell is not written.
  lxw_error operator()(std::monostate) const { return LXW_NO_ERROR; }
  lxw_error operator()(const std::string& text) const {
    if (text.empty()) return LXW_NO_ERROR;
    const std::string valid = valid_utf8(first_bytes(text, kLongestText));
    return worksheet_write_string(sheet, row, column, valid.c_str(), format);
  }
  lxw_error operator()(std::int64_t number) const {
    return worksheet_write_number(sheet, row, column, static_cast<double>(number), format);
  }
  lxw_error operator()(double number) const {
    if (!std::isfinite(number)) return LXW_NO_ERROR;
    return worksheet_write_number(sheet, row, column, number, format);
  }
};

// Writes headings and rows. Returns the first error.
lxw_error fill(lxw_worksheet* sheet, const ReportTable& table, lxw_format* bold) {
  const auto columns = static_cast<lxw_col_t>(table.headings.size());
  lxw_error error = LXW_NO_ERROR;
  const auto put = [&](std::int64_t row, std::size_t column, const Cell& cell, lxw_format* format) {
    const lxw_error status = std::visit(
        Place{sheet, static_cast<lxw_row_t>(row), static_cast<lxw_col_t>(column), format}, cell);
    if (error == LXW_NO_ERROR) error = status;
  };
  worksheet_set_column(sheet, 0, static_cast<lxw_col_t>(columns - 1), kWidth, nullptr);
  worksheet_freeze_panes(sheet, 1, 0);
  for (std::size_t k = 0; k < columns; ++k) put(0, k, std::string(table.headings[k]), bold);
  const std::int64_t shown = table.rows < kRows ? table.rows : kRows - 2;
  for (std::int64_t row = 0; row < shown; ++row) {
    for (std::size_t k = 0; k < columns; ++k) put(row + 1, k, table.cell(row, k), nullptr);
  }
  if (shown < table.rows)
    put(kRows - 1, 0,
        "a sheet has no more rows: all " + std::to_string(table.rows) + " are in " +
            std::string(table.name) + ".csv",
        bold);
  return error;
}

}  // namespace

void Workbook::Free::operator()(lxw_workbook* book) const { lxw_workbook_free(book); }

Workbook::Workbook(const std::string& path) {
  lxw_workbook_options options = {};
  options.constant_memory = LXW_TRUE;
  book_.reset(workbook_new_opt(path.c_str(), &options));
  if (book_ == nullptr) {
    fault_ = lxw_strerror(LXW_ERROR_MEMORY_MALLOC_FAILED);
    return;
  }
  bold_ = workbook_add_format(book_.get());
  format_set_bold(bold_);
}

void Workbook::add(const ReportTable& table) {
  if (!fault_.empty()) return;
  lxw_worksheet* sheet = workbook_add_worksheet(book_.get(), std::string(table.name).c_str());
  const lxw_error error = sheet == nullptr ? LXW_ERROR_CREATING_TMPFILE : fill(sheet, table, bold_);
  if (error != LXW_NO_ERROR) fault_ = lxw_strerror(error);
}

std::string Workbook::close() {
  if (!fault_.empty()) return fault_;
  const lxw_error error = workbook_close(book_.release());
  return error == LXW_NO_ERROR ? "" : lxw_strerror(error);
}

}  // namespace qob
