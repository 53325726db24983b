// Inbreeding and relationships, judged by the tabular method.
#include <cmath>
#include <sstream>

#include "analysis/pedigree_products.h"
#include "analysis/qobpophistory.h"
#include "analysis/qobrelshipmatrix.h"
#include "core/lexer.h"
#include "core/numbers.h"
#include "support/program.h"
#include "support/random_pedigree.h"
#include "support/run_fixture.h"

namespace qob::test {
namespace {

enum class Matrix { kRelationships, kGeneFlow };

// Either matrix by its definition: a row is the mean of the parents' rows. A is symmetric, with
// half the parents' relationship above 1 on its diagonal; T, which holds the share of i's genes
// that comes from j, ends in 1.
Table2<double> dense(const Table2<std::int32_t>& newped, Matrix which) {
  const bool flow = which == Matrix::kGeneFlow;
  Table2<double> m(newped.columns(), newped.columns(), 0.0);
  const auto at = [&](int i, int j) { return i == 0 || j == 0 ? 0.0 : m(i, j); };
  for (int i = 1; i <= m.rows(); ++i) {
    const int s = newped(1, i), d = newped(2, i);
    for (int j = 1; j < i; ++j) {
      m(i, j) = 0.5 * (at(s, j) + at(d, j));
      if (!flow) m(j, i) = m(i, j);
    }
    m(i, i) = flow ? 1.0 : 1.0 + 0.5 * at(s, d);
  }
  return m;
}

void expect_inbreeding(const Table<double, 0>& f, const Table2<double>& a) {
  ASSERT_EQ(f.last(), a.rows());
  EXPECT_EQ(f(0), -1.0);
  for (int i = 1; i <= a.rows(); ++i) ASSERT_NEAR(f(i), a(i, i) - 1.0, 1e-12) << i;
}

TEST(PedigreeProducts, AndInbreedingAgreeWithTheDenseMatrices) {
  std::mt19937 rng(13);
  Unit none(6);
  Parallel one;
  for (int pedigree = 0; pedigree < 30; ++pedigree) {
    const Table2<std::int32_t> newped = random_pedigree(pedigree, rng);
    const Table2<double> a = dense(newped, Matrix::kRelationships);
    const Table2<double> t = dense(newped, Matrix::kGeneFlow);
    Table<double, 0> f;
    inbreeding_coefficients(newped, f, none, one);
    expect_inbreeding(f, a);
    Table<double> x(a.rows()), product, shares;
    for (double& value : x) value = 0.5 + static_cast<double>(rng() % 1000) / 1000.0;
    product = shares = x;
    ax(newped, f, product);
    gen_cont(newped, shares);
    for (int i = 1; i <= a.rows(); ++i) {
      double related = 0.0, flow = 0.0;
      for (int j = 1; j <= a.rows(); ++j) {
        related += a(i, j) * x(j);
        flow += t(j, i) * x(j);
      }
      ASSERT_NEAR(product(i), related, 1e-9) << i;
      ASSERT_NEAR(shares(i), flow, 1e-9) << i;
    }
  }
}

// Animal 2 is an offspring of 1. The threshold, 1e-8 in single precision, is just below 1e-8.
TEST(PedigreeProducts, WeightsBelowTheThresholdAreNotPassedOn) {
  const double tiny = static_cast<double>(1e-8F);
  const double below = std::nextafter(tiny, 0.0), above = std::nextafter(tiny, 1.0);
  Table2<std::int32_t> newped(2, 2, 0);
  newped(1, 2) = 1;
  const Table<double, 0> f(3, 0.0);
  const struct {
    double x1, x2, ax1, ax2, ak2, shares1;  // ax and ak give animal 1 the same
  } cases[] = {{0.0, -below, 0.0, -below, -below, 0.0},
               {0.0, tiny, 0.5 * tiny, tiny, 0.75 * tiny, 0.5 * tiny},
               {tiny, 0.0, tiny, 0.5 * tiny, 0.0, tiny},
               {-above, 0.0, -above, -0.5 * above, -0.5 * above, -above}};
  for (const auto& c : cases) {
    Table<double> by_ax(2, c.x1), by_ak, shares;
    by_ax(2) = c.x2;
    by_ak = shares = by_ax;
    ax(newped, f, by_ax);
    ak(newped, f, by_ak, 2);
    gen_cont(newped, shares);
    EXPECT_TRUE(by_ax(1) == c.ax1 && by_ak(1) == c.ax1 && shares(1) == c.shares1) << c.x1;
    EXPECT_DOUBLE_EQ(by_ax(2), c.ax2);
    EXPECT_DOUBLE_EQ(by_ak(2), c.ak2);
  }
}

class SetupNrm : public RunTest {
 protected:
  void set_up(const std::string& table, const std::string& groups) {
    parameters.data.ignoreparentalpedigreeerrors = true;
    log.clear();
    read_animals(table);
    open_parameters(groups);
    relationship = *setup_nrm(run, pedigree);
  }
  Relationship relationship;

  // Rows in animal order, elements row by row.
  void expect_matrix() const {
    const Relationship& r = relationship;
    const Table2<double> a = dense(pedigree.newped, Matrix::kRelationships);
    std::int32_t row = 0;
    std::int64_t at = 0;
    for (int i = 1; i <= pedigree.maxid; ++i) {
      const bool candidate = pedigree.matings(i) > 0;
      ASSERT_EQ(r.nrm_id(i), candidate ? ++row : 0);
      for (int j = 1; candidate && j <= i; ++j) {
        if (r.nrm_id(j) == 0) continue;
        ASSERT_NEAR(r.nrm(++at), a(i, j), 1e-6);
      }
    }
    EXPECT_TRUE(r.nnrm == row && r.nrm.size() == at);
  }
};

TEST_F(SetupNrm, TheDataDecideHowManyCohortsCount) {
  const struct {
    const char *table, *items;
    int maxage, marked;
  } cases[] = {
      // From the oldest candidate to the coming offspring, of 2007.
      {"1 0 0 1 2000 1 0\n2 0 0 2 2003 1 0\n3 0 0 1 2006 0 0\n4 0 0 1 1999 0 0\n", "", 7, 3},
      // The age of the last cohort's oldest parent in 2006; 1 is marked as a parent.
      {"1 0 0 1 2000 0 0\n2 0 0 2 2003 0 0\n3 1 2 1 2006 0 0\n4 0 0 1 2005 1 0\n", "", 6, 4},
      // The age of an older candidate's dam in 2006.
      {"1 0 0 2 1995 0 0\n2 0 1 1 2004 1 0\n3 0 0 1 2006 0 0\n4 0 0 1 1994 0 0\n", "", 11, 3},
      // Other animals' parents are left out.
      {"1 0 0 1 1995 0 0\n2 1 0 1 2005 0 0\n3 0 0 1 2006 2 0\n", "", 1, 1},
      // An inserted parent counts 1, one born at -9998 has its age.
      {"2 99 0 1 2006 1 0\n", "", 1, 2},
      {"1 0 0 1 -9998 0 0\n2 1 0 1 2006 1 0\n", "", 12004, 2},
      // A candidate born at -9999 is not the oldest.
      {"1 0 0 1 -9999 1 0\n2 0 0 1 2004 1 0\n3 0 0 2 2006 0 0\n", "", 3, 3},
      // No candidates.
      {"1 0 0 1 2000 0 0\n2 1 0 2 2006 0 0\n3 0 0 1 2006 0 0\n", "", 6, 3},
      // The parameter overrides all that; a parent beyond it is marked.
      {"1 0 0 1 2000 0 0\n2 1 0 1 2004 0 0\n3 0 0 2 2003 0 0\n4 0 0 1 2006 1 0\n",
       "timesteps=3 source='PEDIGREE'", 3, 3}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.table);
    set_up(c.table, std::string("&RelationshipMatrix ") + c.items + " /");
    const std::string lines = formatted(
        "(2(/,A,I8,/),/,A,I8)",
        "Number of cohorts included in computing the numerator relationship : ", c.maxage,
        "Candidates in Numerator Relationship Matrix stored in memeory:", relationship.nnrm,
        "Individuals in Numerator Relationship Matrix required for OCS:", c.marked);
    EXPECT_EQ(relationship.maxage, c.maxage);
    EXPECT_NE(log.find(lines), std::string::npos) << log;
    expect_matrix();
  }
}

TEST_F(SetupNrm, FaultsStopWithTheirMessage) {
  std::string many;
  for (int i = 1; i <= 46342; ++i) many += std::to_string(i) + " 0 0 1 2000 1 0\n";
  const std::pair<std::string, const char*> cases[] = {
      {"1 0 0 1 2147483647 1 0\n", " ERROR in data : Illegal birth_time in record :"},
      {many, " Dimension of NRM too large. Program aborted."}};
  for (const auto& [table, message] : cases) {
    EXPECT_THROW(set_up(table, "&RelationshipMatrix /"), Stopped);
    EXPECT_NE(log.find(message), std::string::npos) << log;
  }
  EXPECT_THROW(ute(0, 3), Stopped);
  EXPECT_THROW(nrmelement(relationship, 3, 0), Stopped);
  EXPECT_EQ(ute(46341, 46341), 1073767311);
}

TEST_F(SetupNrm, OfRealHerdsAgreesWithTheTabularMethodForEveryAnimal) {
  for (const char* herd : {"arrui.dat", "cuvier.dat", "dama.dat"}) {
    SCOPED_TRACE(herd);
    set_up(read_file(std::string(QOB_SOURCE_DIR "/tests/data/") + herd), "&RelationshipMatrix /");
    EXPECT_TRUE(pedigree.maxid >= 380 && relationship.nnrm >= 40);
    expect_inbreeding(pedigree.f, dense(pedigree.newped, Matrix::kRelationships));
    expect_matrix();
  }
  EXPECT_NE(out.find(" Finished         1000 animals\n"), std::string::npos);
}

// Every founder's share in every hundredth animal, and in the animals of its birth time.
TEST_F(SetupNrm, RequestedContributionsOfARealHerdAgreeWithTheRecursion) {
  const std::string herd = read_file(QOB_SOURCE_DIR "/tests/data/arrui.dat");
  read_animals(herd);
  const Pedigree& p = pedigree;
  std::string requests = "&PopulationHistory /";
  for (int i = 100; i <= p.maxid; i += 70) {
    for (int ancestor : {1, 2, i / 2}) {
      const std::string first = format_list("&Contrib ancestor=", p.oldped(ancestor, 1));
      requests += first + format_list(" descendant=", p.oldped(i, 1), "/\n");
      requests += first + format_list(" group=", p.btime(i), "/\n");
    }
  }
  parameters.data.resultsdirectory = folder / "r_";
  open_parameters(requests);
  pophistory(run, pedigree);
  const Table2<double> a = dense(p.newped, Matrix::kRelationships);
  const Table2<double> t = dense(p.newped, Matrix::kGeneFlow);
  std::istringstream lines(folder.read("r_gencont.txt"));
  int answered = 0;
  for (std::string line; std::getline(lines, line);) {
    std::int32_t id[2], group, n;
    double related, share, mean_a = 0.0, mean_t = 0.0;
    if (line.ends_with("founder") || read_list(line, id[0], id[1], group, n, related, share) != 0) {
      continue;
    }
    const std::int32_t from = p.ids.find(id[0]).number;
    int members = 0;
    for (int j = 1; j <= p.maxid; ++j) {
      if (id[1] != 0 ? p.oldped(j, 1) != id[1] : p.btime(j) != group) continue;
      ++members;
      mean_a += a(from, j);
      mean_t += from <= j ? t(j, from) : 0.0;
    }
    EXPECT_NEAR(related, mean_a / members, 1e-6) << line;
    EXPECT_NEAR(share, mean_t / members, 1e-6) << line;
    answered += id[1] != 0 || n == members;
  }
  EXPECT_EQ(answered, 30);
}

}  // namespace
}  // namespace qob::test
