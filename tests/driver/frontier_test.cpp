// qob-frontier as it is called.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "support/transcripts.h"

namespace qob::test {
namespace {

// The first words of a script, for those of frontier_cases.txt.
const std::string kWords =
    "export PATH=$(dirname " QOB_PROGRAM
    "):$PATH LC_ALL=C.UTF-8; exec 2>&1 < /dev/null\n"
    "with() { sed -i \"s/$1/$2/\" qob.prm; }\n"
    "with 'generations=[0-9]*' generations=40\n"
    "frontier() { qob-frontier qob.prm \"$@\" > out.txt; echo $? $(grep csv out.txt); }\n"
    "files() { (cd $1 && for f in *; do echo $f; sed '/cpu=\\|wall=\\|QOB started/d' $f; done); }\n"
    "same() { files $1 > 1; files $2 > 2; cmp -s 1 2 || echo $1 is not $2; }\n"
    "plans() { cut -d, -f-15,17- $1/frontier.csv; }\n";

TEST(FrontierProgram, FollowsTheCases) {
  const auto furnish = [](const TemporaryFolder& folder, const Transcript&) {
    for (const char* file : {"cuvier.dat", "qob.prm"})
      std::filesystem::copy(std::string(QOB_SOURCE_DIR "/examples/cuvier/") + file, folder / file);
  };
  expect_followed(QOB_SOURCE_DIR "/tests/driver/frontier_cases.txt", 7, kWords, furnish);
}

}  // namespace
}  // namespace qob::test
