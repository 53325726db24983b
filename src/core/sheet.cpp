#include "core/sheet.h"

#include <algorithm>

#include "core/letters.h"

namespace qob {
bool Sheet::add_cell(std::string_view text) {
  const auto is_plain = [](char c) { return c > ' ' && c <= '~'; };  // as nearly all are
  if (!text.empty() && !(is_plain(text.front()) && is_plain(text.back())))
    text = without_blanks(text);
  const std::size_t used = text_.size() - rows_.back().text;
  if (text.size() > kLongestRow - used || ends_.size() - rows_.back().cells >= kLongestRow)
    return false;
  text_.append(text);
  ends_.push_back(static_cast<std::uint32_t>(used + text.size()));
  return true;
}

bool Sheet::end_row() {
  if (rows() >= kMostRows) return false;
  rows_.push_back({text_.size(), ends_.size()});
  return true;
}

std::int64_t Sheet::cells(std::int64_t row) const {
  return static_cast<std::int64_t>(begin_of(row + 1).cells - begin_of(row).cells);
}

std::string_view Sheet::cell(std::int64_t row, std::int64_t column) const {
  if (column < 1 || column > cells(row)) return {};
  const std::size_t k = begin_of(row).cells + static_cast<std::size_t>(column) - 1;
  const std::size_t begin = column == 1 ? 0 : ends_[k - 1];
  return std::string_view(text_).substr(begin_of(row).text + begin, ends_[k] - begin);
}

std::int64_t Sheet::next_filled(std::int64_t row, std::int64_t column) const {
  if (column > cells(row)) return 0;
  const std::uint32_t* begin = ends_.data() + begin_of(row).cells;
  const std::uint32_t* from = begin + (column - 1);
  const std::uint32_t* end = begin + cells(row);
  const std::uint32_t* filled = std::upper_bound(from, end, column == 1 ? 0 : *(from - 1));
  return filled == end ? 0 : filled - begin + 1;
}

bool Sheet::is_empty(std::int64_t row) const {
  return begin_of(row + 1).text == begin_of(row).text;
}

}  // namespace qob
