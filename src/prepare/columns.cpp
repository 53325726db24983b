#include "prepare/columns.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <vector>

#include "prepare/words.h"

namespace qob {
namespace {

constexpr std::size_t kMostListed = 20;
constexpr std::int64_t kMostTitles = 20;  // rows above the headings
constexpr std::array<Field, 3> kNeeded = {Field::kIdentifier, Field::kSire, Field::kDam};

class Search {
 public:
  Search(const Sheet& sheet, const PrepareOptions& options, Findings& findings)
      : sheet_(sheet), options_(options), findings_(findings) {}

  Columns columns() {
    find_head();
    if (columns_.count == 0) return columns_;
    if (columns_.head > 0) read_headings();
    for (const auto& [field, text] : options_.columns) {
      columns_.at[static_cast<std::size_t>(field)] = column_of(text);
    }
    for (std::size_t f = 0; f < kFields; ++f) {
      if (columns_.at[f] == 0 && columns_.head > 0) find(static_cast<Field>(f));
    }
    for (const Field field : kNeeded) {
      if (columns_.of(field) == 0) tell_missing(field);
    }
    if (options_.alive) columns_.alive = column_of(options_.alive->first);
    const std::int32_t alive = columns_.of(Field::kAlive);
    if (!options_.alive && alive > 0)
      tell(alive, "does not decide who is a candidate",
           "expected --alive COLUMN=VALUE, if it should");
    return columns_;
  }

 private:
  // The first row that holds anything or, behind titles, the first with the headings of parents;
  // with no headings the number of columns.
  void find_head() {
    std::int64_t row = 1;
    while (row <= sheet_.rows() && sheet_.is_empty(row)) ++row;
    if (row > sheet_.rows()) {
      findings_.add({Kind::kTable, 0, 0, "", "the table is empty", ""});
    } else if (options_.header) {
      columns_.head = row;
      for (std::int64_t k = row; k <= std::min(sheet_.rows(), row + kMostTitles); ++k) {
        if (!has_headings(k)) continue;
        columns_.head = k;
        break;
      }
      columns_.count = last_column(columns_.head);
      if (columns_.head > row)
        findings_.add({Kind::kRead, row, 1, "", "no headings",
                       "passed over, up to row " + std::to_string(columns_.head - 1)});
    } else {
      for (row = 1; row <= sheet_.rows(); ++row)
        columns_.count = std::max(columns_.count, last_column(row));
    }
  }

  bool has_headings(std::int64_t row) const {
    bool sire = false, dam = false;
    for (std::int64_t k = 1; k <= sheet_.cells(row); ++k) {
      const std::optional<Field> field = field_of(sheet_.cell(row, k));
      sire = sire || field == Field::kSire;
      dam = dam || field == Field::kDam;
    }
    return sire && dam;
  }

  std::int32_t last_column(std::int64_t row) const {
    std::int64_t column = sheet_.cells(row);
    while (column > 0 && sheet_.cell(row, column).empty()) --column;
    return static_cast<std::int32_t>(column);
  }

  std::string_view head(std::int32_t column) const { return sheet_.cell(columns_.head, column); }

  void read_headings() {
    for (std::int32_t column = 1; column <= columns_.count; ++column) {
      const std::string_view text = head(column);
      if (const auto field = field_of(text)) {
        sure_[static_cast<std::size_t>(*field)].push_back(column);
      } else if (const auto perhaps = field_perhaps(text)) {
        likely_[static_cast<std::size_t>(*perhaps)].push_back(column);
      }
    }
  }

  void find(Field field) {
    const std::size_t f = static_cast<std::size_t>(field);
    const std::vector<std::int32_t>& found = sure_[f].empty() ? likely_[f] : sure_[f];
    if (found.empty()) return;
    std::int32_t& at = columns_.at[f];
    at = found.front();
    if (sure_[f].empty())
      tell(at, "the heading may mean other things", "read as " + std::string(name_of(field)));
    if (found.size() == 1 || field == Field::kName || field == Field::kAlive ||
        field == Field::kHerd)
      return;
    if (field == Field::kBirth) {
      at = longest_of(found);
      return tell(at, "several columns are births", "this one is read, which says most");
    }
    findings_.add({Kind::kTable, columns_.head, found[1], "",
                   "column " + std::to_string(found[0]) + " (" +
                       heading(sheet_, columns_, found[0]) + ") is known as " +
                       std::string(name_of(field)) + " as well : expected one, or --column " +
                       std::string(name_of(field)) + "=HEADING",
                   ""});
  }

  void tell(std::int32_t column, const std::string& words, const std::string& done) {
    findings_.add({Kind::kRead, columns_.head, column, "", words, done});
  }

  // A date says more than a year. found: ascending.
  std::int32_t longest_of(const std::vector<std::int32_t>& found) const {
    std::vector<std::size_t> sizes(found.size(), 0);
    for (std::int64_t row = columns_.head + 1; row <= sheet_.rows(); ++row) {
      for (std::size_t k = 0; k < found.size() && found[k] <= sheet_.cells(row); ++k)
        sizes[k] += sheet_.cell(row, found[k]).size();
    }
    const auto longest = std::max_element(sizes.begin(), sizes.end());
    return found[static_cast<std::size_t>(longest - sizes.begin())];
  }

  // Of a heading, or of a position where there are none; 0 is a fault.
  std::int32_t column_of(const std::string& text) {
    if (columns_.head == 0) {
      std::int32_t position = 0;
      std::from_chars(text.data(), text.data() + text.size(), position);
      if (position >= 1 && position <= columns_.count) return position;
    }
    for (std::int32_t column = 1; columns_.head > 0 && column <= columns_.count; ++column) {
      if (head(column) == text) return column;
    }
    for (std::int32_t column = 1; columns_.head > 0 && column <= columns_.count; ++column) {
      if (folded(head(column)) == folded(text)) return column;
    }
    findings_.add({Kind::kTable, columns_.head, 0, text,
                   "there is no such column : expected " + there_are(), ""});
    return 0;
  }

  std::string there_are() const {
    if (columns_.head == 0) return "a position, 1 to " + std::to_string(columns_.count);
    std::vector<std::int32_t> which;
    for (std::int32_t column = 1; column <= columns_.count; ++column) {
      if (!head(column).empty()) which.push_back(column);
    }
    return "one of " + headings(sheet_, columns_, which);
  }

  void tell_missing(Field field) {
    const std::string name(name_of(field));
    findings_.add({Kind::kTable, columns_.head, 0, "",
                   "no column is known as " + name + " : expected --column " + name + "=" +
                       (columns_.head > 0 ? "HEADING, " : "POSITION, ") + there_are(),
                   ""});
  }

  const Sheet& sheet_;
  const PrepareOptions& options_;
  Findings& findings_;
  Columns columns_;
  // Columns whose heading is a word for a field, by field: surely, or where no other is.
  std::array<std::vector<std::int32_t>, kFields> sure_, likely_;
};

}  // namespace

Columns find_columns(const Sheet& sheet, const PrepareOptions& options, Findings& findings) {
  return Search(sheet, options, findings).columns();
}

std::string heading(const Sheet& sheet, const Columns& columns, std::int32_t column) {
  if (column == 0) return "";
  const std::string_view text = columns.head > 0 ? sheet.cell(columns.head, column) : "";
  return text.empty() ? "column " + std::to_string(column) : excerpt(text);
}

std::string headings(const Sheet& sheet, const Columns& columns,
                     const std::vector<std::int32_t>& which) {
  std::string text;
  for (std::size_t k = 0; k < std::min(which.size(), kMostListed); ++k)
    text += (k == 0 ? "" : ", ") + heading(sheet, columns, which[k]);
  if (which.size() > kMostListed)
    text += " and " + std::to_string(which.size() - kMostListed) + " more";
  return text;
}

}  // namespace qob
