// What the names file of a herd book (NAME.names.csv) tells of the animals of a data file.
//
//   number,identifier,label,row,name,sex,birth,time,sire,dam,matings,ebv,completeness,alive,herd
//
// Columns stand in any order and are found by their headings; number and identifier must be there.
// Texts are those of the sheet, never copies.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/identifier_index.h"
#include "core/sheet.h"
#include "pedigree/idtree.h"

namespace qob {

enum class Alive : std::uint8_t { kNotTold, kYes, kNo };

class Names {
 public:
  Names() = default;
  Names(const Names&) = delete;  // views lead into the sheet
  Names& operator=(const Names&) = delete;

  // Takes the sheet of a names file. Returns what is wrong, with the row, or "". Once at most.
  std::string read(Sheet&& sheet);

  // Animals with a number; 0 without a names file.
  std::int64_t count() const { return std::ssize(row_); }
  // Whether it says of any animal that it lives.
  bool tells_living() const { return tells_living_; }

  // Of the animal with that number in the data file. "" where the file does not tell it, or does
  // not know the animal.
  std::string_view identifier(std::int32_t number) const { return cell(number, kIdentifier); }
  std::string_view name(std::int32_t number) const { return cell(number, kName); }
  std::string_view birth(std::int32_t number) const { return cell(number, kBirth); }
  // Whether it lives, in one of the languages that herd books are understood in ("yes", "tot").
  Alive alive(std::int32_t number) const;
  // Completeness of its pedigree as qob-prepare found it; NaN where the file does not tell it.
  double completeness(std::int32_t number) const;

  // The number of the animal with that identifier, blanks about it aside; 0: there is none.
  std::int32_t number_of(std::string_view identifier) const;

 private:
  enum Field : std::uint8_t { kNumber, kIdentifier, kName, kBirth, kAlive, kCompleteness, kFields };

  std::string find_columns(std::int64_t head);
  std::string add_animal(std::int64_t row, std::vector<Named>& names);
  std::string index_identifiers(std::vector<Named> names);
  std::string_view cell(std::int32_t number, Field field) const;

  Sheet sheet_;
  std::int64_t column_[kFields] = {};  // from 1; 0: there is none
  IdTree places_;                      // of numbers in row_, from 1
  std::vector<std::int32_t> row_;      // of the sheet
  IdentifierIndex numbers_;            // by identifier
  bool tells_living_ = false;
};

}  // namespace qob
