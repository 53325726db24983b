// What a report tells of a population, worked out by hand.
#include "report/population.h"

#include <cmath>

#include "support/run_fixture.h"

namespace qob::test {
namespace {

// F in brackets; 99 has no record; 3 is the candidate.
//
//   1 x 2                         2000
//   3   4         from 1 x 2      2001
//   5 [.25]       from 3 x 4      2002
//   6             from 3 x 99     2002    its relationship to 5 is 0.375
//   7 [.1875]     from 5 x 6      2003
constexpr const char* kHerd =
    "1 0 0 1 2000 0 0\n2 0 0 2 2000 0 0\n3 1 2 1 2001 4 0\n4 1 2 2 2001 0 0\n5 3 4 1 2002 0 0\n"
    "6 3 99 2 2002 0 0\n7 5 6 2 2003 0 0\n";

class PopulationTest : public RunTest {
 protected:
  // chosen: 3.
  PopulationMeasures measure(const char* herd, std::int32_t living_since) {
    parameters.data.ignoreparentalpedigreeerrors = true;
    read_animals(herd);
    const AnimalStatistics statistics = animal_statistics(pedigree.newped, pedigree.btime, 1);
    Table<char> living(pedigree.maxid, 0), chosen(pedigree.maxid, 0);
    for (std::int32_t i = 1; i <= pedigree.maxid; ++i) {
      living(i) = pedigree.btime(i) >= living_since;
      chosen(i) = pedigree.oldped(i, 1) == 3;
    }
    return measure_population({pedigree, statistics, living, chosen,
                               [&](std::int32_t i) { return pedigree.oldped(i, 1); }});
  }
};

TEST_F(PopulationTest, IsToldByBirthTime) {
  const ReportedPopulation told = measure(kHerd, 2002).reported;
  ASSERT_EQ(told.trend.size(), 4U);
  const TrendRow& row = told.trend[2];
  EXPECT_TRUE(row.birth_time == 2002 && row.birth == "2002" && row.animals == 2);
  EXPECT_TRUE(row.males == 1 && row.females == 1 && row.sires == 1 && row.dams == 2);
  EXPECT_TRUE(row.inbred == 1 && row.mean_f == 0.125 && row.max_f == 0.25);
  EXPECT_DOUBLE_EQ(row.coancestry, 0.1875);
  EXPECT_TRUE(row.completeness == 0.5 && row.generations == 1.75 && row.interval == 1.0);
  EXPECT_TRUE(std::isnan(told.trend[3].coancestry) && std::isnan(told.trend[0].interval));
  EXPECT_TRUE(told.interval == 1.0 && told.recent_since == 2000 && told.intervals[4].n == 7);
  // Coancestry 0, 0.25, 0.1875: the slope of three is half the way from the first to the last, and
  // its error 0.1061.
  const double rate = 1.0 - std::sqrt(0.8125);
  EXPECT_DOUBLE_EQ(told.by_coancestry.rate, rate);
  EXPECT_DOUBLE_EQ(told.by_coancestry.ne, 0.5 / rate);
  EXPECT_NEAR(told.by_coancestry.rate_se, std::sqrt(0.8125) * 0.1061, 1e-4);
  EXPECT_DOUBLE_EQ(told.by_coancestry.ne_low, 0.5 / (rate + told.by_coancestry.rate_se));
  EXPECT_NEAR(told.by_coancestry.ne_high, 0.5 / (rate - told.by_coancestry.rate_se), 1e-9);
  EXPECT_TRUE(told.by_inbreeding.n == 7 && told.by_inbreeding.last == 2003);
}

TEST_F(PopulationTest, IsToldByAgeFamilyAndFounder) {
  const PopulationMeasures population = measure(kHerd, 2002);
  const ReportedPopulation& told = population.reported;
  EXPECT_TRUE(told.animals == 8 && told.founders == 3 && told.living == 3);
  EXPECT_TRUE(told.max_f == 0.25 && told.mean_f == 0.4375 / 8);
  ASSERT_EQ(told.ages.size(), 3U);
  EXPECT_TRUE(told.ages[0].birth_time == 2003 && told.ages[0].females == 1);
  EXPECT_TRUE(told.ages[1].males == 1 && told.ages[1].females == 1);
  EXPECT_TRUE(told.ages[2].males == 0 && told.ages[2].candidate_males == 1);
  EXPECT_EQ(told.ages[2].chosen_males, 1);
  ASSERT_EQ(told.families.size(), 2U);
  EXPECT_TRUE(told.families[0].sires == 1 && told.families[0].dams == 3);
  EXPECT_TRUE(told.families[1].offspring == 2 && told.families[1].sires == 2);
  ASSERT_EQ(told.founders_ranked.size(), 3U);
  EXPECT_TRUE(told.founders_ranked[2].animal == 99 && told.founders_ranked[2].contribution == 0.25);
  EXPECT_DOUBLE_EQ(told.founders_cumulative[2], 1.0);
  const double so_far[] = {0.375, 0.375, 0.5, 0.25, 0.5, 0.25, 0.5, 0.0};  // 99 is the sixth
  for (int i = 1; i <= 8; ++i) EXPECT_EQ(population.contribution_so_far(i), so_far[i - 1]) << i;
  EXPECT_EQ(population.complete_generations(8), 2.75);
}

TEST_F(PopulationTest, IsToldWithoutTheLivingOrTheirPast) {
  const ReportedPopulation none_lives = measure(kHerd, 3000).reported;
  EXPECT_TRUE(none_lives.living == 0 && none_lives.founders_ranked.empty());
  EXPECT_TRUE(std::isnan(none_lives.founder_equivalents) && std::isnan(none_lives.mean_kinship));
  EXPECT_EQ(none_lives.ages.size(), 1U);
  const ReportedPopulation founders = measure("1 0 0 1 5 0 0\n2 0 0 2 5 0 0\n", 5).reported;
  EXPECT_TRUE(founders.founder_equivalents == 2.0 && founders.mean_kinship == 0.25);
  EXPECT_TRUE(std::isnan(founders.interval) && founders.recent_since == 5);
  EXPECT_EQ(founders.by_inbreeding.why_not, "fewer than three birth times to go by");
  EXPECT_TRUE(founders.families.empty() && founders.trend[0].coancestry == 0.0);
}

}  // namespace
}  // namespace qob::test
