#include "report/names.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

#include "core/letters.h"
#include "core/lexer.h"
#include "core/text.h"

namespace qob {
namespace {

// In the order of Names::Field.
constexpr std::array<std::string_view, 6> kHeadings = {"number", "identifier", "name",
                                                       "birth",  "alive",      "completeness"};

// As `plain` leaves them, in the languages in which herd books are understood.
constexpr std::array<std::string_view, 32> kYes = {
    "yes",    "y",       "true",    "t",       "1",        "alive",   "living", "live",
    "ja",     "j",       "lebt",    "lebend",  "lebendig", "amleben", "oui",    "o",
    "vivant", "vivante", "envie",   "si",      "s",        "vivo",    "viva",   "vivoa",
    "leeft",  "levend",  "inleven", "levende", "ilive",    "lever",   "x",      "lives"};
constexpr std::array<std::string_view, 26> kNo = {
    "no",       "n",     "false",  "f",           "0",        "dead",         "died",
    "deceased", "nein",  "tot",    "gestorben",   "verendet", "geschlachtet", "non",
    "mort",     "morte", "muerto", "muerta",      "nee",      "dood",         "gestorven",
    "nej",      "dod",   "doed",   "slaughtered", "culled"};

bool is_one_of(std::string_view word, const auto& words) {
  return std::find(words.begin(), words.end(), word) != words.end();
}

Alive alive_of(std::string_view cell) {
  const std::string word = plain(cell);
  return is_one_of(word, kYes) ? Alive::kYes : is_one_of(word, kNo) ? Alive::kNo : Alive::kNotTold;
}

std::string at_row(std::int64_t row) { return "row " + std::to_string(row) + ": "; }

}  // namespace

std::string Names::read(Sheet&& sheet) {
  sheet_ = std::move(sheet);
  std::int64_t row = 1;
  while (row <= sheet_.rows() && sheet_.is_empty(row)) ++row;
  std::string fault = find_columns(row);
  std::vector<Named> names;
  while (fault.empty() && ++row <= sheet_.rows()) {
    if (!sheet_.is_empty(row)) fault = add_animal(row, names);
  }
  return fault.empty() ? index_identifiers(std::move(names)) : fault;
}

std::string Names::find_columns(std::int64_t head) {
  for (std::int64_t k = 1; head <= sheet_.rows() && k <= sheet_.cells(head); ++k) {
    const std::string heading = lowercase(sheet_.cell(head, k));
    const auto* found = std::find(kHeadings.begin(), kHeadings.end(), heading);
    if (found == kHeadings.end()) continue;
    std::int64_t& column = column_[found - kHeadings.begin()];
    if (column > 0) return at_row(head) + "the column \"" + heading + "\" stands twice";
    column = k;
  }
  for (const Field field : {kNumber, kIdentifier}) {
    if (column_[field] == 0)
      return at_row(head) + "no column \"" + std::string(kHeadings[field]) +
             "\" : expected a names file as qob-prepare writes it";
  }
  return "";
}

std::string Names::add_animal(std::int64_t row, std::vector<Named>& names) {
  const std::string_view text = sheet_.cell(row, column_[kNumber]);
  const std::string_view identifier = sheet_.cell(row, column_[kIdentifier]);
  std::int32_t number = 0;
  if (to_integer(text, number) != 0 || number == 0)
    return at_row(row) + "the number is \"" + excerpt(text) + "\" : expected a whole number, not 0";
  if (identifier.empty()) return at_row(row) + "no identifier";
  auto place = static_cast<std::int32_t>(row_.size());
  const IdTree::Found found = places_.build_tree(number, place);
  if (found.in_tree)
    return at_row(row) + "the number " + std::to_string(number) + " stands in row " +
           std::to_string(row_[static_cast<std::size_t>(found.number) - 1]) + " already";
  row_.push_back(static_cast<std::int32_t>(row));
  names.emplace_back(identifier, number);
  tells_living_ = tells_living_ || alive(number) == Alive::kYes;
  return "";
}

std::string Names::index_identifiers(std::vector<Named> names) {
  sort_by_identifier(names);
  const auto twice =
      std::adjacent_find(names.begin(), names.end(),
                         [](const Named& a, const Named& b) { return a.has_same_identifier(b); });
  if (twice != names.end())
    return "the identifier \"" + excerpt(twice->identifier) + "\" stands for the numbers " +
           std::to_string(twice->number) + " and " + std::to_string((twice + 1)->number);
  numbers_ = IdentifierIndex(std::move(names));
  return "";
}

// Numbers that qob-prepare gave are places.
std::string_view Names::cell(std::int32_t number, Field field) const {
  if (number == 0) return {};
  const IdTree::Found found = places_.find(number, number);
  return found.in_tree
             ? sheet_.cell(row_[static_cast<std::size_t>(found.number) - 1], column_[field])
             : std::string_view{};
}

Alive Names::alive(std::int32_t number) const { return alive_of(cell(number, kAlive)); }

double Names::completeness(std::int32_t number) const {
  double value = std::numeric_limits<double>::quiet_NaN();
  static_cast<void>(to_real(cell(number, kCompleteness), value));
  return value;
}

std::int32_t Names::number_of(std::string_view identifier) const {
  return numbers_.find(without_blanks(identifier));
}

}  // namespace qob
