#include "prepare/dates.h"

#include <algorithm>
#include <array>
#include <optional>
#include <vector>

#include "core/text.h"
#include "prepare/words.h"

namespace qob {
namespace {

constexpr std::int32_t kFirstYear = 1700, kLastYear = 2200;
constexpr std::int32_t kFirstSerial = 10000, kLastSerial = 99999;  // 1927 to 2173
// So because spreadsheets count a 29 February 1900.
constexpr std::int32_t kSerialOfNewYear1900 = 2;
constexpr std::int64_t kFewDates = 10;
constexpr std::int32_t kLongestGap = 10;  // years without births before the last ones

// The parts of a date as they stand in a cell.
struct Parts {
  std::array<std::int32_t, 3> value = {0, 0, 0};
  std::array<std::size_t, 3> digits = {0, 0, 0};
  std::size_t count = 0;
  char separator = ' ';
};

// What stands before a time of the day: "2001-04-03 00:00:00", "2001-04-03T12:00Z".
std::string_view without_time(std::string_view text) {
  const std::size_t end = std::min(text.find_first_of(" T"), text.size());
  std::string_view time = text.substr(end);
  time.remove_prefix(std::min(time.find_first_not_of(" T"), time.size()));
  const std::size_t hour = time.find_first_not_of("0123456789");
  const bool is_time = (hour == 1 || hour == 2) && time[hour] == ':' &&
                       time.find_first_not_of("0123456789:.,+- APMapmUTCGZ") == time.npos;
  return is_time ? text.substr(0, end) : text;
}

// Up to three numbers with one kind of separator; none for any other text.
std::optional<Parts> parts_of(std::string_view text) {
  text = without_time(text);
  if (text.ends_with('.') && text.size() > 1) text.remove_suffix(1);
  Parts parts;
  for (const char c : text) {
    if (is_digit(c)) {
      if (parts.count == 0) parts.count = 1;
      std::size_t& digits = parts.digits[parts.count - 1];
      if (++digits > 8) return std::nullopt;
      std::int32_t& value = parts.value[parts.count - 1];
      value = 10 * value + (c - '0');
    } else if (c == '-' || c == '/' || c == '.') {
      if (parts.count == 0 || parts.count == 3 || parts.digits[parts.count - 1] == 0)
        return std::nullopt;
      if (parts.separator != ' ' && parts.separator != c) return std::nullopt;
      parts.separator = c;
      ++parts.count;
    } else {
      return std::nullopt;
    }
  }
  if (parts.count == 0 || parts.digits[parts.count - 1] == 0) return std::nullopt;
  return parts;
}

bool is_leap(std::int32_t year) { return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0); }

std::int32_t days_in(std::int32_t year, std::int32_t month) {
  constexpr std::array<std::int32_t, 12> kDays = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return kDays[static_cast<std::size_t>(month - 1)] + (month == 2 && is_leap(year) ? 1 : 0);
}

// A month or day of 0 is not known.
std::optional<Date> date_of(std::int32_t year, std::int32_t month, std::int32_t day) {
  if (year < kFirstYear || year > kLastYear || month < 0 || month > 12 || day < 0)
    return std::nullopt;
  if (day > 0 && (month == 0 || day > days_in(year, month))) return std::nullopt;
  return Date{static_cast<std::int16_t>(year), static_cast<std::int8_t>(month),
              static_cast<std::int8_t>(day)};
}

// The proleptic Gregorian calendar, years that begin in March, as whole days from 1 March of year
// 0.
std::int32_t days_from_civil(std::int32_t year, std::int32_t month, std::int32_t day) {
  const std::int32_t y = month > 2 ? year : year - 1;
  const std::int32_t m = month > 2 ? month - 3 : month + 9;
  return 365 * y + y / 4 - y / 100 + y / 400 + (153 * m + 2) / 5 + day - 1;
}

constexpr std::int32_t kStart1900 = 693901;  // days_from_civil(1900, 1, 1)

Date date_of_day(std::int32_t number) {
  std::int32_t year = 1900 + number / 366, month = 1;
  while (days_from_civil(year + 1, 1, 1) - kStart1900 <= number) ++year;
  std::int32_t left = number - (days_from_civil(year, 1, 1) - kStart1900);
  for (; left >= days_in(year, month); ++month) left -= days_in(year, month);
  return *date_of(year, month, left + 1);
}

// One number: a year, the serial of a spreadsheet, or year, month and day in one.
std::optional<Date> from_one(std::int32_t value, std::size_t digits) {
  if (digits == 4) return date_of(value, 0, 0);
  if (digits == 5 && value >= kFirstSerial && value <= kLastSerial)
    return date_of_day(value - kSerialOfNewYear1900);
  if (digits == 8 && value % 100 > 0) return date_of(value / 10000, value / 100 % 100, value % 100);
  return std::nullopt;
}

bool is_year_last(const Parts& parts) {
  return parts.count == 3 && parts.digits[2] == 4 && parts.digits[0] <= 2 && parts.digits[1] <= 2;
}

bool has_two_readings(const Parts& parts) { return is_year_last(parts) && parts.separator != '.'; }

// 3/4/2001 and 3-4-2001 are read in two ways, 3.4.2001 in one.
std::optional<Date> from_parts(const Parts& parts, bool day_first) {
  const auto& [a, b, c] = parts.value;
  if (parts.count == 1) return from_one(a, parts.digits[0]);
  if (parts.count == 2) {
    if (parts.digits[1] == 4 && parts.digits[0] <= 2 && a > 0) return date_of(b, a, 0);
    const bool decimal = parts.separator == '.';  // 2001.0, a year in other programs' hands
    const bool season = parts.separator == '/' && parts.digits[1] == 2;  // 2001/02 may be one
    return parts.digits[0] == 4 && decimal == (b == 0) && !season ? date_of(a, b, 0) : std::nullopt;
  }
  if (a == 0 || b == 0 || c == 0) return std::nullopt;
  if (parts.digits[0] == 4 && parts.digits[1] <= 2 && parts.digits[2] <= 2) return date_of(a, b, c);
  if (!is_year_last(parts)) return std::nullopt;
  return day_first || !has_two_readings(parts) ? date_of(c, b, a) : date_of(c, a, b);
}

// What the cells of a column say of the order of day and month: those that are a date in one of
// the two alone.
struct Order {
  std::int32_t day_first = 0, month_first = 0, open = 0;  // animals: the first that says so

  bool matters() const { return day_first != 0 || month_first != 0 || open != 0; }
};

void note(Order& order, const Parts& parts, std::int32_t i) {
  const auto day_first = from_parts(parts, true), month_first = from_parts(parts, false);
  if (day_first == month_first) return;
  std::int32_t& which = !month_first ? order.day_first
                        : !day_first ? order.month_first
                                     : order.open;
  if (which == 0) which = i;
}

// Whether days come first; a column that does not decide it is a fault.
bool is_day_first(Book& book, const Order& order) {
  if (book.options.day_order != DayOrder::kByColumn)
    return book.options.day_order == DayOrder::kDayFirst;
  const auto cell = [&](std::int32_t i) {
    return excerpt(book.cell(i, Field::kBirth)) + " (row " + std::to_string(book.herd.row(i)) + ")";
  };
  const std::string mend = " : expected 2001-04-03, or --dates dmy or mdy";
  if (order.day_first != 0 && order.month_first != 0) {
    book.tell(Kind::kTable, order.month_first, Field::kBirth,
              "days stand first in " + cell(order.day_first) + ", months in " +
                  cell(order.month_first) + mend);
  } else if (order.open != 0 && order.day_first == 0 && order.month_first == 0) {
    const auto parts = parts_of(book.cell(order.open, Field::kBirth));
    book.tell(Kind::kTable, order.open, Field::kBirth,
              "either " + iso_date(from_parts(*parts, true).value_or(Date{})) + " or " +
                  iso_date(from_parts(*parts, false).value_or(Date{})) +
                  ", and no date of the column decides it" + mend);
  }
  return order.month_first == 0;
}

// A birth long after all others is most often a slip, and would be the time that all plans look
// from.
void check_last_births(Book& book) {
  std::vector<std::int32_t> years;
  for (const Date& birth : book.herd.birth) {
    if (birth.is_known()) years.push_back(birth.year);
  }
  std::sort(years.begin(), years.end());
  const auto late =
      std::adjacent_find(years.begin() + std::ssize(years) / 2, years.end(),
                         [](std::int32_t a, std::int32_t b) { return b - a > kLongestGap; });
  if (std::ssize(years) < kFewDates || late == years.end()) return;
  for (std::int32_t i = 1; i <= book.herd.count(); ++i) {
    Date& birth = book.herd.birth(i);
    if (birth.year <= *late) continue;
    book.tell(Kind::kBirth, i, Field::kBirth,
              "more than 10 years behind all others, the last of " + std::to_string(*late) +
                  " : expected an earlier one");
    birth = Date{};
  }
}

// Spreadsheets keep dates as numbers, but those whose days and months they have exchanged as well.
void tell_serials(Book& book, std::int32_t first, std::int64_t count) {
  if (count == 0) return;
  book.tell(Kind::kRead, first, Field::kBirth,
            std::to_string(count) + " dates are serial numbers of a spreadsheet",
            "the first is read as " + iso_date(book.herd.birth(first)));
}

void tell_unreadable(Book& book, std::int32_t i, const std::optional<Parts>& parts) {
  const bool short_year =
      parts && parts->count == 3 && parts->digits[0] <= 2 && parts->digits[2] <= 2;
  book.tell(Kind::kBirth, i, Field::kBirth,
            short_year ? "a year of two digits : expected four"
            : parts    ? "no day of the calendar : expected a date as 2001-04-03, or a year"
                       : "no date : expected 2001-04-03, 3.4.2001 or a year");
}

}  // namespace

void read_births(Book& book) {
  Herd& herd = book.herd;
  herd.birth.assign(herd.count(), Date{});
  Order order;
  for (std::int32_t i = 1; i <= herd.count(); ++i) {
    const std::optional<Parts> parts = parts_of(book.cell(i, Field::kBirth));
    if (parts) note(order, *parts, i);
  }
  const bool by_column = book.options.day_order == DayOrder::kByColumn;
  const bool day_first = is_day_first(book, order);
  if (order.matters()) book.day_order = day_first ? DayOrder::kDayFirst : DayOrder::kMonthFirst;
  std::int32_t first_serial = 0;
  std::int64_t serials = 0;
  for (std::int32_t i = 1; i <= herd.count(); ++i) {
    const std::string_view cell = book.cell(i, Field::kBirth);
    const std::optional<Parts> parts = parts_of(cell);
    std::optional<Date> date = parts ? from_parts(*parts, day_first) : std::nullopt;
    if (!date && parts && by_column)
      date = from_parts(*parts, !day_first);  // a column with both orders is one fault
    if (date) {
      herd.birth(i) = *date;
      if (parts->count == 1 && parts->digits[0] == 5 && ++serials == 1) first_serial = i;
    } else if (!says_unknown(cell) && !(parts && parts->value == Parts{}.value)) {
      tell_unreadable(book, i, parts);
    }
  }
  tell_serials(book, first_serial, serials);
  check_last_births(book);
}

std::int32_t day_number(Date date) {
  const std::int32_t month = date.month > 0 ? date.month : 7;
  const std::int32_t day = date.day > 0 ? date.day : date.month > 0 ? 15 : 1;
  return days_from_civil(date.year, month, day) - kStart1900;
}

std::string iso_date(Date date) {
  if (!date.is_known()) return "";
  const auto two = [](int value) {
    return std::string(1, static_cast<char>('0' + value / 10)) +
           static_cast<char>('0' + value % 10);
  };
  std::string text = std::to_string(date.year);
  if (date.month > 0) text += "-" + two(date.month);
  if (date.day > 0) text += "-" + two(date.day);
  return text;
}

}  // namespace qob
