// What `qob --help` and `qob --version` print.
#pragma once

namespace qob {

// Both write to standard output and return the exit status.
int print_help();
int print_version();

}  // namespace qob
