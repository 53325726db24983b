// Each program is one of the commands: QOB_COMMAND, which its build names.
#include "driver/commands.h"
#include "driver/uncaught.h"
#include "system/process.h"

int main(int argc, char** argv) {
  qob::prepare_process();
  qob::stop_at_what_nothing_catches();
  return qob::QOB_COMMAND(argc, argv);
}
