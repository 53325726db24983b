// The vocabulary by which a herd book is understood: a table that a breeder, the keeper of a
// studbook or a breed society keeps, in English, German, French, Spanish, Dutch or Danish. Headings
// are compared as wholes, never by parts of them ("birth weight" is no birth, "name of sire" no
// sire); what names two things in two of the languages is not understood, so that nothing is taken
// for another thing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "core/letters.h"

namespace qob {

// What a column of a herd book holds.
enum class Field : std::uint8_t {
  kIdentifier,
  kSire,
  kDam,
  kSex,
  kBirth,
  kEbv,
  kMatings,
  kName,
  kAlive,
  kHerd
};
inline constexpr std::size_t kFields = 10;

// The name of a field as options and messages use it: "identifier", "sire", "dam", "sex", "birth",
// "ebv", "matings", "name", "alive", "herd".
std::string_view name_of(Field field);

// The field of that name or synonym, none for other headings. Remarks in parentheses or brackets do
// not count ("EBV (kg)"), and a parent may come with words for its identifier ("Vater LOM-Nr.").
std::optional<Field> field_of(std::string_view heading);

// The field that a heading of many meanings ("Nr.", "tag", "year") stands for where no other column
// has a name that `field_of` knows for that field. None for the headings that `field_of` knows.
std::optional<Field> field_perhaps(std::string_view heading);

// Whether a cell of identifiers or words says that something is not known: empty, 0, NA, -, ?,
// unknown, "Vater unbekannt", ... Among measured values, 0 is a value: do not ask for them.
bool says_unknown(std::string_view cell);

struct SexWord {
  std::int32_t sex;  // 1 male, 2 female, 0 unknown
  bool castrated;

  friend bool operator==(const SexWord&, const SexWord&) = default;
};

// The sex that a cell tells: a code, a sign, a word, or an animal ("Färse", "wether"), also with a
// word for castration ("m kastr."). None for other cells.
std::optional<SexWord> sex_of(std::string_view cell);

}  // namespace qob
