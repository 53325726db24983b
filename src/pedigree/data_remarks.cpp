#include "pedigree/data_remarks.h"

#include <algorithm>
#include <cmath>

#include "core/lexer.h"

namespace qob {
namespace {

constexpr std::size_t kValues = 8;
constexpr std::array<std::string_view, kValues> kNames = {
    "Animal_id", "Sire_is", "Dam_id", "sex", "birth_time", "max_matings", "ebv", "optional_text"};
constexpr std::size_t kSex = 3, kEbv = 6, kText = 7;  // from 0
constexpr std::size_t kTextWidth = 15;
constexpr std::int64_t kLongestSpan = 1000;  // time steps

// Whether a record of plain values has nothing odd in it: no separator but blanks, and no long
// text. Nearly all are so.
bool is_plain(std::string_view record) {
  const auto last = record.find_last_not_of(" \t");
  if (last == std::string_view::npos || record.find(',') != std::string_view::npos) return false;
  const auto before = record.find_last_of(" \t", last);  // npos + 1 is 0
  return last - before <= kTextWidth;
}

bool is_digits(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

bool is_day(std::int32_t month, std::int32_t day) {
  return month >= 1 && month <= 12 && day >= 1 && day <= 31;
}
bool is_year(std::int32_t year) { return year >= 1850 && year <= 2100; }

std::string missing(std::size_t k) {
  return std::string(kNames[k]) + " is empty : " + (k == kSex ? "-1" : "0") + " is taken";
}

// Digits about a decimal point, as an EBV has them.
bool is_decimal(std::string_view text) {
  return text.find('.') != std::string_view::npos &&
         text.find_first_of("0123456789") != std::string_view::npos &&
         text.find_first_not_of("+-.0123456789") == std::string_view::npos;
}

std::string id_text(const Pedigree& pedigree, std::int32_t i) {
  return std::to_string(pedigree.oldped(i, 1));
}

// Whether blanks alone stand between two values.
bool is_parted_by_blanks(std::string_view record) {
  for (std::size_t at = 1; at < record.size(); ++at) {
    if (!is_blank(record[at])) continue;
    const std::size_t next = std::min(record.find_first_not_of(" \t", at), record.size());
    if (next < record.size() && record[at - 1] != ',' && record[next] != ',') return true;
    at = next;
  }
  return false;
}

// The digits about the first comma that stands between some; "" if none does.
std::string comma_between_digits(std::string_view record) {
  for (std::size_t at = 1; at + 1 < record.size(); ++at) {
    if (record[at] != ',' || !is_digit(record[at - 1]) || !is_digit(record[at + 1])) continue;
    std::size_t begin = at, end = at + 1;
    while (begin > 0 && is_digit(record[begin - 1])) --begin;
    while (end < record.size() && is_digit(record[end])) ++end;
    return std::string(record.substr(begin, end - begin));
  }
  return {};
}

// YYYYMMDD, DDMMYYYY or YYYYMM.
bool looks_like_a_date(std::int32_t t) {
  if (t < 0) return false;
  return (is_year(t / 10000) && is_day(t / 100 % 100, t % 100)) ||
         (is_year(t % 10000) && is_day(t / 10000 % 100, t / 1000000)) ||
         (is_year(t / 100) && is_day(t % 100, 1));
}

}  // namespace

void DataRemarks::add_unreadable(std::int64_t line) {
  unreadable_.add(line, [] { return "Animal_id, Sire_is, Dam_id : expected three integers"; });
}

void DataRemarks::add_unread_line(std::int64_t line, std::string_view text) {
  if (end_line_ == 0) end_line_ = line;
  unread_ += !is_blank_text(text);
}

void DataRemarks::add_record(std::int64_t line, std::string_view text, std::string_view rest) {
  if (text.size() > kLineWidth && !is_blank_text(text.substr(kLineWidth))) {
    cut_.add(line, [] { return "longer than 120 characters : the others are not read"; });
  }
  text = text.substr(0, kLineWidth);
  if (!is_blank_text(rest) || !is_plain(text)) add_values(line, text);
}

// The record value by value, from the lexer.
void DataRemarks::add_values(std::int64_t line, std::string_view text) {
  Lexer lexer(text);
  std::array<std::string, kValues> value;
  std::size_t k = 0;
  bool quoted = false;  // the text
  for (Token token = lexer.next(); token.kind != Token::Kind::kEnd; token = lexer.next()) {
    if (token.kind == Token::Kind::kSlash) {
      if (k < kText) empty_.add(line, [&] { return missing(k); });
      const bool more = lexer.next().kind != Token::Kind::kEnd;
      if (more) behind_slash_.add(line, [] { return "what follows the \"/\" is not read"; });
      break;
    }
    if (k >= kValues) {
      if (!quoted)
        many_.add(line, [] { return "more than eight values : expected the text in quotes"; });
      break;
    }
    const std::size_t end = std::min(kValues, k + static_cast<std::size_t>(token.repeat));
    quoted = token.quoted;
    for (; k < end; ++k) {
      value[k] = token.text;
      const bool empty = token.kind == Token::Kind::kNull && k < kText;
      if (empty) empty_.add(line, [&] { return missing(k); });
    }
  }
  add_commas(line, text, value[kEbv], value[kText]);
  if (value[kText].size() > kTextWidth) {
    long_text_.add(line, [&] {
      return "optional_text " + printable(value[kText]) +
             " is cut : expected at most 15 characters";
    });
  }
}

// A decimal comma parts a number in two. It shows where other values are parted by blanks, or by
// what is then the text.
void DataRemarks::add_commas(std::int64_t line, std::string_view record, const std::string& ebv,
                             const std::string& text) {
  std::string number = ebv + "," + text;
  bool found = ebv.find('.') == std::string::npos && is_digits(text) &&
               record.find(number) != std::string_view::npos;
  record = record.substr(0, record.find_first_of("'\""));  // a text may hold commas
  if (!found && is_parted_by_blanks(record)) {
    number = comma_between_digits(record);
    found = !number.empty();
  }
  if (!found) return;
  comma_.add(line, [&] {
    return number + " is read as two values : expected a decimal point, if it is one";
  });
}

void DataRemarks::add_animal(std::int64_t line, const Pedigree& pedigree, std::int32_t i) {
  if (used_.size() == 0) used_.assign(pedigree.maxid, 0);
  for (const int k : {1, 2}) add_parent(line, pedigree, i, k);
  if (pedigree.sire(i) != 0 && pedigree.sire(i) == pedigree.dam(i)) {
    selfed_.add(line, [&] {
      return id_text(pedigree, pedigree.sire(i)) + " is sire and dam of one animal";
    });
  }
  add_text(line, pedigree.txt(i).trimmed());
  add_birth_time(line, pedigree.btime(i));
}

void DataRemarks::add_text(std::int64_t line, std::string_view text) {
  if (!is_decimal(text)) return;
  number_as_text_.add(line, [&] {
    return "optional_text " + std::string(text) + " is a number : the ebv is the value before it";
  });
}

void DataRemarks::add_parent(std::int64_t line, const Pedigree& pedigree, std::int32_t i, int k) {
  const std::int32_t p = pedigree.newped(k, i);
  if (p == 0) return;
  const int other = 3 - k;
  if (pedigree.sex(p) == other) {
    wrong_sex_[static_cast<std::size_t>(k - 1)].add(line, [&] {
      return std::string(k == 1 ? "sire " : "dam ") + id_text(pedigree, p) + " is recorded as a " +
             (k == 1 ? "female" : "male");
    });
  }
  const int before = used_(p);
  if (before == 0 && pedigree.sex(p) == 0 && !birth_time_is_known(pedigree.btime(p))) {
    no_record_.add(line, [&] {
      return "parent " + id_text(pedigree, p) + " has no record : it counts as born in " +
             std::to_string(kNoBirthTime);
    });
  }
  used_(p) = static_cast<char>(before | k);
  if (used_(p) == 3 && before != 3) {
    both_.add(line, [&] { return id_text(pedigree, p) + " is a sire and a dam"; });
  }
}

void DataRemarks::add_birth_time(std::int64_t line, std::int32_t btime) {
  if (looks_like_a_date(btime)) {
    date_.add(line, [&] {
      return "birth_time " + std::to_string(btime) +
             " looks like a date : expected a time step, as a year";
    });
  }
  if (!birth_time_is_known(btime)) {
    return no_time_.add(line, [&] {
      return "birth_time " + std::to_string(btime) + " counts as unknown : expected more than " +
             std::to_string(kNoBirthTime);
    });
  }
  if (first_.line == 0 || btime < first_.value) first_ = {line, btime};
  if (last_.line == 0 || btime > last_.value) last_ = {line, btime};
}

void DataRemarks::tell_of_numbering(Units& units, const std::string& file) const {
  unreadable_.tell(units, file);
  if (unread_ > 0) {
    units.tell(file + ":" + std::to_string(end_line_) +
               ": fewer than three values end the data : lines that are not read : " +
               std::to_string(unread_));
  }
}

void DataRemarks::tell_of_values(Units& units, const std::string& file) const {
  for (const Finding* finding :
       {&cut_, &behind_slash_, &empty_, &many_, &comma_, &long_text_, &number_as_text_, &no_record_,
        &wrong_sex_[0], &wrong_sex_[1], &both_, &selfed_, &date_, &no_time_}) {
    finding->tell(units, file);
  }
  if (last_.value - first_.value > kLongestSpan) {
    units.tell(file + ":" + std::to_string(first_.line) + ": birth times from " +
               std::to_string(first_.value) + " here to " + std::to_string(last_.value) +
               " in line " + std::to_string(last_.line) + " : expected at most 1000 time steps");
  }
}

}  // namespace qob
