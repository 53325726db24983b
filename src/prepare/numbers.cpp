#include "prepare/numbers.h"

#include <cmath>
#include <limits>
#include <optional>
#include <string>

#include "core/edit.h"
#include "core/lexer.h"
#include "prepare/text_encoding.h"
#include "prepare/words.h"

namespace qob {
namespace {

constexpr double kMostMatings = 1'000'000'000.0;
constexpr double kLargest = 1E30;  // so that no mean or square of them is too large
constexpr std::string_view kMinus = "\xE2\x88\x92";  // U+2212

// A number as it stands in a cell: how it is written, and its text with a point.
struct Written {
  std::string text;
  int points = 0, commas = 0;
  bool grouped = false;  // blanks or apostrophes between its digits
};

bool is_digit(char c) { return c >= '0' && c <= '9'; }

// None for any other text: sign, digits with what parts them, exponent.
std::optional<Written> written(std::string_view cell) {
  Written number;
  if (cell.starts_with(kMinus)) {
    number.text = "-";
    cell.remove_prefix(kMinus.size());
  }
  bool digits = false, exponent = false;
  for (std::size_t k = 0; k < cell.size(); ++k) {
    const char c = cell[k];
    const bool starts = number.text.empty() || number.text.ends_with('E');
    if (is_digit(c)) {
      digits = true;
    } else if ((c == '+' || c == '-') && starts) {
    } else if ((c == 'e' || c == 'E') && digits && !exponent) {
      exponent = true;
    } else if ((c == '.' || c == ',') && !exponent) {
      ++(c == '.' ? number.points : number.commas);
    } else if ((c == '\'' || c == ' ') && digits && k + 1 < cell.size() && is_digit(cell[k + 1])) {
      number.grouped = true;
    } else {
      return std::nullopt;
    }
    number.text.push_back(c == ',' ? '.' : c == 'e' ? 'E' : c);
  }
  const bool complete = digits && (is_digit(number.text.back()) || number.text.back() == '.');
  return complete ? std::optional(number) : std::nullopt;
}

class NumberColumn {
 public:
  NumberColumn(Book& book, Field field) : book_(book), field_(field) {}

  // Calls take(animal, value) for each cell that holds a number.
  template <class Take>
  void read(Take take) {
    const std::int32_t n = book_.herd.count();
    for (std::int32_t i = 1; i <= n && book_.columns.of(field_) > 0; ++i) {
      const std::string_view cell = book_.cell(i, field_);
      const std::optional<Written> number = written(cell);
      if (number && is_sound(*number, i)) {
        double value = 0.0;
        if (read_list(number->text, value) == 0 && std::abs(value) <= kLargest) {
          take(i, value);
        } else {
          tell(i, "a number that is too large : expected at most 1E30");
        }
      } else if (!number && !says_unknown(cell)) {
        tell(i, "no number : expected one, or nothing if it is unknown");
      }
    }
    conclude();
  }

 private:
  void tell(std::int32_t i, const char* words) { book_.tell(Kind::kNumber, i, field_, words); }

  // Digits in groups are refused: "1.234" may be more than a thousand or hardly more than one.
  bool is_sound(const Written& number, std::int32_t i) {
    const bool may_be_thousands =  // where none are expected that are not whole
        field_ == Field::kMatings && number.text.find('.') + 4 == number.text.size();
    const int marks = number.points + number.commas;
    if (number.grouped || marks > 1 || (marks == 1 && may_be_thousands)) {
      tell(
          i,
          "thousands are parted from hundreds : expected digits and at most one decimal point or comma");
      return false;
    }
    if (number.points > 0 && point_ == 0) point_ = i;
    if (number.commas > 0 && comma_ == 0) comma_ = i;
    return true;
  }

  std::string where(std::int32_t i) const {
    return excerpt(book_.cell(i, field_)) + " (row " + std::to_string(book_.herd.row(i)) + ")";
  }

  void conclude() {
    char& decimal = book_.decimal[static_cast<std::size_t>(field_)];
    decimal = comma_ != 0 ? ',' : point_ != 0 ? '.' : '\0';
    if (comma_ == 0) return;
    if (point_ != 0) {
      book_.tell(Kind::kTable, comma_, field_,
                 "a decimal point in " + where(point_) + ", a comma in " + where(comma_) +
                     " : expected one of them in a column");
    } else {
      book_.tell(Kind::kRead, comma_, field_, "decimal commas", "read as decimal points");
    }
  }

  Book& book_;
  Field field_;
  std::int32_t point_ = 0, comma_ = 0;  // the first animal with a decimal point, with a comma
};

}  // namespace

void read_numbers(Book& book) {
  Herd& herd = book.herd;
  herd.ebv.assign(herd.count(), std::numeric_limits<double>::quiet_NaN());
  herd.matings.assign(herd.count(), 0);
  if (book.options.missing_ebv != MissingEbv::kNoneIsRead) {
    NumberColumn(book, Field::kEbv).read([&](std::int32_t i, double value) {
      herd.ebv(i) = value;
    });
  }
  NumberColumn(book, Field::kMatings).read([&](std::int32_t i, double value) {
    if (value >= 0.0 && value <= kMostMatings &&
        value == static_cast<double>(static_cast<std::int32_t>(value))) {
      herd.matings(i) = static_cast<std::int32_t>(value);
    } else {
      book.tell(Kind::kNumber, i, Field::kMatings,
                "no number of matings : expected a whole one from 0 on");
    }
  });
}

}  // namespace qob
