#include "prepare/animals.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>
#include <vector>

#include "core/identifier_index.h"
#include "core/letters.h"
#include "core/text.h"
#include "prepare/words.h"

namespace qob {
namespace {

constexpr std::size_t kLongestIdentifier = 200;

using Identifier = std::string_view;

// What stays of an identifier where a person or a spreadsheet was careless of it.
std::string essence(Identifier text) {
  std::string folds = folded(text);
  folds.erase(0, folds.find_first_not_of('0'));
  return folds;
}

// What a spreadsheet makes of a long number: "2.76E+14".
bool is_shortened(Identifier text) {
  const std::size_t exponent = text.find("E+");
  const auto is_digits = [](Identifier digits) {
    return !digits.empty() && digits.find_first_not_of("0123456789") == Identifier::npos;
  };
  return exponent != Identifier::npos && is_digits(text.substr(0, 1)) &&
         (exponent == 1 ||
          ((text[1] == '.' || text[1] == ',') && is_digits(text.substr(2, exponent - 2)))) &&
         is_digits(text.substr(exponent + 2));
}

class Entry {
 public:
  explicit Entry(Book& book) : book_(book), sheet_(book.sheet) {}

  void enter() {
    std::vector<Named> rows = rows_with_identifiers();
    sort_by_identifier(rows);
    drop_doubles(rows);
    if (rows.empty())
      book_.findings.add({Kind::kTable, 0, 0, "", "no row is that of an animal", ""});
    number_rows(rows);
    known_ = IdentifierIndex(std::move(rows));
    number_parents();
    tell_alike();
  }

 private:
  std::int32_t column(Field field) const { return book_.columns.of(field); }

  bool is_unknown(Identifier text) const {
    if (says_unknown(text)) return true;
    return std::any_of(book_.options.unknown.begin(), book_.options.unknown.end(),
                       [&](const std::string& word) { return folded(word) == folded(text); });
  }

  void fault(Kind kind, std::int64_t row, std::int32_t at, std::string words) {
    book_.findings.add({kind, row, at, "", std::move(words),
                        at == column(Field::kIdentifier) ? "" : "the parent is taken as unknown"});
  }

  std::vector<Named> rows_with_identifiers() {
    std::vector<Named> rows;
    const std::int32_t at = column(Field::kIdentifier);
    for (std::int64_t row = book_.columns.head + 1; row <= sheet_.rows(); ++row) {
      if (sheet_.is_empty(row)) continue;
      check_width(row);
      const Identifier identifier = sheet_.cell(row, at);
      if (is_unknown(identifier)) {
        fault(Kind::kIdentifier, row, at, "no identifier : expected one in every row");
      } else if (is_fit(row, at)) {
        rows.emplace_back(identifier, static_cast<std::int32_t>(row));
      }
    }
    return rows;
  }

  void check_width(std::int64_t row) {
    for (std::int32_t k = 1; k <= sheet_.cells(row); ++k) {
      if (sheet_.cell(row, k).find('\n') == Identifier::npos) continue;
      book_.findings.add(
          {Kind::kCells, row, k, "",
           "a line end in a cell : is there a quotation mark too many, so that rows are in it?",
           "it is read as it stands"});
    }
    for (std::int64_t k = sheet_.cells(row); k > book_.columns.count; --k) {
      const std::string_view text = sheet_.cell(row, k);
      if (text.empty()) continue;
      book_.findings.add(
          {Kind::kCells, row, static_cast<std::int32_t>(k), "",
           "a cell without a heading : expected " + std::to_string(book_.columns.count) + " cells",
           ""});
      return;
    }
  }

  // Whether the cell can be an identifier.
  bool is_fit(std::int64_t row, std::int32_t at) {
    const Identifier text = sheet_.cell(row, at);
    if (text.size() > kLongestIdentifier) {
      fault(Kind::kIdentifier, row, at,
            "an identifier of " + std::to_string(text.size()) + " bytes : expected at most 200");
    } else if (std::any_of(text.begin(), text.end(),
                           [](char c) { return is_control(c) || c == '\t'; })) {
      fault(Kind::kIdentifier, row, at, "a line end or control character in an identifier");
    } else if (is_shortened(text)) {
      fault(Kind::kIdentifier, row, at,
            "a number whose last digits a spreadsheet has lost : expected the column as text");
    } else {
      return true;
    }
    return false;
  }

  // Of rows with one identifier the first stays.
  void drop_doubles(std::vector<Named>& rows) {
    std::size_t kept = 0;
    for (std::size_t k = 1; k < rows.size(); ++k) {
      if (rows[k].has_same_identifier(rows[kept])) {
        tell_double(rows[kept], rows[k].number);
      } else {
        rows[++kept] = rows[k];
      }
    }
    if (!rows.empty()) rows.erase(rows.begin() + static_cast<std::ptrdiff_t>(kept) + 1, rows.end());
  }

  void tell_double(const Named& first, std::int32_t row) {
    const std::int32_t at = column(Field::kIdentifier);
    if (differing_column(first.number, row) != 0) return tell_differing(first.number, row);
    book_.findings.add({Kind::kRepeated, row, at, "",
                        "the same as row " + std::to_string(first.number), "read once"});
  }

  // The first column in which two rows differ; 0 if they are the same.
  std::int32_t differing_column(std::int64_t a, std::int64_t b) const {
    const std::int64_t shorter = std::min(sheet_.cells(a), sheet_.cells(b));
    for (std::int64_t k = 1; k <= shorter; ++k) {
      if (sheet_.cell(a, k) != sheet_.cell(b, k)) return static_cast<std::int32_t>(k);
    }
    const std::int64_t longer = sheet_.cells(a) > shorter ? a : b;
    return static_cast<std::int32_t>(sheet_.next_filled(longer, shorter + 1));
  }

  void tell_differing(std::int64_t first, std::int64_t row) {
    const std::int32_t at = differing_column(first, row);
    const auto shown = [&](std::int64_t r) {
      const std::string_view text = sheet_.cell(r, at);
      return text.empty() ? std::string("nothing") : "\"" + excerpt(text) + "\"";
    };
    fault(Kind::kDuplicate, row, column(Field::kIdentifier),
          "rows " + std::to_string(first) + " and " + std::to_string(row) + " differ in " +
              heading(sheet_, book_.columns, at) + " (" + shown(first) + ", " + shown(row) +
              ") : expected one row for an animal");
  }

  // Animals are numbered in the order of their rows; `rows` then has their numbers.
  void number_rows(std::vector<Named>& rows) {
    Herd& herd = book_.herd;
    herd.row.assign(std::ssize(rows), 0);
    std::transform(rows.begin(), rows.end(), herd.row.begin(),
                   [](const Named& named) { return named.number; });
    std::sort(herd.row.begin(), herd.row.end());
    Table<std::int32_t> animal(sheet_.rows(), 0);
    for (std::int32_t i = 1; i <= herd.count(); ++i) animal(herd.row(i)) = i;
    for (Named& named : rows) named.number = animal(named.number);
  }

  // Parents that have no row get numbers behind the others, in the order in which they are named.
  void number_parents() {
    Herd& herd = book_.herd;
    const std::int32_t n = herd.count();
    herd.parents.assign(2, n, 0);
    std::vector<Named> unrecorded;  // by place: 2 x animal + sire 0, dam 1
    for (std::int32_t i = 1; i <= n; ++i) {
      for (int k = 1; k <= 2; ++k) {
        if (number_parent(i, k)) unrecorded.emplace_back(parent_text(i, k), 2 * i + k - 1);
      }
    }
    sort_by_identifier(unrecorded);
    std::vector<std::int32_t>& places = founder_places_;
    for (std::size_t k = 0; k < unrecorded.size(); ++k) {
      if (k == 0 || !unrecorded[k].has_same_identifier(unrecorded[k - 1]))
        places.push_back(unrecorded[k].number);
    }
    std::sort(places.begin(), places.end());
    enlarge(n + std::ssize(places));
    std::vector<Named> founders;
    while (founders.size() < places.size())
      founders.push_back(add_founder(n + static_cast<std::int32_t>(founders.size()) + 1));
    sort_by_identifier(founders);
    const IdentifierIndex index(std::move(founders));
    for (const Named& place : unrecorded)
      herd.parents(place.number % 2 + 1, place.number / 2) = index.find(place.identifier);
  }

  Identifier parent_text(std::int32_t i, int k) const { return book_.cell(i, parent_field(k)); }

  // Whether the parent is known and has no row. Full sibs often follow one another.
  bool number_parent(std::int32_t i, int k) {
    Parent& last = last_[static_cast<std::size_t>(k - 1)];
    const Identifier text = parent_text(i, k);
    if (text != last.text) {
      const bool unknown = is_unknown(text);
      const bool fit = unknown || is_fit(book_.herd.row(i), column(parent_field(k)));
      const std::int32_t number = unknown || !fit ? 0 : known_.find(text);
      // What is not fit is told in each row.
      last = {fit ? text : Identifier{}, number, fit && !unknown && number == 0};
    }
    book_.herd.parents(k, i) = last.number;
    return last.is_unrecorded;
  }

  void enlarge(std::int64_t count) {
    Herd& herd = book_.herd;
    const std::int32_t n = herd.count();
    Table<std::int32_t> row(count, 0);
    Table2<std::int32_t> parents(2, count, 0);
    herd.identifier.assign(count, "");
    for (const Named& animal : known_.names()) herd.identifier(animal.number) = animal.identifier;
    for (std::int32_t i = 1; i <= n; ++i) {
      row(i) = herd.row(i);
      for (int k = 1; k <= 2; ++k) parents(k, i) = herd.parents(k, i);
    }
    std::swap(herd.row, row);
    std::swap(herd.parents, parents);
  }

  Named add_founder(std::int32_t number) {
    const auto [offspring, field] = place_of(number);
    const Identifier text = book_.cell(offspring, field);
    book_.herd.identifier(number) = text;
    book_.tell(Kind::kFounder, offspring, field, "a parent without a row of its own",
               "taken as a founder");
    return {text, number};
  }

  // The cell that names an animal first: its own, or of a founder its offspring's.
  std::pair<std::int32_t, Field> place_of(std::int32_t i) const {
    if (book_.herd.row(i) != 0) return {i, Field::kIdentifier};
    const std::int32_t place =
        founder_places_[static_cast<std::size_t>(i) - known_.names().size() - 1];
    return {place / 2, parent_field(place % 2 + 1)};
  }

  // Identifiers that a person may take for one another.
  void tell_alike() {
    const Herd& herd = book_.herd;
    std::vector<std::pair<std::uint64_t, std::int32_t>> codes;  // of their essence
    for (std::int32_t i = 1; i <= herd.count(); ++i)
      codes.emplace_back(Named(essence(herd.identifier(i)), i).code, i);
    std::sort(codes.begin(), codes.end());
    for (std::size_t k = 1; k < codes.size(); ++k) {
      const std::int32_t a = codes[k - 1].second, b = codes[k].second;
      if (codes[k].first != codes[k - 1].first ||
          essence(herd.identifier(a)) != essence(herd.identifier(b)))
        continue;
      const auto [animal, field] = place_of(b);
      book_.tell(Kind::kAlike, animal, field,
                 "differs from \"" + std::string(herd.identifier(a)) +
                     "\" by case, blanks or leading zeros alone",
                 "taken as two animals");
    }
  }

  struct Parent {
    Identifier text;
    std::int32_t number = 0;
    bool is_unrecorded = false;
  };
  Book& book_;
  const Sheet& sheet_;
  IdentifierIndex known_;                     // animals with a row
  std::vector<std::int32_t> founder_places_;  // where those without are named first
  std::array<Parent, 2> last_;
};

}  // namespace

void enter_animals(Book& book) { Entry(book).enter(); }

}  // namespace qob
