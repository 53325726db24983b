// Things of one kind that are odd in a file: the first is told in full, the others are counted.
#pragma once

#include <cstdint>
#include <string>

#include "core/units.h"

namespace qob {

class Finding {
 public:
  // describe: makes the text, as it is to stand behind the file's name and the line.
  template <class Describe>
  void add(std::int64_t line, Describe describe) {
    if (count_++ > 0) return;
    line_ = line;
    text_ = describe();
  }

  // Tells it, if there is anything to tell.
  void tell(Units& units, const std::string& file) const {
    if (count_ == 0) return;
    units.tell(file + ":" + std::to_string(line_) + ": " + text_ + and_more(count_));
  }

 private:
  std::int64_t count_ = 0;
  std::int64_t line_ = 0;
  std::string text_;
};

}  // namespace qob
