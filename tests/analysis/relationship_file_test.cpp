#include <algorithm>
#include <cmath>
#include <random>

#include "analysis/kernels/relationship_text.h"
#include "analysis/qobrelshipmatrix.h"
#include "support/program.h"
#include "support/run_fixture.h"

namespace qob::test {
namespace {

// Ties and powers of ten, and values next to them.
TEST(RelationshipText, IsTheGeneralForm) {
  std::mt19937_64 rng(2);
  for (int n = 0; n < 300000; ++n) {
    double a = std::ldexp(static_cast<double>(rng() % 8192), -static_cast<int>(rng() % 40));
    if (n % 3 > 0) {
      const double power = std::pow(10.0, static_cast<int>(rng() % 12) - 10);
      const std::uint64_t halves = n % 3 == 1 ? rng() % 41 + 1'999'980 : rng() % 2'000'000;
      a = std::nextafter(power * static_cast<double>(halves) / 2e6, n % 2 == 0 ? 0.0 : 99.0);
    }
    if (n % 1000 == 0) a = -a;
    char text[kRelationshipWidth];
    const auto size = static_cast<std::size_t>(put_relationship(text, a) - text);
    const std::string field = formatted("(G12.6)", a);
    ASSERT_EQ(std::string_view(text, size), adjustl_trim(field)) << n;
  }
}

class RelationshipFile : public RunTest {
 protected:
  void set_up(const std::string& herd, const std::string& items) {
    read_animals(herd);
    std::int32_t counter = pedigree.maxid;
    pedigree.ids.build_tree(777, counter);  // as a request for contributions leaves it
    log.clear();
    out.clear();
    parameters.relationship = {};
    open_parameters("&RelationshipMatrix " + items + " /");
    relationship = *setup_nrm(run, pedigree);
  }
  Relationship relationship;
  static bool has(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
  }
};

TEST_F(RelationshipFile, AFaultyRecordIsShown) {
  const struct {
    const char *contents, *message, *lines;
  } cases[] = {{"\n", " ERROR Reading id 0 from Relationship file", ""},
               {"10 10 1\n20 99 -.5\n", " ERROR Individual           99 not found in pedigree",
                " Record : 20 99 -.5\n Record            2 :           20          99 -0.5\n"},
               {"777 10 1\n", " ERROR Individual          777 not found in pedigree",
                " Record : 777 10 1\n"},
               {"10 20 nan\n", " ERROR in reading external relationship file Value of error:  5010",
                " Record read 10 20 nan\n"}};
  for (const auto& c : cases) {
    const std::string gfile = folder.write("g.txt", c.contents);
    expect_stop(c.message, [&] {
      set_up("10 0 0 1 1 2 0\n20 0 0 2 1 2 0\n", "source='genomic' gfile='" + gfile + "'");
    });
    EXPECT_TRUE(has(out, c.lines)) << out;
  }
}

TEST_F(RelationshipFile, WrittenAndReadBackGivesTheMatrixToSixDigits) {
  const std::string herd = read_file(QOB_SOURCE_DIR "/tests/data/cuvier.dat");
  const std::string gfile = "gfile='" + folder / "g.txt" + "'";
  set_up(herd, gfile);
  EXPECT_TRUE(has(log, "\nRelationship matrix written to file :" + folder / "g.txt" + "\n"));
  const std::string file = folder.read("g.txt");
  const auto lines = std::count(file.begin(), file.end(), '\n');
  const std::string count = formatted("(A,I10)", "records written to file   :", lines);
  EXPECT_TRUE(has(log, count)) << log;
  const Relationship computed = relationship;
  ASSERT_GT(computed.nnrm, 40);
  set_up(herd, "source='file' " + gfile);
  for (std::int64_t e = 1; e <= computed.nrm.size(); ++e) {
    const double a = computed.nrm(e);
    ASSERT_NEAR(relationship.nrm(e), a, 5.001e-6 * a);
  }
  for (std::int32_t i = 1; i <= pedigree.maxid; ++i) {
    const std::int32_t row = computed.nrm_id(i);
    if (row > 0) {
      ASSERT_EQ(pedigree.f(i), nrmelement(relationship, row, row) - 1.0);
    }
  }
  EXPECT_FALSE(has(log, "Individual ignored"));
}

}  // namespace
}  // namespace qob::test
