#include "system/clock.h"

#include <chrono>
#include <ctime>

namespace qob {

double wall_seconds() {
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  return std::chrono::duration<double>(now).count();
}

float processor_seconds() {
  return static_cast<float>(std::clock()) / static_cast<float>(CLOCKS_PER_SEC);
}

std::int64_t clock_count() { return std::chrono::system_clock::now().time_since_epoch().count(); }

LocalTime local_time() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  return {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday,
          local.tm_hour,        local.tm_min,     local.tm_sec};
}

}  // namespace qob
