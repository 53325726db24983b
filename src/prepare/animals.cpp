#include "prepare/animals.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "core/text.h"
#include "prepare/words.h"

namespace qob {
namespace {

constexpr std::size_t kLongestIdentifier = 200;

using Identifier = std::string_view;

// An identifier and where it stands.
struct Named {
  Identifier identifier;
  std::int32_t row;  // or number of the animal
  friend auto operator<=>(const Named&, const Named&) = default;
};

class Entry {
 public:
  explicit Entry(Book& book) : book_(book), sheet_(book.sheet) {}

  void enter() {
    std::vector<Named> rows = rows_with_identifiers();
    std::sort(rows.begin(), rows.end());
    drop_doubles(rows);
    known_ = std::move(rows);
    number_rows();
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
    book_.findings.add({kind, row, at, std::string(sheet_.cell(row, at)), std::move(words), ""});
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
        rows.push_back({identifier, static_cast<std::int32_t>(row)});
      }
    }
    return rows;
  }

  void check_width(std::int64_t row) {
    for (std::int64_t k = sheet_.cells(row); k > book_.columns.count; --k) {
      const std::string_view text = sheet_.cell(row, k);
      if (text.empty()) continue;
      book_.findings.add(
          {Kind::kCells, row, static_cast<std::int32_t>(k), std::string(text),
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
    } else {
      return true;
    }
    return false;
  }

  // Of rows with one identifier the first stays.
  void drop_doubles(std::vector<Named>& rows) {
    std::size_t kept = 0;
    for (std::size_t k = 1; k < rows.size(); ++k) {
      if (rows[k].identifier == rows[kept].identifier) {
        tell_double(rows[kept], rows[k].row);
      } else {
        rows[++kept] = rows[k];
      }
    }
    if (!rows.empty()) rows.resize(kept + 1);
  }

  void tell_double(const Named& first, std::int32_t row) {
    const std::int32_t at = column(Field::kIdentifier);
    if (differing_column(first.row, row) != 0) return tell_differing(first.row, row);
    book_.findings.add({Kind::kRepeated, row, at, std::string(first.identifier),
                        "the same as row " + std::to_string(first.row), "read once"});
  }

  // The first column in which two rows differ; 0 if they are the same.
  std::int32_t differing_column(std::int64_t a, std::int64_t b) const {
    const std::int64_t count = std::max(sheet_.cells(a), sheet_.cells(b));
    for (std::int64_t k = 1; k <= count; ++k) {
      if (sheet_.cell(a, k) != sheet_.cell(b, k)) return static_cast<std::int32_t>(k);
    }
    return 0;
  }

  void tell_differing(std::int64_t first, std::int64_t row) {
    const std::int32_t at = differing_column(first, row);
    const auto shown = [&](std::int64_t r) {
      const std::string_view text = sheet_.cell(r, at);
      return text.empty() ? std::string("nothing") : "\"" + std::string(text) + "\"";
    };
    fault(Kind::kDuplicate, row, column(Field::kIdentifier),
          "rows " + std::to_string(first) + " and " + std::to_string(row) + " differ in " +
              heading(sheet_, book_.columns, at) + " (" + shown(first) + ", " + shown(row) +
              ") : expected one row for an animal");
  }

  // Animals are numbered in the order of their rows.
  void number_rows() {
    Herd& herd = book_.herd;
    std::vector<std::pair<std::int32_t, std::size_t>> order;
    for (std::size_t k = 0; k < known_.size(); ++k) order.emplace_back(known_[k].row, k);
    std::sort(order.begin(), order.end());
    herd.row.assign(std::ssize(order), 0);
    std::int32_t animal = 0;
    for (const auto& [row, k] : order) {
      herd.row(++animal) = row;
      known_[k].row = animal;
    }
  }

  // 0 if there is no such animal.
  static std::int32_t number_of(const std::vector<Named>& known, Identifier identifier) {
    const auto found = std::lower_bound(known.begin(), known.end(), Named{identifier, 0});
    return found != known.end() && found->identifier == identifier ? found->row : 0;
  }

  // Parents that have no row get numbers behind the others, in the order in which they are named.
  void number_parents() {
    Herd& herd = book_.herd;
    const std::int32_t n = herd.count();
    herd.parents.assign(2, n, 0);
    std::vector<Named> unrecorded;  // by place: 2 x animal + sire 0, dam 1
    for (std::int32_t i = 1; i <= n; ++i) {
      for (int k = 1; k <= 2; ++k) number_parent(i, k, unrecorded);
    }
    std::stable_sort(unrecorded.begin(), unrecorded.end(),
                     [](const Named& a, const Named& b) { return a.identifier < b.identifier; });
    std::vector<Named> founders;  // the first place of each
    std::unique_copy(unrecorded.begin(), unrecorded.end(), std::back_inserter(founders),
                     [](const Named& a, const Named& b) { return a.identifier == b.identifier; });
    add_founders(founders, n);
    for (const Named& place : unrecorded) {
      herd.parents(place.row % 2 + 1, place.row / 2) = number_of(founders, place.identifier);
    }
  }

  void number_parent(std::int32_t i, int k, std::vector<Named>& unrecorded) {
    const std::int32_t at = column(parent_field(k));
    const std::int64_t row = book_.herd.row(i);
    const Identifier identifier = sheet_.cell(row, at);
    if (identifier == last_[k - 1].identifier) {  // full sibs often follow one another
      book_.herd.parents(k, i) = last_[k - 1].row;
      if (last_[k - 1].row == 0 && last_missing_[k - 1])
        unrecorded.push_back({identifier, 2 * i + k - 1});
      return;
    }
    const bool fit = !is_unknown(identifier) && is_fit(row, at);
    const std::int32_t number = fit ? number_of(known_, identifier) : 0;
    book_.herd.parents(k, i) = number;
    last_missing_[k - 1] = fit && number == 0;
    last_[k - 1] = {identifier, number};
    if (last_missing_[k - 1]) unrecorded.push_back({identifier, 2 * i + k - 1});
  }

  // Their tables grow once; `founders` then holds their numbers.
  void add_founders(std::vector<Named>& founders, std::int32_t n) {
    Herd& herd = book_.herd;
    std::vector<std::size_t> order(founders.size());
    for (std::size_t k = 0; k < order.size(); ++k) order[k] = k;
    std::sort(order.begin(), order.end(),
              [&](std::size_t a, std::size_t b) { return founders[a].row < founders[b].row; });
    const std::int64_t count = n + std::ssize(founders);
    Table<std::int32_t> row(count, 0);
    Table2<std::int32_t> parents(2, count, 0);
    herd.identifier.assign(count, "");
    for (const Named& animal : known_) herd.identifier(animal.row) = animal.identifier;
    for (std::int32_t i = 1; i <= n; ++i) {
      row(i) = herd.row(i);
      for (int k = 1; k <= 2; ++k) parents(k, i) = herd.parents(k, i);
    }
    std::swap(herd.row, row);
    std::swap(herd.parents, parents);
    std::int32_t number = n;
    for (const std::size_t k : order) {
      Named& founder = founders[k];
      herd.identifier(++number) = founder.identifier;
      book_.tell(Kind::kFounder, founder.row / 2, parent_field(founder.row % 2 + 1),
                 "a parent without a row of its own", "taken as a founder");
      founder.row = number;
    }
  }

  // Identifiers that a person may take for one another.
  void tell_alike() {
    const Herd& herd = book_.herd;
    std::vector<std::pair<std::string, std::int32_t>> texts;
    for (std::int32_t i = 1; i <= herd.count(); ++i) {
      const Identifier text = herd.identifier(i);
      texts.emplace_back(folded(text), i);
    }
    std::sort(texts.begin(), texts.end());
    for (std::size_t k = 1; k < texts.size(); ++k) {
      if (texts[k].first != texts[k - 1].first) continue;
      const std::int32_t a = texts[k - 1].second, b = texts[k].second;
      book_.findings.add(
          {Kind::kAlike, std::max(herd.row(a), herd.row(b)), column(Field::kIdentifier),
           std::string(herd.identifier(b)),
           "differs from \"" + std::string(herd.identifier(a)) + "\" by case or blanks alone",
           "taken as two animals"});
    }
  }

  Book& book_;
  const Sheet& sheet_;
  std::vector<Named> known_;  // animals with a row, by identifier
  std::array<Named, 2> last_ = {};
  std::array<bool, 2> last_missing_ = {};
};

}  // namespace

void enter_animals(Book& book) { Entry(book).enter(); }

}  // namespace qob
