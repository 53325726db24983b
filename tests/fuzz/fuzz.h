// What the fuzz targets share. They are linked so that the calls that reach the system come here:
// files are read from memory and written to nowhere, and no command is run, whatever names and
// commands the bytes spell.
#pragma once

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <string_view>

#include "core/qobtypestools.h"

namespace qob::fuzz {

// The files that there are.
inline std::map<std::string, std::string, std::less<>> files;

// What a stop throws.
struct Stopped {};
inline const StopHandler handler_before =
    set_stop_handler([](std::string_view, int) { throw Stopped{}; });

// False: the action stopped the run.
bool runs_through(auto action) {
  try {
    action();
    return true;
  } catch (const Stopped&) {
    return false;
  }
}

// Ends the fuzzer unless `kept`.
inline void require(bool kept, const char* what) {
  if (kept) return;
  std::fprintf(stderr, "Not kept: %s\n", what);
  std::abort();
}

// A model whose units write to memory.
struct QuietModel : Model {
  QuietModel() {
    for (Unit* unit : {&units.out, &units.log, &units.summary}) unit->open_memory(&written);
    parameters.data.datafile = "herd.dat";
  }
  std::string written;
};

// Three generations with candidates of both sexes, some full sibs, in "herd.dat".
inline void put_small_herd() {
  files["herd.dat"] =
      "1 0 0 1 1 0 0.1 a\n2 0 0 2 1 0 0.2 b\n3 0 0 1 1 0 0.3 c\n4 0 0 2 1 0 0.4 d\n"
      "5 1 2 1 2 2 0.5 e\n6 1 2 2 2 1 0.6 f\n7 3 4 1 2 4 0.7 g\n8 3 4 2 2 1 0.8 h\n"
      "9 5 8 1 3 4 1.1 i\n10 5 8 2 3 1 1.2 j\n11 5 8 1 3 4 1.3 k\n12 7 6 2 3 2 1.4 l\n";
}

inline std::string_view text_of(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

}  // namespace qob::fuzz

// Each fuzzer is one source, so these are defined once.
extern "C" {

int __real_open(const char* path, int flags, ...);

int __wrap_open(const char* path, int flags, ...) {
  if ((flags & O_ACCMODE) != O_RDONLY) {
    errno = EOPNOTSUPP;
    return (flags & O_TMPFILE) == O_TMPFILE ? -1 : __real_open("/dev/null", O_WRONLY | O_CLOEXEC);
  }
  const auto file = qob::fuzz::files.find(std::string_view(path));
  errno = ENOENT;
  if (file == qob::fuzz::files.end()) return -1;
  const int descriptor = memfd_create("input", MFD_CLOEXEC);
  const auto size = static_cast<ssize_t>(file->second.size());
  if (write(descriptor, file->second.data(), file->second.size()) != size) std::abort();
  lseek(descriptor, 0, SEEK_SET);
  return descriptor;
}

int __wrap_access(const char* path, int) {
  return qob::fuzz::files.count(std::string_view(path)) == 1 ? 0 : -1;
}
int __wrap_flock(int, int) { return 0; }
int __wrap_system(const char*) { return 0; }

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
}
