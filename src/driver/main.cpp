// The program: one argument, the parameter file.
#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <exception>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>

#include "core/stop.h"
#include "driver/help.h"
#include "driver/run.h"

namespace {

// A standard stream that is closed would be a file of the run, with its messages among the results.
void hold_standard_streams() {
  for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
    if (::fcntl(stream, F_GETFD) == -1 && ::open("/dev/null", O_RDWR) != stream) {
      std::_Exit(qob::kFailure);
    }
  }
}

// What nothing has caught: no memory left, even to report it where it arose, or a defect.
[[noreturn]] void tell_the_end() {
  try {
    if (const auto exception = std::current_exception()) std::rethrow_exception(exception);
  } catch (const std::bad_alloc&) {
  } catch (const std::length_error&) {
  } catch (const std::exception& defect) {
    qob::stop(std::string("ERROR: the program has a defect : ") + defect.what());
  }
  qob::stop(qob::kOutOfMemory);
}

}  // namespace

int main(int argc, char** argv) {
  hold_standard_streams();
  std::signal(SIGPIPE, SIG_IGN);  // a closed pipe is a failed write, which has its message
  std::signal(SIGXFSZ, SIG_IGN);  // and so is a file beyond the user's limit
  const std::string_view first = argc > 1 ? argv[1] : "";
  if (first == "--help") return qob::print_help();
  if (first == "--version") return qob::print_version();

  std::set_new_handler([] { qob::stop(qob::kOutOfMemory); });
  std::set_terminate(tell_the_end);
  qob::Run run;
  qob::run(run, argc > 1 ? argv[1] : nullptr);
}
