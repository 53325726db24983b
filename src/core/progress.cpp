#include "core/progress.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <utility>

#include "core/format.h"
#include "system/clock.h"
#include "system/progress_line.h"

namespace qob {
namespace {

constexpr double kPause = 0.2;  // seconds between two lines: what is quicker is not shown at all

// Whether the one line is taken.
std::atomic<bool>& is_taken() {
  static std::atomic<bool> taken = false;
  return taken;
}

}  // namespace

Progress::Progress(std::string phase)
    : phase_(std::move(phase)),
      seen_(progress_is_seen() && !is_taken().exchange(true)),
      start_(wall_seconds()),
      shown_(start_) {}

Progress::~Progress() {
  if (!seen_) return;
  hide_progress();
  is_taken() = false;
}

void Progress::show_now(double share, std::string_view more) {
  const double now = wall_seconds();
  if (now - shown_ < kPause) return;
  shown_ = now;
  share = std::clamp(share, 0.0, 1.0);
  std::string text = phase_ + formatted("(A,F5.1,A)", " :", 100.0 * share, " %");
  if (share > 0.0) {
    const double left = std::min((now - start_) * (1.0 - share) / share, 1e9);
    text += ", " + std::to_string(static_cast<std::int64_t>(left) + 1) + " s left";
  }
  show_progress(text.append(more));
}

}  // namespace qob
