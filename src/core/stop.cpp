#include "core/stop.h"

#include <cstdio>
#include <cstdlib>

namespace qob {
namespace {

void exit_with(std::string_view text, int status) {
  std::fprintf(stderr, "%.*s\n", static_cast<int>(text.size()), text.data());
  std::exit(status);
}

StopHandler& installed_handler() {
  static StopHandler handler = exit_with;
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
