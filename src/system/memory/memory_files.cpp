#include "system/memory/memory_files.h"

#include <atomic>
#include <filesystem>
#include <utility>

namespace qob {

using Lock = std::lock_guard<std::mutex>;

std::string MemoryFiles::normal(const std::string& name) {
  std::string form = std::filesystem::path(name).lexically_normal().generic_string();
  if (form.size() > 1 && form.ends_with('/')) form.pop_back();
  return form;
}

void MemoryFiles::put(const std::string& name, std::string contents) {
  auto file = std::make_shared<std::string>(std::move(contents));
  const Lock lock(mutex_);
  files_[normal(name)] = std::move(file);
}

void MemoryFiles::append(const std::string& name, std::string_view bytes) {
  const Lock lock(mutex_);
  std::shared_ptr<std::string>& file = files_[normal(name)];
  if (file == nullptr) {
    file = std::make_shared<std::string>();
  } else if (file.use_count() > 1) {
    file = std::make_shared<std::string>(*file);  // the old one is somebody's contents
  }
  std::atomic_thread_fence(std::memory_order_acquire);  // it may have been until now
  file->append(bytes);
}

MemoryFiles::Contents MemoryFiles::get(const std::string& name) const {
  if (name.ends_with('/')) return nullptr;
  const Lock lock(mutex_);
  const auto file = files_.find(normal(name));
  return file == files_.end() ? nullptr : file->second;
}

bool MemoryFiles::is_folder(const std::string& name) const {
  if (name.empty()) return false;
  if (normal(name) == "." || normal(name) == "/") return true;
  const std::string folder = normal(name) + '/';
  const Lock lock(mutex_);
  const auto file = files_.lower_bound(folder);
  return file != files_.end() && file->first.starts_with(folder);
}

std::vector<std::string> MemoryFiles::names() const {
  std::vector<std::string> list;
  const Lock lock(mutex_);
  for (const auto& file : files_) list.push_back(file.first);
  return list;
}

void MemoryFiles::remove(const std::string& name) {
  const Lock lock(mutex_);
  files_.erase(normal(name));
}

void MemoryFiles::clear() {
  const Lock lock(mutex_);
  files_.clear();
}

MemoryFiles& memory_files() {
  static MemoryFiles files;
  return files;
}

}  // namespace qob
