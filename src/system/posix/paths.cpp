#include "system/paths.h"

#include <unistd.h>

#include <filesystem>
#include <system_error>

namespace qob {

namespace fs = std::filesystem;

bool path_exists(const std::string& path) { return ::access(path.c_str(), F_OK) == 0; }

bool are_one_file(const std::string& a, const std::string& b) {
  std::error_code missing;
  return fs::equivalent(a, b, missing);
}

bool are_same_path(const std::string& a, const std::string& b) {
  if (a == b || are_one_file(a, b)) return true;
  std::error_code fault;
  const fs::path first = fs::weakly_canonical(fs::absolute(a, fault), fault);
  return !fault && first == fs::weakly_canonical(fs::absolute(b, fault), fault) && !fault;
}

bool stands_in(const std::string& folder, const std::string& ending, const std::string& file) {
  std::error_code missing;
  const fs::path meant = fs::weakly_canonical(fs::absolute(file, missing), missing);
  for (const fs::path& path : {fs::path(file), meant}) {
    const fs::path inside = path.has_parent_path() ? path.parent_path() : ".";
    if (path.extension() == ending && fs::equivalent(inside, folder, missing)) return true;
  }
  return false;
}

bool is_standard_stream(const std::string& path) {
  std::error_code missing;
  return fs::is_regular_file(path, missing) &&
         (are_same_path(path, "/proc/self/fd/1") || are_same_path(path, "/proc/self/fd/2"));
}

}  // namespace qob
