// What is the same on every system.
#include "system/process.h"

#include <cstring>

namespace qob {

const char* error_text(int status) { return std::strerror(status); }

}  // namespace qob
