// Set-up of the selection: candidates, age structure, earlier contributions, scale of merit.
#include <cmath>

#include "ocs/qobocs.h"
#include "support/run_fixture.h"

namespace qob::test {
namespace {

// born 1:   1   2   3(f)         candidates: males 4, 7, 9, females 3, 6, 10
// born 2:   4 = 1 x 2   5 = 1 x 3
// born 3:   6 = 1 x 2   7 = 4 x 5
// born 4:   8 = 4 x 5   9 = 7 x 6   10 = 7 x 5   11 = unknown x 3
constexpr const char* kHerd =
    "101 0 0 1 1 0 0\n102 0 0 2 1 0 0\n103 0 0 2 1 1 2.5 old\n104 101 102 1 2 2 1 first\n"
    "105 101 103 2 2 0 0\n106 101 102 2 3 2 -1.5\n107 104 105 1 3 4 4\n108 104 105 2 4 0 2\n"
    "109 107 106 1 4 3 3 last\n110 107 105 2 4 1 1\n111 0 103 1 4 0 0\n";

class SetUpSelection : public RunTest {
 protected:
  void set_up(std::string_view table, int nmatings = 4, int slot_rows = 1) {
    read_animals(table);
    log.clear();
    summary.clear();
    parameters.ocs.nmatings = nmatings;
    parameters.ocs.limitmalematings = slot_rows;
    selection = set_up_selection(run, std::move(pedigree), relationship);
  }
  Relationship relationship;
  Selection selection;
};

// 9 has no record, so its birth time is -9999. A candidate born before -9998 opens no age class.
TEST_F(SetUpSelection, ParentsCountWithTheirFullAge) {
  const struct {
    std::string_view table;
    const char* classes;
    double interval;
  } cases[] = {{"1 0 0 1 -20000 3 7\n2 0 0 2 1 3 0.1\n3 1 2 1 3 1 0\n", "20003", (20003 + 2) / 2.0},
               {"1 0 0 1 -9999 3 7\n2 0 0 2 -9998 3 0.1\n3 0 0 1 3 1 0\n", "10002", 1.0},
               {"2 0 0 2 1 3 0.1\n3 9 2 1 3 1 0\n", "10002", (10002 + 2) / 2.0}};
  parameters.data.ignoreparentalpedigreeerrors = true;
  for (const auto& c : cases) {
    set_up(c.table);
    EXPECT_EQ(log.substr(0, log.find('\n')),
              " Computing realised contributions for the previous       " + std::string(c.classes) +
                  " periods");
    EXPECT_DOUBLE_EQ(selection.goal.last_genint, c.interval);
  }
}

TEST_F(SetUpSelection, MoreMatingsThanAvailableAreLoweredWithAWarning) {
  set_up(kHerd, 10, 4);
  const std::string warning =
      " \n  WARNING : More matings attempted than possible\n"
      "  Matings requested        :           10\n  Male matings available   :            9\n"
      "  Female matings available :            4\n  Matings selected         :            4\n";
  ASSERT_GT(log.size(), warning.size());
  EXPECT_EQ(log.substr(log.size() - warning.size()), warning);
  EXPECT_EQ(selection.nmatings, 4);
  set_up("1 0 0 1 1 4 7\n2 0 0 2 1 90 1\n", 10, 2);
  EXPECT_EQ(selection.nmatings, 4);
}

TEST_F(SetUpSelection, FaultsStopTheRun) {
  const struct {
    std::string_view table;
    int unit;
    std::string_view message;
  } cases[] = {
      {"1 0 0 1 1 0 7\n2 0 0 2 1 3 1\n", 1, " ERROR: No male candidates"},
      {"1 0 0 1 1 2 7\n2 0 0 2 1 0 1\n", 1, " ERROR: No female candidates"},
      {"1 0 0 1 1 2 7\n2 0 0 3 1 2 1\n", 1,
       " Error in sex codes. Assumed to be 1 (males) or 2 (females)"},
      {kHerd, 5,
       " ERROR: Male candidates should have at least LimitMaleMatings matings in dataset"},
      {"1 0 0 1 1 9 7\n2 0 0 2 1 3 1\n", 5,
       " ERROR: LimitMaleMatings should be 1 <= LimitMaleMatings <= NMatings Value of error:     0"},
  };
  for (const auto& c : cases) {
    expect_stop(std::string(c.message), [&] { set_up(c.table, 1, c.unit); });
  }
}

// The file is read again, and may have changed since the matrix was read from it.
TEST_F(SetUpSelection, TheRelationshipFileMustHoldEveryCandidate) {
  const std::string diagonals = "103 103 1\n104 104 1\n106 106 1\n107 107 1\n109 109 1\n";
  const std::string head =
      " -------------- Summary of individuals not in file -----------------\n"
      "   Group   N.ped   N.req  N.miss\n       1       3       1         0\n"
      "       2       2       1         0\n       3       2       2         0\n";
  const auto read = [&](const std::string& contents) {
    relationship.pedsource = false;
    parameters.relationship.gfile = folder.write("g.txt", contents);
    set_up(kHerd);
  };
  read(diagonals + "110 109 0.5\n110 110 1\n");
  EXPECT_TRUE(summary.ends_with(head + "       4       4       2         0\n")) << summary;
  expect_stop(" Not all required individuals found in relationship file read",
              [&] { read(diagonals + "110 109 0.5\n"); });
  EXPECT_TRUE(summary.ends_with(head + "       4       4       2         1\n")) << summary;
  expect_stop(
      " ERROR in reading external relationship file, line            2 Value of error:  5010",
      [&] { read("110 110 1\n1e9\n"); });
  parameters.relationship.gfile = "gone.txt";
  expect_stop(" ERROR Could not open relationship file gone.txt Value of error:     2",
              [&] { set_up(kHerd); });
}

}  // namespace
}  // namespace qob::test
