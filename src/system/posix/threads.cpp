#include "system/threads.h"

#include <sched.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <string>
#include <utility>

#include "system/posix/signals_wait.h"

namespace qob {
namespace {

constexpr const char* kGroups = "/sys/fs/cgroup";

// The processors' time that the group of processes may take, in processors; `most` if no less.
double allowed_by(const std::string& group, double most) {
  std::ifstream limit(kGroups + group + "/cpu.max");
  double time = 0.0, period = 0.0;
  return limit >> time >> period && period > 0.0 ? std::min(most, time / period) : most;
}

// The same of all groups that the process is in, one within the other.
double allowed_by_groups(double most) {
  std::ifstream groups("/proc/self/cgroup");
  for (std::string line; std::getline(groups, line);) {
    if (!line.starts_with("0::/")) continue;
    for (std::string group = line.substr(3); !group.empty(); group.resize(group.rfind('/'))) {
      most = allowed_by(group, most);
    }
  }
  return allowed_by("", most);
}

}  // namespace

// Not all that the machine has: a scheduler of jobs or a container may allow fewer.
int processors() {
  cpu_set_t allowed;
  const bool known = ::sched_getaffinity(0, sizeof allowed, &allowed) == 0;
  const unsigned count = known ? static_cast<unsigned>(CPU_COUNT(&allowed))
                               : std::max(std::thread::hardware_concurrency(), 1U);
  return std::max(static_cast<int>(std::ceil(allowed_by_groups(count))), 1);
}

// Signals wait for the threads that there were: one of these may let them wait until a line is
// complete.
std::thread start_thread(std::function<void()> work) {
  const SignalsWait in_the_new_thread;
  return std::thread(std::move(work));
}

}  // namespace qob
