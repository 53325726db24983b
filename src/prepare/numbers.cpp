#include "prepare/numbers.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <string>

#include "core/edit.h"
#include "core/lexer.h"
#include "prepare/words.h"

namespace qob {
namespace {

constexpr double kMostMatings = 1'000'000'000.0;
constexpr double kLargest = 1E30;  // so that no mean or square of them is too large
constexpr std::int32_t kFewRows = 5;
constexpr std::string_view kMinus = "\xE2\x88\x92";  // U+2212

// A number as it stands in a cell: how it is written, and its text with a point.
struct Written {
  std::string text;
  int points = 0, commas = 0;
  bool grouped = false;  // blanks or apostrophes between its digits
};

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
    const bool open = marks == 1 && looks_like_thousands(number.text);
    open_ = open_ || open;
    decided_ = decided_ || (!open && (marks == 1 || is_long(number.text)));
    return true;
  }

  // "1.234" or "-23.456", but not "0.123" or "1.23".
  static bool looks_like_thousands(std::string_view text) {
    if (text.starts_with('-') || text.starts_with('+')) text.remove_prefix(1);
    const std::size_t point = text.find('.');
    return point >= 1 && point <= 3 && point + 4 == text.size() && text[0] != '0' &&
           text.find('E') == text.npos;
  }

  // A whole number that would have its thousands parted where others have them.
  static bool is_long(std::string_view text) {
    return std::count_if(text.begin(), text.end(), is_digit) > 3;
  }

  std::string where(std::int32_t i) const {
    return excerpt(book_.cell(i, field_)) + " (row " + std::to_string(book_.herd.row(i)) + ")";
  }

  void conclude() {
    char& decimal = book_.decimal[static_cast<std::size_t>(field_)];
    decimal = comma_ != 0 ? ',' : point_ != 0 ? '.' : '\0';
    const std::int32_t mark = comma_ != 0 ? comma_ : point_;
    if (comma_ != 0 && point_ != 0) {
      book_.tell(Kind::kTable, comma_, field_,
                 "a decimal point in " + where(point_) + ", a comma in " + where(comma_) +
                     " : expected one of them in a column");
    } else if (open_ && !decided_ && !book_.options.decimals) {
      book_.tell(
          Kind::kTable, mark, field_,
          "more than a thousand or hardly more than one, and no number of the column decides it : expected no marks between thousands, or --decimals if it has decimals");
    } else if (comma_ != 0) {
      book_.tell(Kind::kRead, comma_, field_, "decimal commas", "read as decimal points");
    }
  }

  Book& book_;
  Field field_;
  std::int32_t point_ = 0, comma_ = 0;  // the first animal with a decimal point, with a comma
  bool open_ = false;                   // whether marks may part thousands
  bool decided_ = false;                // whether a number shows that they do not
};

// "Index" may be the heading of a breeding value or of 1, 2, 3, ...
void refuse_count_of_rows(Book& book) {
  const Herd& herd = book.herd;
  std::int32_t i = 1;
  while (i <= herd.count() && herd.row(i) != 0 && herd.ebv(i) == i) ++i;
  const bool all_rows = i > herd.count() || herd.row(i) == 0;
  if (all_rows && i > kFewRows) {
    book.tell(Kind::kTable, 1, Field::kEbv,
              "a count of rows, 1, 2, 3 and so on : expected --column ebv=HEADING, or --no-ebv");
  }
}

}  // namespace

void read_numbers(Book& book) {
  Herd& herd = book.herd;
  herd.ebv.assign(herd.count(), std::numeric_limits<double>::quiet_NaN());
  herd.matings.assign(herd.count(), 0);
  if (book.options.missing_ebv != MissingEbv::kNoneIsRead) {
    NumberColumn(book, Field::kEbv).read([&](std::int32_t i, double value) {
      herd.ebv(i) = value;
    });
    refuse_count_of_rows(book);
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
