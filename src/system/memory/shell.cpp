#include "system/shell.h"

#include "system/memory/memory_files.h"

namespace qob {

bool run_in_shell(const std::string&, Complaints) { return false; }

bool copy_in_shell(const std::string& from, const std::string& prefix, const std::string& name) {
  const MemoryFiles::Contents contents = memory_files().get(from);
  const std::string copy = as_shell_reads(prefix) + name;
  if (contents == nullptr || memory_files().is_folder(copy)) return false;
  memory_files().put(copy, *contents);
  return true;
}

}  // namespace qob
