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
  const auto cases = transcripts_of(QOB_SOURCE_DIR "/tests/prepare/cases.txt");
  for (const Transcript& one : cases) {
    const TemporaryFolder folder;
    folder.write("herd.csv", one.given);
    EXPECT_EQ(shown_by(folder, kWords + one.script), one.shown) << one.script;
  }
  EXPECT_EQ(cases.size(), 17U);
}

}  // namespace
}  // namespace qob::test
