#include "system/progress_line.h"

#include "system/memory/progress_listener.h"

namespace qob {
namespace {

ProgressListener& listener() {
  static ProgressListener one = nullptr;
  return one;
}

}  // namespace

void listen_to_progress(ProgressListener told) { listener() = told; }

bool progress_is_seen() { return listener() != nullptr; }

void show_progress(std::string_view text) {
  if (listener() != nullptr) listener()(text);
}

void hide_progress() { show_progress(""); }

}  // namespace qob
