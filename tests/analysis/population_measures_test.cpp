// Founders, ancestors, kinship, generation intervals and rates, worked out by hand.
#include <cmath>

#include "analysis/effective_ancestors.h"
#include "analysis/founders.h"
#include "analysis/generation_intervals.h"
#include "analysis/mean_kinship.h"
#include "analysis/rate_of_rise.h"
#include "support/random_pedigree.h"
#include "support/run_fixture.h"

namespace qob::test {
namespace {

class PopulationMeasures : public RunTest {
 protected:
  Table<char> animals(const std::vector<std::int32_t>& numbers) const {
    Table<char> marked(pedigree.maxid, 0);
    for (const std::int32_t i : numbers) marked(i) = 1;
    return marked;
  }
};

// 5 has F = 0.25; 6 has one known parent.
//
//   1 x 2      7
//   3   4
//   3 x 4 -> 5,  3 x ? -> 6
//
// Genes of 5 and 6: 3/8 from 1, 3/8 from 2, 1/4 from the unknown parent. Ancestors: 3 (1/2 of all
// genes, before 5 and 6 that have as many), then 4 for the other half of 5, then 6 for its own.
// Relationships: 5 with itself 1.25, 6 with itself 1, 5 with 6 0.375.
constexpr const char* kOneParent =
    "1 0 0 1 1 0 0\n2 0 0 2 1 0 0\n3 1 2 1 2 0 0\n4 1 2 2 2 0 0\n5 3 4 1 3 0 0\n6 3 0 2 3 0 0\n"
    "7 0 0 1 1 0 0\n";

// Four founders whose genes went through two animals: 1 x 2 -> 5, 3 x 4 -> 6, 5 x 6 -> 7, 8.
constexpr const char* kNarrow =
    "1 0 0 1 1 0 0\n2 0 0 2 1 0 0\n3 0 0 1 1 0 0\n4 0 0 2 1 0 0\n5 1 2 1 2 0 0\n6 3 4 2 2 0 0\n"
    "7 5 6 1 3 0 0\n8 5 6 2 3 0 0\n";

TEST_F(PopulationMeasures, CountFoundersAncestorsAndGenomes) {
  const struct {
    const char* herd;
    std::vector<std::int32_t> living;
    double founders, unknown, ancestors, genomes;
  } cases[] = {
      {kOneParent, {5, 6}, 32.0 / 11.0, 0.25, 8.0 / 3.0, 4.0 / 3.0},
      {kOneParent, {1, 2, 7}, 3.0, 0.0, 3.0, 3.0},
      {kOneParent, {1, 3}, 1.6, 0.0, 1.6, 4.0 / 3.0},  // 3/4 from 1; a parent lives
      {kOneParent, {6}, 1.0 / (0.25 + 2.0 / 16.0), 0.5, 1.0, 1.0},
      {kNarrow, {7, 8}, 4.0, 0.0, 2.0, 4.0 / 3.0},
  };
  for (const auto& c : cases) {
    read_animals(c.herd);
    const Table<char> living = animals(c.living);
    const Founders founders = founders_of(pedigree.newped, living);
    EXPECT_DOUBLE_EQ(founders.equivalents, c.founders);
    EXPECT_DOUBLE_EQ(founders.unknown_genes, c.unknown);
    const auto ancestors = effective_ancestors(pedigree.newped, living, founders.contributing);
    EXPECT_DOUBLE_EQ(ancestors.low, c.ancestors);
    EXPECT_DOUBLE_EQ(ancestors.high, c.ancestors);
    EXPECT_DOUBLE_EQ(mean_kinship(pedigree.newped, pedigree.f, living).founder_genomes(),
                     c.genomes);
  }
}

TEST_F(PopulationMeasures, RankFoundersAndKnowTheKinshipOfAll) {
  read_animals(kOneParent);
  const std::vector<FounderShare> ranked = founders_of(pedigree.newped, animals({5, 6})).ranked;
  ASSERT_EQ(ranked.size(), 3U);
  EXPECT_TRUE(ranked[0].animal == 1 && ranked[1].animal == 2 && ranked[2].animal == 7);
  EXPECT_TRUE(ranked[1].share == 0.375 && ranked[2].share == 0.0);
  const MeanKinship kinship = mean_kinship(pedigree.newped, pedigree.f, animals({5, 6}));
  EXPECT_EQ(kinship.diversity(), 0.625);
  const double of[] = {0.1875, 0.1875, 0.3125, 0.25, 0.40625, 0.34375, 0.0};
  for (int i = 1; i <= 7; ++i) EXPECT_EQ(kinship.of(i), of[i - 1]) << i;
}

TEST_F(PopulationMeasures, AreNoneWithoutAReference) {
  read_animals(kOneParent);
  const Founders founders = founders_of(pedigree.newped, animals({}));
  EXPECT_TRUE(std::isnan(founders.equivalents) && std::isnan(founders.ranked.front().share));
  EXPECT_TRUE(std::isnan(effective_ancestors(pedigree.newped, animals({}), 0).low));
  EXPECT_TRUE(std::isnan(mean_kinship(pedigree.newped, pedigree.f, animals({})).of(1)));
}

// After 3 alone half of all genes are left: for one more like it, or for two founders.
TEST_F(PopulationMeasures, TellBoundsWhereAncestorsAreLeft) {
  read_animals(kOneParent);
  const auto bounds = effective_ancestors(pedigree.newped, animals({5, 6}), 3, 0);
  EXPECT_EQ(bounds.taken, 1);
  EXPECT_DOUBLE_EQ(bounds.low, 2.0);
  EXPECT_DOUBLE_EQ(bounds.high, 8.0 / 3.0);
  std::mt19937 rng(5);
  for (int k = 0; k < 12; ++k) {
    const Table2<std::int32_t> newped = random_pedigree(k, rng);
    const Table<char> all(newped.columns(), 1);
    const Founders founders = founders_of(newped, all);
    const double exact = effective_ancestors(newped, all, founders.contributing).low;
    for (const int steps : {0, 3000, 30000}) {
      const auto some = effective_ancestors(newped, all, founders.contributing, steps);
      EXPECT_LE(some.low, exact * (1.0 + 1e-9));
      EXPECT_LE(some.low, some.high);
    }
  }
}

// Sons that became sires: 3 and 5; daughters that became dams: 4 and 6, whose dam 99 has no record.
TEST_F(PopulationMeasures, GenerationIntervalsAreThoseOfParents) {
  parameters.data.ignoreparentalpedigreeerrors = true;
  read_animals(
      "1 0 0 1 0 0 0\n2 0 0 2 0 0 0\n3 1 2 1 2 0 0\n4 1 2 2 3 0 0\n5 1 2 1 4 0 0\n"
      "9 3 4 2 6 0 0\n6 3 99 2 7 0 0\n7 5 4 1 8 0 0\n8 5 6 2 9 0 0\n");
  const GenerationIntervals intervals = generation_intervals(pedigree);
  const PathAges expected[] = {{2, 3.0, 1.0}, {2, 4.0, 1.0}, {2, 3.0, 1.0}, {1, 3.0, NAN}};
  for (std::size_t k = 0; k < 4; ++k) {
    EXPECT_EQ(intervals.path[k].n, expected[k].n);
    EXPECT_EQ(intervals.path[k].mean, expected[k].mean);
    EXPECT_TRUE(intervals.path[k].se == expected[k].se || k == 3);
  }
  EXPECT_TRUE(std::isnan(intervals.path[3].se) && std::isnan(intervals.all.se));
  EXPECT_TRUE(intervals.all.n == 7 && intervals.all.mean == 3.25);
  const GenerationIntervals recent = generation_intervals(pedigree, 4);  // 5 and 6
  EXPECT_TRUE(std::isnan(recent.path[3].mean) && recent.path[3].n == 0);
  EXPECT_DOUBLE_EQ(recent.all.mean, (4.0 + 5.0 + 4.0) / 3.0);
  EXPECT_TRUE(std::isnan(generation_intervals(pedigree, 8).all.mean));
}

TEST(RateOfRise, LooksBackThreeIntervalsAndThreeBirthTimes) {
  const std::vector<std::int32_t> times = {1, 2, 3, 5, 9, 10};
  const std::pair<double, std::int32_t> cases[] = {{0.1, 5}, {1.6, 5}, {1.7, 5}, {2.0, 5},
                                                   {2.5, 3}, {100, 1}, {NAN, 1}, {0.0, 1}};
  for (const auto& [interval, since] : cases) EXPECT_EQ(recent_since(times, interval), since);
  EXPECT_EQ(recent_since({4, 7}, 0.5), 4);
}

// Of ln(1 - F): 0, -0.2, -0.1 at 5, 6, 7. Slope -0.05, residuals 0.05, -0.1, 0.05, variance of the
// slope 0.015 / 1 / 2.
TEST(RateOfRise, IsTheSlopeOverAGenerationOrSaysWhyThereIsNone) {
  const auto f = [](double log) { return -std::expm1(log); };
  const RateOfRise rise =
      rate_of_rise({{7, f(-0.1)}, {5, 0.0}, {6, f(-0.2)}, {6, 1.0}, {1, 0.9}}, 0.5);
  EXPECT_NEAR(rise.rate, 1.0 - std::exp(-0.025), 1e-15);
  EXPECT_NEAR(rise.se, 0.5 * std::exp(-0.025) * std::sqrt(0.0075), 1e-15);
  EXPECT_TRUE(rise.n == 3 && rise.first == 5 && rise.last == 7 && rise.why_not.empty());
  const std::vector<Observation> level = {{1, 0.1}, {2, 0.1}, {3, 0.1}};
  const std::vector<Observation> falling = {{1, 0.5}, {2, 0.4}, {3, 0.3}};
  const std::vector<Observation> two = {{1, 0.1}, {2, 0.1}, {2, 0.2}, {3, 1.0}};
  EXPECT_EQ(rate_of_rise(level, 1.0).why_not, "no rise over these birth times");
  EXPECT_EQ(rate_of_rise(falling, 1.0).why_not, "no rise over these birth times");
  EXPECT_LT(rate_of_rise(falling, 1.0).rate, -0.1);
  EXPECT_EQ(rate_of_rise(two, 1.0).why_not, "fewer than three birth times to go by");
  EXPECT_EQ(rate_of_rise({}, NAN).why_not, "fewer than three birth times to go by");
  EXPECT_EQ(rate_of_rise(falling, NAN).why_not, "the generation interval is not known");
}

}  // namespace
}  // namespace qob::test
