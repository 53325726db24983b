#include <algorithm>
#include <random>
#include <vector>

#include "core/random.h"
#include "core/sort.h"
#include "support/run_fixture.h"

namespace qob::test {
namespace {

using Indices = std::vector<std::int32_t>;

// --- random numbers ---

TEST(Random, FollowsTheThreeShiftsFromItsInitialState) {
  Random random;
  for (const std::int32_t expected : {-1456542626, 658813981, -806076459, 775210481, -1592314570})
    EXPECT_EQ(random.shr3(), expected);
  random.zigset(123456789);
  EXPECT_DOUBLE_EQ(random.uni(), 0.1608723064628444);
  EXPECT_DOUBLE_EQ(random.uni(), 0.6533920544846186);
  random.zigset(-5);
  EXPECT_EQ(random.shr3(), 1269910);
}

// --- sorting ---

Indices sorted_indices(const std::vector<double>& keys) {
  const auto n = static_cast<std::int64_t>(keys.size());
  Table<double> key(n, 0.0);
  Table<std::int32_t> index(n, 0);
  std::copy(keys.begin(), keys.end(), key.begin());
  for (std::int64_t k = 1; k <= n; ++k) index(k) = static_cast<std::int32_t>(k);
  quick_sort(key, index, 1, n);
  EXPECT_TRUE(std::is_sorted(key.begin(), key.end()));
  for (std::int64_t k = 1; k <= n; ++k) {
    EXPECT_EQ(key(k), keys[static_cast<std::size_t>(index(k) - 1)]);
  }
  return {index.begin(), index.end()};
}

TEST(QuickSort, AnyKeysAreSorted_AndTheIndicesTravelAlong) {
  std::mt19937 engine(7);
  for (std::size_t n = 0; n <= 200; ++n) {
    std::vector<double> keys(n);
    const int values = n % 2 == 0 ? 5 : 100000;  // with and without many ties
    for (double& key : keys) key = std::uniform_int_distribution(-values, values)(engine);
    Indices indices = sorted_indices(keys);
    std::sort(indices.begin(), indices.end());
    for (std::size_t k = 0; k < n; ++k) ASSERT_EQ(indices[k], static_cast<std::int32_t>(k) + 1);
  }
}

TEST(QuickSort, TheOrderOfTiesIsThatOfTheMethod) {
  EXPECT_EQ(sorted_indices({3, 3, 1, 3, 2, 1}), (Indices{3, 6, 5, 4, 2, 1}));
  EXPECT_EQ(sorted_indices({4, 4, 4, 4, 4, 4, 4}), (Indices{7, 6, 5, 4, 3, 2, 1}));
  EXPECT_EQ(sorted_indices({2, 1, 2, 1, 2, 1, 2, 1}), (Indices{8, 6, 4, 2, 5, 3, 7, 1}));
}

}  // namespace
}  // namespace qob::test
