// A last birth time is unfinished if it has less than half of the animals that are usual.
#include "analysis/last_birth_time.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <utility>

#include "pedigree/pedigree.h"

namespace qob::test {
namespace {

// counts: birth times with their animals, in any order.
LastBirthTime last_of(std::initializer_list<std::pair<std::int32_t, std::int64_t>> counts) {
  std::int64_t n = 0;
  for (const auto& count : counts) n += count.second;
  Table<std::int32_t> btime(n);
  for (const auto& [time, animals] : counts) {
    for (std::int64_t k = 0; k < animals; ++k) btime(n--) = time;
  }
  return last_birth_time(btime);
}

TEST(LastBirthTime, IsMeasuredByTheMedianOfTheFiveBeforeIt) {
  const LastBirthTime last =
      last_of({{2007, 90}, {2005, 10}, {2009, 4}, {2008, 12}, {2004, 8}, {2006, 9}, {2003, 1}});
  EXPECT_EQ(last.birth_time, 2009);
  EXPECT_EQ(last.animals, 4);
  EXPECT_EQ(last.usual, 10);
  EXPECT_TRUE(last.is_unfinished());
  EXPECT_FALSE(last_of({{2007, 10}, {2008, 10}, {2009, 5}}).is_unfinished());
}

TEST(LastBirthTime, IsNotJudgedWithoutTwoKnownTimesBeforeIt) {
  EXPECT_FALSE(last_of({{2008, 100}, {2009, 1}, {kNoBirthTime, 100}}).is_unfinished());
  EXPECT_EQ(last_of({{kNoBirthTime, 3}}).animals, 0);
}

}  // namespace
}  // namespace qob::test
