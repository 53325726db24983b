// Runs of the program in a folder of their own, in the real file system.
#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>

namespace qob::test {

// A folder of its own, removed at the end.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string pattern = std::filesystem::temp_directory_path() / "qob_test_XXXXXX";
    path_ = mkdtemp(pattern.data());
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() { std::filesystem::remove_all(path_); }

  std::string name() const { return std::filesystem::path(path_).filename(); }
  std::string operator/(std::string_view name) const { return path_ + "/" + std::string(name); }
  std::string write(std::string_view name, std::string_view contents) const {
    std::ofstream(*this / name, std::ios::binary) << contents;
    return *this / name;
  }

 private:
  std::string path_;
};

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
