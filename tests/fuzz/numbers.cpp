// A column of breeding values from the lines of any text.
#include "prepare/numbers.h"

#include <cmath>

#include "fuzz/herd_book.h"

using namespace qob;

namespace {

bool take_digits(std::string_view& text) {
  const std::size_t end = std::min(text.find_first_not_of("0123456789"), text.size());
  text.remove_prefix(end);
  return end > 0;
}

bool take_one_of(std::string_view characters, std::string_view& text) {
  if (text.empty() || characters.find(text[0]) == characters.npos) return false;
  text.remove_prefix(1);
  return true;
}

// [+-]digits[.,]digits[E[+-]digits], with a digit in front of the exponent.
bool is_number(std::string_view text) {
  take_one_of("+-", text);
  bool digits = take_digits(text);
  if (take_one_of(".,", text)) digits = take_digits(text) || digits;
  if (!digits) return false;
  if (take_one_of("eE", text)) {
    take_one_of("+-", text);
    if (!take_digits(text)) return false;
  }
  return text.empty();
}

// The cell with a sign that is ASCII.
std::string typed(std::string_view cell) {
  constexpr std::string_view kMinus = "\xE2\x88\x92";
  return cell.starts_with(kMinus) ? "-" + std::string(cell.substr(kMinus.size()))
                                  : std::string(cell);
}

// Returns whether the cell is a number with that sign for its decimals.
void check(std::string_view cell, double value, bool& point, bool& comma) {
  std::string text = typed(cell);
  if (text.starts_with("-+") || text.starts_with("--")) text = "?";
  if (!is_number(text)) return fuzz::require(std::isnan(value), "no other text is a number");
  point |= text.find('.') != text.npos;
  comma |= text.find(',') != text.npos;
  std::replace(text.begin(), text.end(), ',', '.');
  const double expected = std::strtod(text.c_str(), nullptr);
  fuzz::require(std::isfinite(value) ? value == expected : std::abs(expected) > 1e30,
                "a number is what its text says");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Column column("ebv", fuzz::text_of(data, size));
  const Book& book = column.book;
  read_numbers(column.book);
  bool point = false, comma = false;
  for (std::int32_t i = 1; i <= book.herd.count(); ++i) {
    check(book.cell(i, Field::kEbv), book.herd.ebv(i), point, comma);
  }
  fuzz::require(!point || !comma || book.findings.count(Kind::kTable) > 0,
                "a column has points or commas");
  return 0;
}
