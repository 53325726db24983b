// Many lines of a file that are alike, made by several threads and written in their order.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "core/unit.h"
#include "system/parallel.h"

namespace qob {

// Lines that are still to be written to a file.
class Lines {
 public:
  // Where to write them, instead of those that there were.
  Unit& renew() {
    text_.clear();
    unit_.open_memory(&text_);
    return unit_;
  }
  std::int64_t count() const { return unit_.lines(); }
  void write_to(Unit& file) const { file.append(unit_); }

 private:
  std::string text_;
  Unit unit_{0};
};

// Calls write_line(unit, i) for i = 1..n, which writes line i to the unit that it is given, a part
// of `file`.
template <class WriteLine>
void write_lines(Unit& file, std::int64_t n, Parallel& parallel, WriteLine write_line) {
  constexpr std::int64_t kLines = 1024;       // of a part: they stay in the cache
  constexpr std::int64_t kNanoseconds = 300;  // of a line
  std::vector<Lines> parts(static_cast<std::size_t>(8 * parallel.threads()));
  for (std::int64_t done = 0; done < n;) {
    const std::int64_t lines = std::min(n - done, kLines * std::ssize(parts));
    const std::int64_t count = (lines + kLines - 1) / kLines;
    parallel.for_each(count, lines * kNanoseconds, [&](std::int64_t part, int) {
      Unit& unit = parts[static_cast<std::size_t>(part)].renew();
      const std::int64_t first = done + part * kLines;
      for (std::int64_t i = first + 1; i <= std::min(first + kLines, n); ++i) write_line(unit, i);
    });
    for (std::int64_t part = 0; part < count; ++part) {
      parts[static_cast<std::size_t>(part)].write_to(file);
    }
    done += lines;
  }
}

}  // namespace qob
