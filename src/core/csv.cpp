#include "core/csv.h"

#include <algorithm>
#include <array>
#include <utility>

#include "core/text.h"

namespace qob {
namespace {

constexpr std::array<char, 4> kSeparators = {',', ';', '\t', '|'};
constexpr std::size_t kLinesLookedAt = 50;
constexpr std::string_view kTold = "sep=";

// How often each separator stands in the next line, outside of quotes; takes the line off `text`.
std::array<std::size_t, 4> count_separators(std::string_view& text) {
  std::array<std::size_t, 4> count = {};
  bool quoted = false;
  std::size_t at = 0;
  for (; at < text.size() && (quoted || text[at] != '\n'); ++at) {
    if (text[at] == '"') quoted = !quoted;
    const auto* found = std::find(kSeparators.begin(), kSeparators.end(), text[at]);
    if (!quoted && found != kSeparators.end())
      ++count[static_cast<std::size_t>(found - kSeparators.begin())];
  }
  text.remove_prefix(std::min(at + 1, text.size()));
  return count;
}

constexpr std::string_view kFull = "more than a table can hold";
constexpr std::string_view kNotClosed = "a quotation mark opens a cell that nothing closes";
constexpr std::string_view kWithin =
    "a quotation mark within a cell : expected the cell in such marks, and it twice";

// CR too, in a text that decode_text has not made.
bool is_line_end(char c) { return c == '\n' || c == '\r'; }

class Reader {
 public:
  Reader(std::string_view text, char separator, Sheet& sheet)
      : rest_(text), separator_(separator), sheet_(sheet) {}

  // What is wrong with the row that is being made when reading ends, or "".
  std::string_view read_rows();

 private:
  std::string_view read_cells();
  std::string_view take_plain();
  bool take_quoted();
  void skip_blanks();
  bool ends_cell(char c) const { return c == separator_ || is_line_end(c); }

  std::string_view rest_;
  char separator_;
  Sheet& sheet_;
  std::string quoted_;  // the last cell in quotes
};

// A blank line is a row without cells; what follows the last line end is none if it is blank.
std::string_view Reader::read_rows() {
  for (skip_blanks(); !rest_.empty(); skip_blanks()) {
    if (!is_line_end(rest_.front())) {
      const std::string_view fault = read_cells();
      if (!fault.empty()) return fault;
    }
    if (!sheet_.end_row()) return kFull;
    if (!rest_.empty()) rest_.remove_prefix(1);
  }
  return "";
}

// Up to the end of the line.
std::string_view Reader::read_cells() {
  for (;; rest_.remove_prefix(1)) {
    skip_blanks();
    const bool is_quoted = rest_.starts_with('"');
    if (is_quoted && !take_quoted()) return kNotClosed;
    const std::string_view cell = is_quoted ? quoted_ : take_plain();
    skip_blanks();
    if (!rest_.empty() && !ends_cell(rest_.front())) return kWithin;
    if (!sheet_.add_cell(cell)) return kFull;
    if (!rest_.starts_with(separator_)) return "";
  }
}

// Up to what ends the cell, or to a quote, which may not stand there.
std::string_view Reader::take_plain() {
  std::size_t size = 0;
  while (size < rest_.size() && rest_[size] != '"' && !ends_cell(rest_[size])) ++size;
  const std::string_view cell = rest_.substr(0, size);
  rest_.remove_prefix(size);
  return cell;
}

// Piece by piece, each with the quote behind it: a second one belongs to the cell and begins the
// next piece, otherwise the cell is closed. False: nothing closes it.
bool Reader::take_quoted() {
  quoted_.clear();
  do {
    rest_.remove_prefix(1);
    const std::size_t end = rest_.find('"');
    if (end == std::string_view::npos) return false;
    quoted_.append(rest_, 0, end + 1);
    rest_.remove_prefix(end + 1);
  } while (rest_.starts_with('"'));
  quoted_.pop_back();
  return true;
}

void Reader::skip_blanks() {
  while (!rest_.empty() && is_blank(rest_.front()) && rest_.front() != separator_)
    rest_.remove_prefix(1);
}

}  // namespace

// By how many lines agree with the first that has any (a decimal comma or a remark stands in some),
// and then by which stands there more often. Spreadsheets may tell it in a first line of its own.
char separator_of(std::string_view text) {
  if (text.starts_with(kTold) && text.size() > kTold.size() &&
      text.substr(kTold.size() + 1).starts_with('\n')) {
    const char told = text[kTold.size()];
    if (std::find(kSeparators.begin(), kSeparators.end(), told) != kSeparators.end()) return told;
  }
  std::array<std::size_t, 4> expected = {}, agreeing = {};
  for (std::size_t line = 0; line < kLinesLookedAt && !text.empty(); ++line) {
    const std::array<std::size_t, 4> count = count_separators(text);
    for (std::size_t k = 0; k < count.size(); ++k) {
      if (expected[k] == 0) expected[k] = count[k];
      agreeing[k] += count[k] > 0 && count[k] == expected[k];
    }
  }
  std::size_t best = 0;
  for (std::size_t k = 1; k < kSeparators.size(); ++k) {
    if (std::pair(agreeing[k], expected[k]) > std::pair(agreeing[best], expected[best])) best = k;
  }
  return kSeparators[best];
}

std::string read_csv(std::string_view text, char separator, Sheet& sheet) {
  const std::string_view fault = Reader(text, separator, sheet).read_rows();
  if (fault.empty()) return "";
  return "row " + std::to_string(sheet.rows() + 1) + ": " + std::string(fault);
}

}  // namespace qob
