#include "pedigree/idtree.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

namespace qob::test {
namespace {

// Keys of both signs, many of them twice or alike but for one bit, against a map. 0 is there from
// the start.
TEST(IdTree, NumbersFollowTheOrderOfFirstAppearance) {
  std::mt19937 rng(1);
  IdTree tree;
  std::map<std::int32_t, std::int32_t> expected{{0, 0}};
  std::int32_t counter = 0;
  for (std::uint32_t base = 0x80000000U; expected.size() < 5000;
       base = static_cast<std::uint32_t>(rng())) {
    for (const std::uint32_t key : {base, base % 50, base ^ (1U << (rng() % 32)), ~base, base}) {
      const auto id = static_cast<std::int32_t>(key);
      const auto next = static_cast<std::int32_t>(expected.size());
      const auto [at, is_new] = expected.try_emplace(id, next);
      const IdTree::Found found = tree.build_tree(id, counter);
      ASSERT_EQ(found.in_tree, !is_new);
      ASSERT_EQ(found.number, at->second);
      ASSERT_EQ(counter, next - 1 + is_new);
    }
  }
  for (const auto& [id, number] : expected) {
    for (const auto guess : {0, number, number + 1, -1})
      ASSERT_EQ(tree.find(id, guess).number, number);
  }
  EXPECT_FALSE(tree.find(51).in_tree);
}

}  // namespace
}  // namespace qob::test
