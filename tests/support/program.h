// Runs of the program in a folder of their own.
#pragma once

#include <sys/wait.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>

#include "support/run_fixture.h"

namespace qob::test {

inline std::string read_file(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream contents;
  contents << file.rdbuf();
  return contents.str();
}

struct RunResult {
  int status;  // exit status; 128 + signal if a signal ended it
  std::string out;
  std::string err;
};

// Runs the program with `arguments` (shell words) in `folder`.
inline RunResult run_program(const TemporaryFolder& folder, const std::string& arguments) {
  const std::string command = "cd " + (folder / "") + " && " QOB_PROGRAM " " + arguments +
                              " > stdout.txt 2> stderr.txt < /dev/null";
  const int status = std::system(command.c_str());
  return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status),
          read_file(folder / "stdout.txt"), read_file(folder / "stderr.txt")};
}

}  // namespace qob::test
