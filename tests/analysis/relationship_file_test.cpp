#include <algorithm>
#include <cmath>

#include "analysis/qobrelshipmatrix.h"
#include "support/program.h"

namespace qob::test {
namespace {

// Groups in order: 1, 3, 2. All but 50 are candidates.
const std::string kHerd =
    "10 0 0 1 1 2 0\n20 0 0 2 1 2 0\n60 0 0 2 3 1 0\n30 10 20 1 2 2 0\n40 10 20 2 2 1 0\n"
    "50 0 0 1 2 0 0\n";

class RelationshipFile : public ModelTest {
 protected:
  void set_up(const std::string& herd, const std::string& items) {
    model.pedigree = {};
    read_animals(herd);
    std::int32_t counter = model.pedigree.maxid;
    model.ids.build_tree(777, counter);  // as a request for contributions leaves it
    log.clear();
    out.clear();
    model.parameters.relationship = {};
    const std::string group = "&RelationshipMatrix " + items + " /";
    model.parameter_file.open(folder.write("qob.prm", group));
    setup_nrm(model);
  }
  void read(const std::string& contents) {
    set_up(kHerd, "source='genomic' gfile='" + folder.write("g.txt", contents) + "'");
  }
  static bool has(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
  }
};

TEST_F(RelationshipFile, ReplacesThePedigreeAndDropsCandidatesThatItLacks) {
  read(
      "10 10 1.25\n20,20 , 1.0D0\n30 10 -0.5\n10 20 0.1\n40 30 .25\n"
      "30 40 0.75 the last value of a pair stays\n40 40\n30 30 1.5\n\n50 30 0.3" +
      std::string(120, ' ') + "7\n");
  EXPECT_TRUE(
      summary.ends_with("------------------------------------------------------------------\n"
                        "   Group   N.ped  N.file   N.exp   avg.F      %.coa avg.rel\n"
                        "       1       2       2       2     0.1250  100.00  0.1000\n"
                        "       3       1       0       1     0.0000    0.00  0.0000\n"
                        "       2       3       3       2     0.0833  100.00  0.4333\n"
                        "------------------------------------------------------------------\n"))
      << summary;
  EXPECT_TRUE(log.ends_with(
      "g.txt\n Read            9 elements of relationship matrix for candidates\n"
      "        60.0% of all elements\n \n"
      " Individual marked as candidate was not in pedigree file :          60           3           0\n"
      " Individual ignored as candidate\n"))
      << log;
  EXPECT_TRUE(has(log, "\nRead       10 records from file : "));
  const Relationship& r = model.relationship;
  const double expected[] = {1.25, 0.1, 1.0, 0, 0, 0, -0.5, 0, 0, 1.5, 0, 0, 0, 0.75, 0.75};
  EXPECT_TRUE(std::equal(r.nrm.begin(), r.nrm.end(), std::begin(expected), std::end(expected)));
  EXPECT_DOUBLE_EQ(r.cohortrel, (0.25 + 0.75 + 0.3) / 3.0);
  EXPECT_EQ(model.pedigree.matings(3), 0);
  const double f[] = {0.0, 0.25, 0.0, 0.0, 0.5, -0.25, 0.0};
  EXPECT_TRUE(std::equal(std::begin(f), std::end(f), model.pedigree.f.begin()));
  EXPECT_FALSE(r.pedsource);
  read("");
  EXPECT_TRUE(has(log, "\n         0.0% of all elements\n"));
  EXPECT_EQ(std::count(model.pedigree.matings.begin(), model.pedigree.matings.end(), 0), 6);
}

TEST_F(RelationshipFile, FaultsStopTheRunWithTheRecord) {
  const struct {
    const char *contents, *message, *lines;
  } cases[] = {
      {"10 20 1\n0 10 0.5\n", " ERROR Reading id 0 from Relationship file", ""},
      {"\n", " ERROR Reading id 0 from Relationship file", ""},
      {"10 10 1\n20 99 -.5\n", " ERROR Individual           99 not found in pedigree",
       " Record : 20 99 -.5\n Record            2 :           20          99 -0.5\n"},
      {"777 10 1\n", " ERROR Individual          777 not found in pedigree",
       " Record : 777 10 1\n"},
      {"10 20 half\n", " ERROR in reading external relationship file Value of error:  5010",
       " Record read 10 20 half\n"},
      {"10 20 nan\n", " ERROR in reading external relationship file Value of error:  5010", ""}};
  for (const auto& c : cases) {
    expect_stop(c.message, [&] { read(c.contents); });
    EXPECT_TRUE(has(out, c.lines)) << out;
  }
  expect_stop(" ERROR Relationship File not found : nowhere.txt",
              [&] { set_up(kHerd, "source='file' gfile='nowhere.txt'"); });
  expect_stop(" ERROR Could not open relationship file / Value of error:    21",
              [&] { set_up(kHerd, "source='file' gfile='/'"); });
}

TEST_F(RelationshipFile, WrittenAndReadBackGivesTheMatrixToSixDigits) {
  const std::string herd = read_file(QOB_SOURCE_DIR "/tests/data/cuvier.dat");
  const std::string gfile = "gfile='" + folder / "g.txt" + "'";
  set_up(herd, gfile);
  EXPECT_TRUE(has(log, "\nRelationship matrix written to file :" + folder / "g.txt" + "\n"));
  const std::string file = read_file(folder / "g.txt");
  const auto lines = std::count(file.begin(), file.end(), '\n');
  const std::string count = format_record("(A,I10)", "records written to file   :", lines);
  EXPECT_TRUE(has(log, count)) << log;
  const Relationship computed = model.relationship;
  ASSERT_GT(computed.nnrm, 40);
  set_up(herd, "source='file' " + gfile);
  for (std::int64_t e = 1; e <= computed.nrm.size(); ++e) {
    const double a = computed.nrm(e);
    ASSERT_NEAR(model.relationship.nrm(e), a, 5.001e-6 * a);
  }
  for (std::int32_t i = 1; i <= model.pedigree.maxid; ++i) {
    const std::int32_t row = computed.nrm_id(i);
    if (row > 0) {
      ASSERT_EQ(model.pedigree.f(i), nrmelement(model.relationship, row, row) - 1.0);
    }
  }
  EXPECT_FALSE(has(log, "Individual ignored"));
}

}  // namespace
}  // namespace qob::test
