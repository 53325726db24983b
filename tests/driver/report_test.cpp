// qob-report as it is called.
#include <gtest/gtest.h>

#include <string>

#include "support/transcripts.h"

namespace qob::test {
namespace {

// The first words of a script, for those of report_cases.txt.
const std::string kWords =
    "export PATH=$(dirname " QOB_PREPARE
    "):$PATH LC_ALL=C.UTF-8; exec 2>&1 < /dev/null\n"
    "qob-prepare herd.csv --males \"matings=2 age=1\" --females \"matings=1 age=1\" > x\n"
    "cd herd; sed -i 's/generations=[0-9]*/generations=20/' herd.prm && qob herd.prm > x 2>&1; cd ..; rm -f x\n"
    "report() { qob-report \"$@\"; echo $?; }\n";

TEST(ReportProgram, FollowsTheCases) {
  const std::string cases = QOB_SOURCE_DIR "/tests/driver/report_cases.txt";
  const std::string herd_book = transcripts_of(cases).front().given;
  expect_followed(cases, 7, kWords, [&](const TemporaryFolder& folder, const Transcript&) {
    folder.write("herd.csv", herd_book);
  });

  // The page, or what a program without pages says; no name has become a part of it.
  const TemporaryFolder folder;
  folder.write("herd.csv", herd_book);
  const std::string shown =
      shown_by(folder, kWords +
                           "report herd/QOB_; report herd/QOB_ --tables t\n"
                           "cd herd; grep -o 'id=\"data\">{\"format\"' *.html\n"
                           "grep -c '<img\\|</script><b>' *.html\n");
#ifdef QOB_WEB
  EXPECT_EQ(shown,
            "Report: herd/QOB_report.html\n0\nTables: t\nReport: herd/QOB_report.html\n0\n"
            "id=\"data\">{\"format\"\n0\n");
#else
  EXPECT_TRUE(shown.starts_with(
      "this qob-report was built without pages : expected --json or --tables, or a build with "
      "-DQOB_WEB=ON\n1\nTables: t\nNo page: this qob-report was built without pages (-DQOB_WEB=OFF)\n0\n"))
      << shown;
#endif
}

}  // namespace
}  // namespace qob::test
