// Herd books as people keep them, and what the program says of them.
#include <gtest/gtest.h>

#include <string>

#include "support/transcripts.h"

namespace qob::test {
namespace {

// The first words of a script, for those of cases.txt.
const std::string kWords =
    "export PATH=$(dirname " QOB_PREPARE
    "):$PATH LC_ALL=C; exec 2>&1 < /dev/null\n"
    "prepare() { rm -rf herd; qob-prepare herd.csv \"$@\" > out.txt 2>&1; echo $?\n"
    "if test -d herd; then tail -n +2 herd/herd.faults.csv; else cat out.txt; fi; }\n"
    "dat() { cat herd/herd.dat; }\n"
    "as() { iconv -f UTF-8 -t $1 herd.csv > x; mv x herd.csv; }\n";

TEST(Prepare, FollowsTheCases) {
  expect_followed(QOB_SOURCE_DIR "/tests/prepare/cases.txt", 20, kWords,
                  [](const TemporaryFolder& folder, const Transcript& one) {
                    folder.write("herd.csv", one.given);
                  });
}

}  // namespace
}  // namespace qob::test
