// Work that may end by a stop, for those who go on thereafter.
#pragma once

#include <functional>
#include <string>

#include "core/stop.h"

namespace qob {

// How work ended.
struct End {
  int status = kSuccess;
  std::string text;
};

// Carries out `work`. A stop within it, in this thread, ends the work alone, and all it held is
// given back; so does what nothing else catches.
End end_of(const std::function<void()>& work);

}  // namespace qob
