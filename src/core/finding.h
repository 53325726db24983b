// Things of one kind that are odd in a file: the first are told in full, the others are counted.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "core/units.h"

namespace qob {

class Finding {
 public:
  // shown: how many of them are told in full.
  explicit Finding(std::size_t shown = 1) : shown_(shown) {}

  // describe: makes the text, as it is to stand behind the file's name and the line.
  template <class Describe>
  void add(std::int64_t line, Describe describe) {
    ++count_;
    if (first_.size() < shown_) first_.emplace_back(line, describe());
  }
  std::int64_t count() const { return count_; }

  // Tells it, if there is anything to tell.
  void tell(Units& units, const std::string& file) const {
    for (std::size_t k = 0; k < first_.size(); ++k) {
      const bool is_last = k + 1 == first_.size();
      units.tell(file + ":" + std::to_string(first_[k].first) + ": " + first_[k].second +
                 (is_last ? and_more(count_ - std::ssize(first_) + 1) : ""));
    }
  }

 private:
  std::size_t shown_;
  std::int64_t count_ = 0;
  std::vector<std::pair<std::int64_t, std::string>> first_;  // lines and texts
};

}  // namespace qob
