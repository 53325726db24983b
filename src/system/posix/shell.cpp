#include "system/shell.h"

#include <sys/wait.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <system_error>

#include "system/byte_files.h"
#include "system/posix/signals_wait.h"

namespace qob {
namespace {

// Whether `copy` breaks off before the end of the file.
bool is_cut(const std::string& copy, const std::string& path) {
  using Bytes = std::istreambuf_iterator<char>;
  std::ifstream part(copy, std::ios::binary);
  std::ifstream whole(path, std::ios::binary);
  if (!part || !whole) return false;
  const auto [a, b] = std::mismatch(Bytes(part), Bytes(), Bytes(whole), Bytes());
  return a == Bytes() && b != Bytes();
}

// `cp` writes into the file that is there: one that has other names as well is left to those.
void part_from_other_names(const std::string& path) {
  std::error_code missing;
  std::unique_ptr<ByteSink> own;
  const bool shared = std::filesystem::is_regular_file(path, missing) &&
                      std::filesystem::hard_link_count(path, missing) > 1 && !missing;
  if (shared) open_sink(path, Show::kEachLine, own);
}

}  // namespace

// A signal from the terminal reaches the command alone; it is meant for the program as well.
bool run_in_shell(const std::string& command, Complaints complaints) {
  const bool hidden = complaints == Complaints::kHidden;
  const int status =
      std::system((command + " < /dev/null" + (hidden ? " 2> /dev/null" : "")).c_str());
  for (const int signal : {SIGINT, SIGQUIT}) {
    const bool ended =
        WIFSIGNALED(status) ? WTERMSIG(status) == signal : WEXITSTATUS(status) == 128 + signal;
    if (ended) std::raise(signal);
  }
  return status == 0;
}

// The blanks of the command are those that it has always had.
bool copy_in_shell(const std::string& from, const std::string& prefix, const std::string& name) {
  const SignalsWait until_copied;
  const std::string copy = as_shell_reads(prefix) + name;
  part_from_other_names(copy);
  const std::string command = " cp -f " + shell_word(from) + "  " + shell_word(prefix) + name;
  if (run_in_shell(command, Complaints::kShown)) return true;
  std::error_code missing;
  if (is_cut(copy, from)) std::filesystem::remove(copy, missing);  // better none than half of it
  return false;
}

}  // namespace qob
