#include "driver/module.h"

#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/memory.h"
#include "driver/commands.h"
#include "driver/end_of.h"
#include "driver/module_frontier.h"
#include "system/memory/memory_files.h"
#include "system/memory/progress_listener.h"

namespace {

std::string& end_text() {
  static std::string text;
  return text;
}

using Command = int (*)(int argc, char** argv);

const std::map<std::string_view, Command>& commands() {
  static const std::map<std::string_view, Command> all = {
      {"qob", qob::run_command},
      {"qob-prepare", qob::prepare_command},
      {"qob-report", qob::report_command},
      {"frontier-begin", qob::begin_frontier},
      {"frontier-add", qob::add_to_frontier},
      {"frontier-make", qob::make_next_plan},
      {"frontier-collect", qob::collect_frontier},
      {"frontier-search", qob::prepare_search}};
  return all;
}

// Words that each end with a NUL.
int carry_out(std::string text) {
  std::vector<char*> words;
  for (std::size_t at = 0; at < text.size(); at += std::string_view(words.back()).size() + 1)
    words.push_back(text.data() + at);
  const auto command = commands().find(words.empty() ? "" : words.front());
  if (command == commands().end()) qob::stop("expected one of the commands of qob");
  const int count = static_cast<int>(words.size());
  words.push_back(nullptr);
  return command->second(count, words.data());
}

}  // namespace

bool qob_put_file(const char* name, const char* bytes, std::size_t size) {
  return qob::memory_suffices([&] { qob::memory_files().put(name, std::string(bytes, size)); });
}

int qob_command(const char* words, std::size_t size) {
  qob::memory_files().remove(qob::kStandardOutput);
  qob::memory_files().remove(qob::kStandardError);
  int status = qob::kSuccess;
  qob::End end = qob::end_of([&] { status = carry_out({words, size}); });
  end_text() = std::move(end.text);
  return end.status != qob::kSuccess ? end.status : status;
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
