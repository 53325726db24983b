#include "driver/thread_count.h"

#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

#include "core/lexer.h"
#include "core/stop.h"
#include "core/text.h"
#include "system/threads.h"

namespace qob {
namespace {

constexpr std::int32_t kMostThreads = 1024;
constexpr std::string_view kOption = "--threads";
constexpr std::string_view kOptionAndValue = "--threads=";
constexpr const char* kVariable = "QOB_THREADS";

int count_of(std::string_view name, std::string_view text) {
  std::int32_t count = 0;
  if (to_integer(text, count) == 0 && count >= 1 && count <= kMostThreads) return count;
  stop("ERROR: " + std::string(name) + " " + printable(text) +
       " : expected a number of threads from 1 to " + std::to_string(kMostThreads));
}

}  // namespace

int take_thread_count(std::vector<const char*>& arguments) {
  std::optional<int> count;
  for (auto at = arguments.begin(); at != arguments.end();) {
    std::string_view value = *at;
    const bool apart = value == kOption;
    if (!apart && !value.starts_with(kOptionAndValue)) {
      ++at;
      continue;
    }
    at = arguments.erase(at);
    value = apart ? "" : value.substr(kOptionAndValue.size());
    if (apart && at != arguments.end()) {
      value = *at;
      at = arguments.erase(at);
    }
    count = count_of(kOption, value);
  }
  if (count) return *count;
  const char* set = std::getenv(kVariable);
  return set != nullptr && *set != '\0' ? count_of(kVariable, set) : processors();
}

}  // namespace qob
