#include <sys/resource.h>

#include <csignal>

#include "core/unit.h"
#include "support/program.h"

namespace qob::test {
namespace {

class OutputFiles : public RunTest {};

TEST_F(OutputFiles, GoOnBehindTheLastWholeLine_WhenARefusedWriteWasTakenBack) {
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  rlimit before;
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
  rlimit small = before;
  small.rlim_cur = 10;
  Unit unit{31};
  ASSERT_EQ(unit.open_write(folder / "lines", OutputFile::Show::kEachLine), 0);
  setrlimit(RLIMIT_FSIZE, &small);
  unit.write_line("first");
  EXPECT_THROW(unit.write_line("second, too long"), Stopped);
  setrlimit(RLIMIT_FSIZE, &before);
  std::signal(SIGXFSZ, handler);
  EXPECT_EQ(read_file(folder / "lines"), "first\n");
  unit.write_line("third");
  EXPECT_EQ(unit.close(), 0);
  EXPECT_EQ(read_file(folder / "lines"), "first\nthird\n");
}

}  // namespace
}  // namespace qob::test
