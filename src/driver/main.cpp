// The program: one argument, the parameter file.
#include <csignal>
#include <exception>
#include <new>
#include <string_view>

#include "driver/help.h"
#include "driver/run.h"

int main(int argc, char** argv) {
  const std::string_view first = argc > 1 ? argv[1] : "";
  if (first == "--help") return qob::print_help();
  if (first == "--version") return qob::print_version();

  std::signal(SIGPIPE, SIG_IGN);  // a closed pipe is a failed write, which has its message
  // Also when there is not even memory to report a shortage where it arose.
  std::set_new_handler([] { qob::stop(qob::kOutOfMemory); });
  std::set_terminate([] { qob::stop(qob::kOutOfMemory); });
  qob::Model model;
  qob::run(model, argc > 1 ? argv[1] : nullptr);
}
