#include "system/progress_line.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <string>

namespace qob {
namespace {

constexpr std::string_view kEraseLine = "\r\x1b[K";

std::atomic<bool> shown = false;

void put(std::string_view text) {
  [[maybe_unused]] const ssize_t count = ::write(STDERR_FILENO, text.data(), text.size());
}

extern "C" void erase_and_end(int signal) {
  hide_progress();
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

// Nor does the line stay behind a run that a signal ends.
void erase_at_signals() {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
    struct sigaction now;
    const bool ends = ::sigaction(signal, nullptr, &now) == 0 && now.sa_handler == SIG_DFL;
    if (ends) std::signal(signal, erase_and_end);
  }
}

}  // namespace

bool progress_is_seen() { return ::isatty(STDERR_FILENO) != 0 && ::isatty(STDOUT_FILENO) == 0; }

void show_progress(std::string_view text) {
  winsize size = {};
  const bool known = ::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 1;
  if (!shown.exchange(true)) erase_at_signals();
  put(std::string(kEraseLine).append(text.substr(0, known ? size.ws_col - 1U : text.size())));
}

void hide_progress() {
  if (shown.exchange(false)) put(kEraseLine);
}

}  // namespace qob
