// How many threads a run is to use.
#pragma once

#include <vector>

namespace qob {

// As "--threads N" or "--threads=N" says, which are taken out of the arguments, else QOB_THREADS in
// the environment, else as many as work at the same time here. Of several the last one counts.
// Anything but a number from 1 to 1024 stops the run.
int take_thread_count(std::vector<const char*>& arguments);

}  // namespace qob
