// A table of cells as a spreadsheet shows it: texts in UTF-8, rows and columns counted from 1.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qob {

// Four bytes a cell and sixteen a row beside the text itself.
class Sheet {
 public:
  // What a sheet holds at most, so that animals, also those that rows only name as parents, and
  // the cells and bytes of a row are counted in 32 bits.
  static constexpr std::int64_t kMostRows = 500'000'000;
  static constexpr std::size_t kLongestRow = 1U << 30U;

  // Adds a cell to the row that is being made, without the blanks about it, and ends that row.
  // False: the sheet is full, and nothing was added.
  bool add_cell(std::string_view text);
  bool end_row();
  // What had to be assumed of the text that the cells come from; "" if nothing.
  void assume(std::string what) { assumed_ = std::move(what); }
  const std::string& assumed() const { return assumed_; }

  std::int64_t rows() const { return static_cast<std::int64_t>(rows_.size()) - 1; }
  std::int64_t cells(std::int64_t row) const;
  // "" beyond the row's last cell. Valid as long as nothing is added.
  std::string_view cell(std::int64_t row, std::int64_t column) const;
  // The first column from `column` on whose cell holds anything; 0 if there is none.
  std::int64_t next_filled(std::int64_t row, std::int64_t column) const;
  // Whether no cell of the row holds anything.
  bool is_empty(std::int64_t row) const;

 private:
  struct Row {
    std::size_t text = 0, cells = 0;  // where its text and its cells begin
  };
  const Row& begin_of(std::int64_t row) const { return rows_[static_cast<std::size_t>(row - 1)]; }

  std::string text_;
  std::string assumed_;
  std::vector<std::uint32_t> ends_;  // of cells, within their row's text
  std::vector<Row> rows_{1};         // one more than there are rows: the one being made
};

}  // namespace qob
