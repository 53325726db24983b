// What only the real system can refuse.
#include "system/output_file.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>

#include "support/program.h"

namespace qob::test {
namespace {

TEST(PosixOutputFile, GoesOnBehindTheLastWholeLine_WhenARefusedWriteWasTakenBack) {
  const TemporaryFolder folder;
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  rlimit before;
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
  rlimit small = before;
  small.rlim_cur = 10;
  OutputFile file;
  ASSERT_EQ(file.open(folder / "lines", Show::kEachLine), 0);
  setrlimit(RLIMIT_FSIZE, &small);
  EXPECT_EQ(file.write("first\n"), 0);
  EXPECT_EQ(file.write("second, too long\n"), EFBIG);
  setrlimit(RLIMIT_FSIZE, &before);
  std::signal(SIGXFSZ, handler);
  EXPECT_EQ(read_file(folder / "lines"), "first\n");
  EXPECT_EQ(file.write("third\n") + file.close(), 0);
  EXPECT_EQ(read_file(folder / "lines"), "first\nthird\n");
}

}  // namespace
}  // namespace qob::test
