// A system in memory is most often one of another program, whose processors are not ours to fill.
#include "system/threads.h"

#include <utility>

namespace qob {

int processors() { return 1; }

std::thread start_thread(std::function<void()> work) { return std::thread(std::move(work)); }

}  // namespace qob
