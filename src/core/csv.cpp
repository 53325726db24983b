#include "core/csv.h"

#include <csv.h>

#include <algorithm>
#include <array>
#include <utility>

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

struct Reader {
  Sheet& sheet;
  bool full = false;
};

void take_cell(void* text, std::size_t size, void* data) {
  Reader& reader = *static_cast<Reader*>(data);
  reader.full = reader.full || !reader.sheet.add_cell({static_cast<const char*>(text), size});
}

void take_row(int, void* data) {
  Reader& reader = *static_cast<Reader*>(data);
  reader.full = reader.full || !reader.sheet.end_row();
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
  csv_parser parser;
  csv_init(&parser, CSV_REPALL_NL | CSV_STRICT | CSV_STRICT_FINI);
  csv_set_delim(&parser, static_cast<unsigned char>(separator));
  Reader reader{sheet};
  const bool read =
      csv_parse(&parser, text.data(), text.size(), take_cell, take_row, &reader) == text.size();
  const std::int64_t row = sheet.rows() + 1;
  const bool ended = read && csv_fini(&parser, take_cell, take_row, &reader) == 0;
  const int error = csv_error(&parser);
  csv_free(&parser);
  if (reader.full) return "row " + std::to_string(row) + ": more than a table can hold";
  if (ended) return "";
  if (error != CSV_EPARSE) return csv_strerror(error);
  if (!read)
    return "row " + std::to_string(row) +
           ": a quotation mark within a cell : expected the cell in such marks, and it twice";
  return "row " + std::to_string(row) + ": a quotation mark opens a cell that nothing closes";
}

}  // namespace qob
