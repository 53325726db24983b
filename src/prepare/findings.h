// What is wrong in a herd book and in rules for it, and what was made of it.
//
// A fault is what makes an animal, a parent, a time or a value doubtful: no data file is written
// until it is mended, or its kind is accepted, for which each has one stated remedy. Other findings
// are told: they have one sensible meaning, and that was taken.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace qob {

enum class Kind : std::uint8_t {
  // Faults of the table.
  kTable,
  kCells,
  kIdentifier,
  kDuplicate,
  // Faults of parents.
  kOwnParent,
  kSameParents,
  kLoop,
  kSex,
  kParentSex,
  kBothRoles,
  // Faults of times and values.
  kBirth,
  kYoungerParent,
  kNumber,
  kEbv,
  // Faults of the rules of matings.
  kRule,
  // Told.
  kRead,
  kRepeated,
  kAlike,
  kFounder,
  kUndated,
  kMoved,
  kInferred,
  kLabel
};
inline constexpr std::size_t kKindCount = 23;

struct KindText {
  std::string_view name;  // as in --accept
  bool is_fault;
  std::string_view title;   // of several
  std::string_view remedy;  // of a fault that is accepted; "": it cannot be

  bool is_acceptable() const { return !remedy.empty(); }
  std::string_view severity() const { return is_fault ? "fault" : "told"; }
};
const KindText& text_of(Kind kind);
// The kind of fault of that name, if it can be accepted.
std::optional<Kind> acceptable_kind(std::string_view name);

struct Remark {
  Kind kind;
  std::int64_t row;     // of the sheet; 0: of none
  std::int32_t column;  // of the sheet; 0: of none
  std::string value;    // "": what stands in the cell
  std::string words;    // what it is, and what was expected
  std::string done;     // what was made of it
};

// One that was found; the texts live in the findings.
struct Found {
  Kind kind;
  std::int32_t column;
  std::int64_t row;
  std::string_view value, words, done;
};

class Findings {
 public:
  // accepted: kinds of faults that do not keep the data file from being written.
  explicit Findings(const std::vector<Kind>& accepted);
  Findings(Findings&&) = default;  // a copy's findings would have the texts of this one
  Findings& operator=(Findings&&) = default;

  // done may be left out where it is the remedy of the kind.
  void add(const Remark& remark);
  bool is_accepted(Kind kind) const { return accepted_[static_cast<std::size_t>(kind)]; }
  // Whether there is a fault that was not accepted.
  bool hinder() const { return hinder_; }
  std::int64_t count(Kind kind) const { return count_[static_cast<std::size_t>(kind)]; }
  // By row, and in a row in the order in which they were found.
  void sort();
  const std::vector<Found>& all() const { return all_; }

 private:
  std::array<bool, kKindCount> accepted_{};
  std::array<std::int64_t, kKindCount> count_{};
  std::string_view kept(const std::string& text);

  std::vector<Found> all_;
  std::set<std::string> texts_;  // each once: most findings of a kind say the same
  bool hinder_ = false;
};

}  // namespace qob
