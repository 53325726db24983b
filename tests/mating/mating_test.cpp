// The pairing of the selected parents.
#include <algorithm>

#include "mating/mating_lists.h"
#include "mating/maximum_avoidance.h"
#include "mating/pair_count.h"
#include "mating/qobmate.h"
#include "ocs/selection_fixture.h"
#include "plain/maximum_avoidance.h"

namespace qob::test {
namespace {

class MatingTest : public SelectionTest {
 protected:
  void pair(const Rows& rows) {
    plan.best_mating.assign(1, static_cast<std::int64_t>(rows.size()));
    plan.best().copy_from(mateset(rows));
    plan.best_value.inbreeding = inbreeding(rows);
    plan.random = random;
  }
  void avoid(bool repeats) { maximum_avoidance(candidates, relationship, repeats, plan, units); }
  Rows paired() { return rows_of(plan.best()); }
  double inbreeding(const Rows& rows) {
    double sum = 0.0;
    for (const auto& [male, female] : rows) sum += 0.5 * rel(male, female);
    return sum / static_cast<double>(rows.size());
  }
  Plan plan;
};

// Relationships with all their bits, many ties, pairs that repeat.
TEST_F(MatingTest, MaximumAvoidanceMakesTheChoicesOfThePlainForm) {
  for (int seed = 1; seed <= 60; ++seed) {
    Stream data(static_cast<std::uint32_t>(seed));
    const int males = 1 + data.ceiling(12), females = 1 + data.ceiling(30);
    set_candidates(std::vector<int>(static_cast<std::size_t>(males), 9),
                   std::vector<int>(static_cast<std::size_t>(females), 9), 4, 1, seed);
    const double steps = seed % 2 == 0 ? 1e9 : 3.0;
    for (int i = 1; i <= males + females; ++i) {
      for (int j = 1; j <= i; ++j)
        relate(i, j, std::round((data.uni() - 0.2) * steps) / (0.7 * steps));
    }
    Rows rows;
    for (int j = data.ceiling(60); j > 0; --j)
      rows.emplace_back(data.ceiling(males), males + data.ceiling(females));
    const bool repeats = seed % 3 == 0;
    pair(rows);
    plain::maximum_avoidance(candidates, relationship, repeats, plan);
    const Rows expected = paired();
    const double f = plan.best_value.inbreeding, draw = plan.random.uni();
    pair(rows);
    avoid(repeats);
    ASSERT_EQ(paired(), expected) << seed;
    EXPECT_EQ(plan.best_value.inbreeding, f);
    EXPECT_EQ(plan.random.uni(), draw);
  }
}

TEST_F(MatingTest, PairsAreCountedWhileRowsChange) {
  Rows rows(20, {1, 1});
  PairCount count(20);
  for (const auto& [male, female] : rows) count.add(male, female);
  Stream draw(1);
  for (std::size_t step = 0; step < 5000; ++step) {
    auto& [male, female] = rows[step % 20];
    count.remove(male, female);
    count.add(male = draw.ceiling(9), female = draw.ceiling(9));
    for (const auto& r : rows)
      ASSERT_EQ(count(r.first, r.second), std::count(rows.begin(), rows.end(), r));
  }
}

// Single precision does not tell matings of so many candidates apart.
TEST_F(MatingTest, AListIsInOrderAlsoForManyCandidates) {
  Stream data(1);
  Rows rows;
  for (int j = 0; j < 3000; ++j)
    rows.emplace_back(8000 + data.ceiling(300), 9000 + data.ceiling(9000));
  const Mateset view = mateset(rows);
  Rows listed;
  selection.nmatings = 3000;
  for (const std::int32_t j : rows_in_order(selection, view))
    listed.emplace_back(view.male(j), view.female(j));
  std::sort(rows.begin(), rows.end());
  EXPECT_EQ(listed, rows);
}

TEST_F(MatingTest, PairsThatReplaceEachOtherForEverUseUpTheBudget) {
  set_candidates({9, 9}, {9, 9}, 4);
  relationship.nrm.fill(1.0);
  const Rows rows = {{1, 3}, {1, 3}, {2, 4}, {2, 4}};
  pair(rows);  // a pair in two rows costs 2.0, the other pair nothing more yet
  avoid(false);
  EXPECT_EQ(paired(), rows);  // after an even number of exchanges
  EXPECT_EQ(log,
            " WARNING : Optimisation of matings stopped before convergence\n"
            "           Matings not necessarily minimise inbreeding of offspring\n");
}

}  // namespace
}  // namespace qob::test
