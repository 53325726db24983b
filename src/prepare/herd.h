// The animals of a herd book, as its rows and what follows from them tell.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <string_view>

#include "core/sheet.h"
#include "core/tables.h"
#include "prepare/columns.h"
#include "prepare/findings.h"
#include "prepare/options.h"

namespace qob {

// A day, or the month or year if no more is known (then the rest is 0).
struct Date {
  std::int16_t year = 0;  // 0: nothing is known
  std::int8_t month = 0, day = 0;

  bool is_known() const { return year != 0; }
  friend auto operator<=>(const Date&, const Date&) = default;
};

// The rule by which an animal that might have matings is no candidate; the first that applies.
enum class LeftOut : std::uint8_t {
  kByNone,
  kCastrated,
  kForbidden,
  kNotAlive,
  kUndated,
  kAge,
  kUnknownParent,
  kIncomplete
};
inline constexpr std::size_t kLeftOutCount = 8;

inline constexpr std::int32_t kNoStep = std::numeric_limits<std::int32_t>::min();

// Animals are counted from 1 in the order of their rows; those without a row, whom rows name as
// parents, come last. Identifiers live in the sheet.
struct Herd {
  Table<std::int32_t> row;  // of the sheet; 0: none
  Table<std::string_view> identifier;
  Table2<std::int32_t> parents;  // 2 x n: sire and dam; 0 is unknown
  Table<std::int8_t> sex;        // 1 male, 2 female, 0 unknown
  Table<char> castrated;
  Table<Date> birth;
  Table<std::int32_t> step;     // time step of the birth
  Table<double> ebv;            // not a number: there is none
  Table<std::int32_t> matings;  // the most it may have; above 0: a candidate
  Table<LeftOut> left_out;

  std::int32_t count() const { return static_cast<std::int32_t>(row.size()); }
};

// A herd book that is being read: what its steps read and add to.
struct Book {
  const Sheet& sheet;
  const PrepareOptions& options;
  Findings findings;
  Columns columns;
  Herd herd;
  std::array<char, kFields>
      decimal{};  // what parts decimals in a field's column; 0: there are none
  DayOrder day_order = DayOrder::kByColumn;  // of the births; kByColumn: none depends on it

  // The cell of an animal in the column of a field; "" where there is none.
  std::string_view cell(std::int32_t animal, Field field) const {
    const std::int32_t row = herd.row(animal);
    return row == 0 ? std::string_view{} : sheet.cell(row, columns.of(field));
  }
  // What a finding is about: its value, or else what stands in its cell.
  std::string_view value_of(const Found& found) const {
    return found.value.empty()
               ? sheet.cell(std::max<std::int64_t>(found.row, 1), found.row > 0 ? found.column : 0)
               : found.value;
  }
  // Adds a finding on that cell, or on the animal's row.
  void tell(Kind kind, std::int32_t animal, Field field, std::string words, std::string done = "");
};

// "sire" and "dam" are the fields of parents 1 and 2.
inline Field parent_field(int k) { return k == 1 ? Field::kSire : Field::kDam; }

}  // namespace qob
