// A column of dates of birth from the lines of any text.
#include "prepare/dates.h"

#include <chrono>

#include "fuzz/herd_book.h"

using namespace qob;

namespace {

std::chrono::year_month_day day_of(int year, int month, int day) {
  using namespace std::chrono;
  return std::chrono::year{year} / month / day;
}

bool is_valid(int year, int month, int day) {
  return year >= 1700 && year <= 2200 && day_of(year, month, day).ok();
}

// How a cell of the form 3/4/2001 or 3-4-2001 can be read.
struct Readings {
  bool day_first = false, month_first = false;
};
Readings readings_of(std::string_view cell) {
  const std::string text(cell);
  int a = 0, b = 0, year = 0, end = 0;
  char first = 0, second = 0;
  const bool three =
      std::sscanf(text.c_str(), "%2d%c%2d%c%4d%n", &a, &first, &b, &second, &year, &end) == 5 &&
      static_cast<std::size_t>(end) == text.size() && first == second &&
      (first == '/' || first == '-') && year >= 1700 &&
      text.find_first_not_of("0123456789/-") == text.npos;
  if (!three || a <= 0 || b <= 0 || a == b) return {};
  return {is_valid(year, b, a), is_valid(year, a, b)};
}

// A date is a day, month or year of the calendar, and its text reads back to it.
void check_dates(const Book& book) {
  const Herd& herd = book.herd;
  std::string texts;
  for (const Date& date : herd.birth) texts += iso_date(date) + "\n";
  fuzz::Column again("birth", texts);
  read_births(again.book);
  for (std::int32_t i = 1; i <= herd.count(); ++i) {
    const Date date = herd.birth(i);
    const std::string_view cell = book.cell(i, Field::kBirth);
    fuzz::require(again.book.herd.birth(i) == date, "the text of a date reads back to it");
    if (!date.is_known()) continue;
    fuzz::require(cell.find_first_not_of("0123456789-/.:,+ TAPMapmUCGZ") == cell.npos,
                  "no other words");
    const int month = date.month > 0 ? date.month : 7;
    const int day = date.day > 0 ? date.day : date.month > 0 ? 15 : 1;
    fuzz::require(date.month > 0 || date.day == 0, "no day without its month");
    fuzz::require(is_valid(date.year, month, day), "a date of the calendar");
    const std::chrono::sys_days at = day_of(date.year, month, day), start = day_of(1900, 1, 1);
    fuzz::require(day_number(date) == (at - start).count(), "days are counted from 1900");
  }
}

// Unless the options say it, a column is refused that does not tell days from months.
void check_order(const fuzz::Column& column) {
  bool both = false, day_first = false, month_first = false;
  for (std::int32_t i = 1; i <= column.book.herd.count(); ++i) {
    const std::string_view cell = column.book.cell(i, Field::kBirth);
    if (cell.find(':') != cell.npos) return;  // of the day, too
    const Readings read = readings_of(cell);
    both |= read.day_first && read.month_first;
    day_first |= read.day_first && !read.month_first;
    month_first |= !read.day_first && read.month_first;
  }
  fuzz::require(!both || day_first || month_first || column.book.findings.hinder(),
                "a date with two readings is refused");
  fuzz::require(!day_first || !month_first || column.book.findings.hinder(),
                "a column with two orders is refused");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  for (const DayOrder order : {DayOrder::kByColumn, DayOrder::kDayFirst, DayOrder::kMonthFirst}) {
    PrepareOptions options;
    options.day_order = order;
    fuzz::Column column("birth", fuzz::text_of(data, size), options);
    read_births(column.book);
    check_dates(column.book);
    if (order == DayOrder::kByColumn) check_order(column);
  }
  return 0;
}
