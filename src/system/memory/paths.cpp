#include "system/paths.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>

#include "system/memory/memory_files.h"

namespace qob {

bool path_exists(const std::string& path) {
  return memory_files().get(path) != nullptr || memory_files().is_folder(path);
}

bool are_one_file(const std::string& a, const std::string& b) {
  return path_exists(a) && are_same_path(a, b);
}

bool are_same_path(const std::string& a, const std::string& b) {
  return MemoryFiles::normal(a) == MemoryFiles::normal(b);
}

bool is_folder(const std::string& path) { return memory_files().is_folder(path); }

bool is_link(const std::string&) { return false; }

int make_folder(const std::string&) { return 0; }

std::vector<std::string> entries_of(const std::string& folder, const std::string& ending) {
  const std::string place = MemoryFiles::normal(folder);
  const std::string begin = place == "." ? "" : place + (place.ends_with('/') ? "" : "/");
  std::vector<std::string> entries;
  for (const std::string& name : memory_files().names()) {
    if (!name.starts_with(begin)) continue;
    const std::string entry =
        name.substr(begin.size(), name.find('/', begin.size()) - begin.size());
    const std::string path = folder + '/' + entry;
    const bool is_known = !entries.empty() && entries.back() == path;  // a folder's next file
    if (!entry.empty() && entry.front() != '.' && entry.ends_with(ending) && !is_known)
      entries.push_back(path);
  }
  std::sort(entries.begin(), entries.end());
  return entries;
}

std::string path_from(const std::string& folder, const std::string& path) {
  return std::filesystem::path(MemoryFiles::normal(path))
      .lexically_relative(MemoryFiles::normal(folder))
      .generic_string();
}

int copy_file(const std::string& from, const std::string& to) {
  const MemoryFiles::Contents contents = memory_files().get(from);
  if (contents == nullptr) return ENOENT;
  memory_files().put(to, *contents);
  return 0;
}

int remove_file(const std::string& path) {
  memory_files().remove(path);
  return 0;
}

bool is_standard_stream(const std::string& path) {
  return are_same_path(path, kStandardOutput) || are_same_path(path, kStandardError);
}

}  // namespace qob
