#include "core/stop.h"

#include <cstdlib>

#include "system/process.h"

namespace qob {
namespace {

StopHandler& installed_handler() {
  thread_local StopHandler handler = end_process;
  return handler;
}

}  // namespace

StopHandler set_stop_handler(StopHandler handler) {
  const StopHandler before = installed_handler();
  installed_handler() = handler;
  return before;
}

void stop(std::string_view text, int status) {
  installed_handler()(text, status);
  std::abort();
}

}  // namespace qob
