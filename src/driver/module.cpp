#include "driver/module.h"

#include <string>
#include <utility>
#include <vector>

#include "driver/end_of.h"
#include "driver/run.h"
#include "system/memory/memory_files.h"

namespace {

std::string& end_text() {
  static std::string text;
  return text;
}

}  // namespace

bool qob_put_file(const char* name, const char* bytes, std::size_t size) {
  return qob::memory_suffices([&] { qob::memory_files().put(name, std::string(bytes, size)); });
}

int qob_run(const char* parameter_file) {
  qob::memory_files().remove(qob::kStandardOutput);
  qob::memory_files().remove(qob::kStandardError);
  qob::End end = qob::end_of([&] {
    qob::Run run;
    qob::run(run, {parameter_file});
  });
  end_text() = std::move(end.text);
  return end.status;
}

const char* qob_end_text() { return end_text().c_str(); }

const char* qob_file_name(std::size_t index) {
  static std::string name;
  const std::vector<std::string> names = qob::memory_files().names();
  if (index >= names.size()) return nullptr;
  name = names[index];
  return name.c_str();
}

const char* qob_file_bytes(const char* name) {
  const qob::MemoryFiles::Contents contents = qob::memory_files().get(name);
  return contents != nullptr ? contents->data() : nullptr;
}

std::size_t qob_file_size(const char* name) {
  const qob::MemoryFiles::Contents contents = qob::memory_files().get(name);
  return contents != nullptr ? contents->size() : 0;
}

void qob_remove_file(const char* name) { qob::memory_files().remove(name); }

void qob_clear_files() { qob::memory_files().clear(); }
