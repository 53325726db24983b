#include "system/paths.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
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

bool is_folder(const std::string& path) {
  std::error_code missing;
  return fs::is_directory(path, missing);
}

bool is_link(const std::string& path) {
  std::error_code missing;
  return fs::is_symlink(path, missing);
}

int make_folder(const std::string& path) {
  std::error_code fault;
  fs::create_directory(path, fault);
  return fault.value();
}

std::vector<std::string> entries_of(const std::string& folder, const std::string& ending) {
  std::vector<std::string> entries;
  std::error_code fault;
  fs::directory_iterator entry(folder + "/", fault);
  for (; !fault && entry != fs::directory_iterator(); entry.increment(fault)) {
    const std::string name = entry->path().filename();
    if (name.ends_with(ending) && !name.starts_with('.')) entries.push_back(folder + "/" + name);
  }
  std::sort(entries.begin(), entries.end());
  return entries;
}

std::string path_from(const std::string& folder, const std::string& path) {
  std::error_code fault;
  if (!fs::exists(path, fault)) return path;
  const fs::path relative = fs::relative(path, folder, fault);
  return fault || relative.empty() ? path : relative.string();
}

int copy_file(const std::string& from, const std::string& to) {
  const std::string part = to + ".part";
  std::error_code fault;
  fs::copy_file(from, part, fs::copy_options::overwrite_existing, fault);
  if (!fault) fs::rename(part, to, fault);
  if (fault) ::unlink(part.c_str());  // better none than half of it
  return fault.value();
}

int remove_file(const std::string& path) {
  return ::unlink(path.c_str()) == 0 || errno == ENOENT ? 0 : errno;
}

bool is_standard_stream(const std::string& path) {
  struct stat file, stream;
  if (::stat(path.c_str(), &file) != 0 || !S_ISREG(file.st_mode)) return false;
  for (const int descriptor : {STDOUT_FILENO, STDERR_FILENO}) {
    if (::fstat(descriptor, &stream) != 0) continue;
    if (stream.st_dev == file.st_dev && stream.st_ino == file.st_ino) return true;
  }
  return false;
}

}  // namespace qob
