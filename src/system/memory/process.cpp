#include "system/process.h"

#include <cstdlib>
#include <string>

#include "system/memory/memory_files.h"

namespace qob {

void prepare_process() {}

void end_process(std::string_view text, int status) {
  memory_files().append(kStandardError, std::string(text) + '\n');
  std::exit(status);
}

bool streams_are_terminals() { return false; }

}  // namespace qob
