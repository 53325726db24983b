#include "system/process.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>

#include "system/posix/terminal_text.h"
#include "system/progress_line.h"

namespace qob {

void prepare_process() {
  for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
    if (::fcntl(stream, F_GETFD) == -1 && ::open("/dev/null", O_RDWR) != stream) {
      std::_Exit(EXIT_FAILURE);
    }
  }
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
  std::signal(SIGCHLD, SIG_DFL);
}

void end_process(std::string_view text, int status) {
  hide_progress();
  pollfd room = {STDERR_FILENO, POLLOUT, 0};
  ::poll(&room, 1, -1);  // the stream may be a pipe that is full and would refuse
  do {
    const std::string_view shown = take_shown(text);
    std::fprintf(stderr, "%.*s%s", static_cast<int>(shown.size()), shown.data(),
                 text.empty() ? "\n" : "");
  } while (!text.empty());
  std::exit(status);
}

bool streams_are_terminals() {
  return ::isatty(STDOUT_FILENO) != 0 && ::isatty(STDERR_FILENO) != 0;
}

}  // namespace qob
