#include "system/shell.h"

#include <sys/wait.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace qob {

// A signal from the terminal reaches the command alone; it is meant for the program as well.
bool run_in_shell(const std::string& command) {
  const int status = std::system(command.c_str());
  for (const int signal : {SIGINT, SIGQUIT}) {
    const bool ended =
        WIFSIGNALED(status) ? WTERMSIG(status) == signal : WEXITSTATUS(status) == 128 + signal;
    if (ended) std::raise(signal);
  }
  return status == 0;
}

// The blanks of the command are those that it has always had.
bool copy_in_shell(const std::string& from, const std::string& to) {
  if (run_in_shell(" cp -f " + shell_word(from) + "  " + shell_word(to))) return true;
  std::error_code missing;
  std::filesystem::remove(as_shell_reads(to), missing);  // better none than half of it
  return false;
}

}  // namespace qob
