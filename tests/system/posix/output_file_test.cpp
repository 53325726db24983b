// What only the real system can refuse.
#include "system/output_file.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <filesystem>

#include "support/program.h"

namespace {
bool links_are_refused = false, is_killed_when_linked = false;
}

// Stands in front of the system's.
extern "C" int linkat(int from_folder, const char* from, int to_folder, const char* to, int flags) {
  if (!links_are_refused) {
    const long status = syscall(SYS_linkat, from_folder, from, to_folder, to, flags);
    if (is_killed_when_linked) raise(SIGKILL);
    return static_cast<int>(status);
  }
  errno = EPERM;
  return -1;
}

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

TEST(PosixOutputFile, IsCompleteUnderItsName_WhereFilesWithoutNameGetNone) {
  const TemporaryFolder folder;
  const std::string lines(100000, 'x');
  for (links_are_refused = false;; links_are_refused = true) {
    OutputFile file;
    ASSERT_EQ(file.open(folder / "lines", Show::kWhenComplete), 0);
    EXPECT_EQ(file.write(lines + "\n"), 0);
    EXPECT_EQ(read_file(folder / "lines"), "");
    EXPECT_EQ(file.close(), 0);
    EXPECT_EQ(read_file(folder / "lines"), lines + "\n");
    if (links_are_refused) break;
  }
  const std::filesystem::directory_iterator all(folder / "");
  EXPECT_EQ(std::distance(begin(all), end(all)), 1);
}

TEST(PosixOutputFile, TakesAwayWhatAKilledWriterOfItLeft) {
  const TemporaryFolder folder;
  links_are_refused = false;
  const auto write = [&] {
    OutputFile file;
    return file.open(folder / "lines", Show::kWhenComplete) + file.write("mine\n") + file.close();
  };
  const auto write_and_be_killed = [&] {
    is_killed_when_linked = true;
    write();
  };
  const auto count = [&] {
    const std::filesystem::directory_iterator all(folder / "");
    return std::distance(begin(all), end(all));
  };
  EXPECT_EXIT(write_and_be_killed(), testing::KilledBySignal(SIGKILL), "");
  EXPECT_EQ(count(), 2);
  EXPECT_EQ(write(), 0);
  EXPECT_EQ(count(), 1);
}

TEST(PosixOutputFile, IsKeptFromOtherWritersWhenItIsComplete_IfItIsToBe) {
  const TemporaryFolder folder;
  for (links_are_refused = false;; links_are_refused = true) {
    const std::string path = folder / (links_are_refused ? "in place" : "unnamed");
    OutputFile file, other;
    ASSERT_EQ(file.open(path, Show::kAndKeep) + file.write("mine\n") + file.close(), 0);
    EXPECT_EQ(other.open(path, Show::kEachLine), EWOULDBLOCK);
    EXPECT_EQ(read_file(path), "mine\n");
    if (links_are_refused) break;
  }
}

}  // namespace
}  // namespace qob::test
