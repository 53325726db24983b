// The texts by which a run's results name animals: the identifier, or what a data file can hold of
// it.
#pragma once

#include <string_view>

#include "core/letters.h"
#include "prepare/herd.h"

namespace qob {

class Labels {
 public:
  static constexpr std::size_t kWidth = 15;  // bytes

  std::string_view of(std::string_view identifier) const {
    if (identifier.size() <= kWidth) return identifier;
    return without_blanks(by_end_ ? last_bytes(identifier, kWidth)
                                  : first_bytes(identifier, kWidth));
  }

 private:
  friend Labels choose_labels(Book& book);
  bool by_end_ = false;
};

// Longer identifiers are cut between characters to their first bytes, or to their last if so fewer
// labels are those of several animals. Both is told.
Labels choose_labels(Book& book);

}  // namespace qob
