// The programs as functions of their command lines. What they tell goes to standard output and
// standard error; a fault ends them by a stop. Each returns the exit status.
#pragma once

namespace qob {

int run_command(int argc, char** argv);       // qob
int prepare_command(int argc, char** argv);   // qob-prepare
int report_command(int argc, char** argv);    // qob-report
int frontier_command(int argc, char** argv);  // qob-frontier

}  // namespace qob
