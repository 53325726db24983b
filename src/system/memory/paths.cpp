#include "system/paths.h"

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

bool stands_in(const std::string& folder, const std::string& ending, const std::string& file) {
  const std::filesystem::path path = MemoryFiles::normal(file);
  const std::string inside = path.has_parent_path() ? path.parent_path().generic_string() : ".";
  return path.extension() == ending && are_same_path(inside, folder);
}

bool is_standard_stream(const std::string& path) {
  return are_same_path(path, kStandardOutput) || are_same_path(path, kStandardError);
}

}  // namespace qob
