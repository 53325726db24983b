#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <random>
#include <sstream>
#include <vector>

#include "mating/maximum_avoidance.h"
#include "mating/qobmate.h"
#include "support/program.h"

namespace qob::test {
namespace {

using Column = std::vector<std::int32_t>;

bool has(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

class MatingTest : public ModelTest {
 protected:
  MatingTest() { model.parameters.data.resultsdirectory = folder / "r_"; }

  // Three males and four females with random relationships and merits, in animals 11 to 17.
  void herd(unsigned seed) {
    std::mt19937 engine(seed);
    std::uniform_real_distribution<double> draw(0.0, 1.0);
    Candidates& c = model.candidates;
    c.nmcands = 3;
    c.nfcands = 4;
    c.ncands = 7;
    for (auto* table : {&c.cands, &c.max_matings, &c.old_id}) table->assign(7, 8);
    c.merit.assign(7, 0.0);
    c.description.assign(7, Text<15>{});
    model.pedigree.maxid = 17;
    model.pedigree.newped.assign(2, 17, 0);
    Relationship& r = model.relationship;
    r.nnrm = 7;
    r.nrm_id.assign(17, 0);
    r.nrm.assign(28, 0.0);
    for (double& element : r.nrm) element = std::floor(1024 * draw(engine)) / 1024;  // exact sums
    for (std::int32_t i = 1; i <= 7; ++i) {
      r.nrm_id(10 + i) = i;
      c.cands(i) = 10 + i;
      c.old_id(i) = 900 - i;
      c.description(i) = "name" + std::to_string(i);
      c.merit(i) = draw(engine);
      r.nrm(ute(i, i)) += 1.0;
    }
    model.random.zigset(static_cast<std::int32_t>(seed));
    log.clear();
  }
  void mateset(const Column& males, const Column& females) {
    const auto n = static_cast<std::int64_t>(males.size());
    model.search.best_mating.assign(1, n);
    std::copy(males.begin(), males.end(), &best().male(1));
    std::copy(females.begin(), females.end(), &best().female(1));
    model.search.best_value.inbreeding = inbreeding();
  }
  void random_mateset(std::size_t n, unsigned seed) {
    std::mt19937 engine(seed);
    Column males(n), females(n);
    for (auto& m : males) m = std::uniform_int_distribution(1, 3)(engine);
    for (auto& f : females) f = std::uniform_int_distribution(4, 7)(engine);
    mateset(males, females);
  }
  Mateset best() { return model.search.best(); }
  double a(std::int32_t i, std::int32_t j) const { return model.relationship.nrm(ute(i, j)); }
  double inbreeding() {
    double sum = 0.0;
    const std::int64_t n = best().nmatings();
    for (std::int64_t j = 1; j <= n; ++j) sum += 0.5 * a(best().male(j), best().female(j));
    return sum / static_cast<double>(n);
  }
  Column females() { return {&best().female(1), &best().female(1) + best().nmatings()}; }
  Column males() { return {&best().male(1), &best().male(1) + best().nmatings()}; }
  // What the pair (male of row i, female of row k) costs.
  double cost(std::int64_t i, std::int64_t k) {
    bool repeated = false;
    for (std::int64_t row = 1; row <= best().nmatings(); ++row) {
      const bool same =
          best().male(row) == best().male(i) && best().female(row) == best().female(k);
      repeated = repeated || (same && !(row == i && i == k));
    }
    if (repeated && !model.parameters.mating.repeatedmatings) return 2.0;
    return 0.5 * a(best().male(i), best().female(k));
  }
  // The most that another pairing of four rows of the mateset would save.
  double largest_gain() {
    double gain = 0.0;
    std::vector<bool> chosen(static_cast<std::size_t>(best().nmatings()), false);
    std::fill(chosen.end() - 4, chosen.end(), true);
    do {
      std::vector<std::int64_t> rows;
      for (std::size_t j = 0; j < chosen.size(); ++j) {
        if (chosen[j]) rows.push_back(static_cast<std::int64_t>(j) + 1);
      }
      std::array<std::size_t, 4> p = {0, 1, 2, 3};
      double now = 0.0;
      for (std::size_t i = 0; i < 4; ++i) now += cost(rows[i], rows[i]);
      do {
        double then = 0.0;
        for (std::size_t i = 0; i < 4; ++i) then += cost(rows[i], rows[p[i]]);
        gain = std::max(gain, now - then);
      } while (std::next_permutation(p.begin(), p.end()));
    } while (std::next_permutation(chosen.begin(), chosen.end()));
    return gain;
  }
  int repeated_pairs() {
    std::map<std::pair<std::int32_t, std::int32_t>, int> rows;
    for (std::int64_t j = 1; j <= best().nmatings(); ++j)
      ++rows[{best().male(j), best().female(j)}];
    int repeated = 0;
    for (const auto& [pair, n] : rows) repeated += n - 1;
    return repeated;
  }
};

TEST_F(MatingTest, MaximumAvoidance_LeavesNoBlockOfFourToImprove) {
  for (unsigned seed = 1; seed <= 60; ++seed) {
    model.parameters.mating.repeatedmatings = seed % 2 == 0;
    herd(seed);
    random_mateset(4 + seed / 2 % 5, seed + 1000);
    const Column males_before = males();
    Column females_before = females();
    double before = inbreeding();
    bool converged = true;
    for (int again = 0; again < 60; ++again) {  // so that every block has been drawn
      log.clear();
      maximum_avoidance(model);
      converged = !has(log, " WARNING : Optimisation of matings stopped before convergence\n");
      ASSERT_TRUE(converged || !model.parameters.mating.repeatedmatings);
      ASSERT_NEAR(model.search.best_value.inbreeding, inbreeding(), 1e-12);
      ASSERT_TRUE(seed % 2 == 1 || inbreeding() <= before + 1e-12);
      before = inbreeding();
    }
    EXPECT_TRUE(!converged || largest_gain() < 1e-9) << seed;
    EXPECT_EQ(males(), males_before);
    Column females_after = females();
    std::sort(females_before.begin(), females_before.end());
    std::sort(females_after.begin(), females_after.end());
    EXPECT_EQ(females_after, females_before);
  }
}

TEST_F(MatingTest, RepeatedPairsAreAvoidedUnlessAllowed) {
  for (const bool repeats : {true, false}) {
    herd(1);
    model.relationship.nrm.fill(1.0);
    model.parameters.mating.repeatedmatings = repeats;
    mateset({1, 1, 2, 3}, {4, 4, 5, 6});
    maximum_avoidance(model);
    EXPECT_EQ(repeated_pairs(), repeats ? 1 : 0);
    EXPECT_EQ(females() == (Column{4, 4, 5, 6}), repeats);
    EXPECT_EQ(model.search.best_value.inbreeding, 0.5);
    EXPECT_EQ(log, "");
  }
}

TEST_F(MatingTest, PairsThatReplaceEachOtherForEver_UseUpTheBudget) {
  herd(1);
  model.relationship.nrm.fill(1.0);
  model.parameters.mating.repeatedmatings = false;
  mateset({1, 1, 2, 2}, {4, 4, 5, 5});  // a pair in two rows costs 2.0, the other pair nothing yet
  maximum_avoidance(model);
  EXPECT_EQ(females(), (Column{4, 4, 5, 5}));  // after an even number of exchanges
  EXPECT_EQ(log,
            " WARNING : Optimisation of matings stopped before convergence\n"
            "           Matings not necessarily minimise inbreeding of offspring\n");
}

// --- lists ---

}  // namespace
}  // namespace qob::test
