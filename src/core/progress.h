// How far a long phase is, for a person who waits: nothing is shown where nobody sees it, nor of a
// phase within another, be it in other threads.
#pragma once

#include <string>
#include <string_view>

namespace qob {

class Progress {
 public:
  explicit Progress(std::string phase);
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress();

  // Whether anybody sees it.
  bool is_seen() const { return seen_; }
  // Shows the share done, 0 to 1, the time that is left by it, and what else there is to say. Costs
  // nothing where nobody sees it.
  void show(double share, std::string_view more = {}) {
    if (seen_) show_now(share, more);
  }

 private:
  void show_now(double share, std::string_view more);

  std::string phase_;
  bool seen_;
  double start_, shown_;  // when it began, and was shown last, in seconds
};

}  // namespace qob
