// The files of a system in memory. A name stands for the same file as its lexically normal form
// ("a/../b" and "./b" for "b"), one that ends in "/" for a folder. A folder is there as long as
// there is a file in it, the working folder and the root always.
#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace qob {

// Where the standard streams go.
inline constexpr const char* kStandardOutput = "/dev/stdout";
inline constexpr const char* kStandardError = "/dev/stderr";

// Safe for several threads.
class MemoryFiles {
 public:
  // What is in a file; later changes of the file do not change it.
  using Contents = std::shared_ptr<const std::string>;

  void put(const std::string& name, std::string contents);
  // Adds to the end of a file, which is made if there is none.
  void append(const std::string& name, std::string_view bytes);
  // nullptr: there is no such file.
  Contents get(const std::string& name) const;
  bool is_folder(const std::string& name) const;
  std::vector<std::string> names() const;
  void remove(const std::string& name);
  void clear();

  static std::string normal(const std::string& name);

 private:
  mutable std::mutex mutex_;
  std::map<std::string, std::shared_ptr<std::string>> files_;
};

// The files of this process.
MemoryFiles& memory_files();

}  // namespace qob
