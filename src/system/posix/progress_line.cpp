#include "system/progress_line.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <atomic>
#include <string>

namespace qob {
namespace {

constexpr std::string_view kEraseLine = "\r\x1b[K";

std::atomic<bool> shown = false;

void put(std::string_view text) {
  [[maybe_unused]] const ssize_t count = ::write(STDERR_FILENO, text.data(), text.size());
}

}  // namespace

bool progress_is_seen() { return ::isatty(STDERR_FILENO) != 0 && ::isatty(STDOUT_FILENO) == 0; }

void show_progress(std::string_view text) {
  winsize size = {};
  const bool known = ::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 1;
  shown = true;
  put(std::string(kEraseLine).append(text.substr(0, known ? size.ws_col - 1U : text.size())));
}

void hide_progress() {
  if (shown.exchange(false)) put(kEraseLine);
}

}  // namespace qob
