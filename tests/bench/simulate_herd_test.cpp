// The herd simulator: the same bytes everywhere, and nothing that makes no sense.
#include <gtest/gtest.h>

#include "support/program.h"

namespace qob::test {
namespace {

int simulate(const TemporaryFolder& folder, const std::string& options) {
  const std::string command = "cd " + (folder / "") + " && " QOB_SIMULATE_HERD " " + options;
  return WEXITSTATUS(std::system((command + " 2> err").c_str()));
}

// Of the males 7, then 9 is best; of the females 4 and 8, then 4, kept as one half, and 3.
TEST(SimulateHerd, ParentsAreTheBestOfTheirAge_AndTheProgramRunsOnTheBytesOfEveryMachine) {
  const TemporaryFolder folder;
  simulate(folder,
           "h --animals 9 --years 3 --sires 1 --sire-youngest 1 --dam-youngest 1 --seed 3 "
           "--candidates 2 --candidate-years 1 --male-fraction 0.5 --nmatings 1 "
           "--ids shuffled --generations 1");
  EXPECT_EQ(read_file(folder / "h.dat"),
            "8 0 0 2 1 0 -1.1708 b1-1\n4 0 0 2 1 0 -0.5110 b1-2\n7 0 0 1 1 0 0.8689 b1-3\n"
            "1 7 4 1 2 0 -0.4122 b2-1\n9 7 4 1 2 0 1.7212 b2-2\n3 7 8 2 2 0 -0.8359 b2-3\n"
            "2 9 4 2 3 1 1.6148 b3-1\n5 9 4 1 3 10 -0.3780 b3-2\n6 9 3 1 3 0 -0.8750 b3-3\n");
  EXPECT_EQ(run_program(folder, "h.prm").status, 0);
}

// Large and deep enough that threads have work.
TEST(SimulateHerd, RunsGiveTheSameFilesHoweverManyThreadsThereAre) {
  const TemporaryFolder folder;
  simulate(folder,
           "h --animals 20000 --years 30 --sires 20 --candidates 500 --generations 20 "
           "--sire-youngest 1 --sire-oldest 1 --sire-replacement 1 "
           "--dam-youngest 1 --dam-oldest 1 --dam-replacement 1");
  const auto files = [&](const std::string& threads) {
    EXPECT_EQ(run_program(folder, "h.prm --threads=" + threads).status, 0);
    std::system(
        ("cd " + (folder / "") + " && cat stdout.txt h_* | grep -v 'cpu=\\|wall=\\|started' > all")
            .c_str());
    return read_file(folder / "all");
  };
  const std::string alone = files("1");
  EXPECT_GT(alone.size(), 1'000'000U);
  for (const char* threads : {"2", "3", "16"}) EXPECT_TRUE(files(threads) == alone) << threads;
}

TEST(SimulateHerd, OptionsWithoutSenseAreRefused) {
  const TemporaryFolder folder;
  for (const char* options :
       {"", "x y", "x --cows 1", "x --sires", "x --sires 0", "x --sires 1.5", "x --unknown nan",
        "x --years 9999", "x --sire-oldest 1", "x --limitmalematings 3", "x --nmatings 5000",
        "x --candidates 1900", "x --mode best", "missing/x"}) {
    EXPECT_EQ(simulate(folder, options), 1) << options;
    EXPECT_TRUE(read_file(folder / "err").starts_with("simulate_herd: ")) << options;
  }
}

}  // namespace
}  // namespace qob::test
