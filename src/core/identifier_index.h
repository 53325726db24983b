// Animals by their identifiers.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace qob {

// An identifier and what it stands for: a row or the number of an animal.
struct Named {
  std::uint64_t code;  // of the identifier: the same text has the same
  std::string_view identifier;
  std::int32_t number;

  Named(std::string_view text, std::int32_t n);
  bool has_same_identifier(const Named& other) const {
    return code == other.code && identifier == other.identifier;
  }
};

// Puts those of one identifier next to each other, ascending by number. The order is by codes,
// which lie close together where the texts are all over the table; of equal codes it is by text, so
// that no choice of identifiers makes anything slow.
void sort_by_identifier(std::vector<Named>& names);

// Finds numbers by identifiers, in about two steps.
class IdentifierIndex {
 public:
  IdentifierIndex() = default;
  // names: sorted, each identifier once.
  explicit IdentifierIndex(std::vector<Named> names);

  // 0: there is no such identifier.
  std::int32_t find(std::string_view identifier) const;
  const std::vector<Named>& names() const { return names_; }

 private:
  std::size_t bucket_of(const Named& name) const {
    return static_cast<std::size_t>(name.code >> shift_);
  }

  std::vector<Named> names_;
  std::vector<std::uint32_t> begin_;  // by the first bits of a code: where those codes begin
  unsigned shift_ = 63;
};

}  // namespace qob
