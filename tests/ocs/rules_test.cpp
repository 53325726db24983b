// Files of rules, locked entries, and pairings against all pairings of small plans.
#include <gtest/gtest.h>

#include <functional>
#include <numeric>

#include "ocs/base_population.h"
#include "ocs/rules/pairing.h"
#include "ocs/rules/set_up_rules.h"
#include "ocs/selection_fixture.h"

namespace qob::test {
namespace {

std::string read(const std::string& text) {
  std::string told;
  const RulesFile file = rules_of(text);
  for (const Rule& rule : file.rules) told += std::to_string(rule.line) + " " + rule.text() + "\n";
  for (const RuleFault& fault : file.faults)
    told += std::to_string(fault.line) + ": " + fault.text + "\n";
  return told;
}

TEST(RulesFile, IsReadAsSpreadsheetsWriteIt) {
  EXPECT_EQ(read("\xEF\xBB\xBFKind;A;B;Value\r\n\r\nMAX-F;;;0,0625\r\nmin; 7 ;;2;\r\n"),
            "3 max-f,,,0.0625\n4 min,7,,2\n");
  EXPECT_EQ(read("\"kind\"\ta\tb\tvalue\ngroup\t7\t\"a \"\"b\"\",c\"\t"),
            "2 group,7,\"a \"\"b\"\",c\",\n");
  EXPECT_EQ(read("kind,a,b,value\ngroup,7,St\xE4lle,"), "2 group,7,St\xC3\xA4lle,\n");
}

TEST(RulesFile, TellsAllThatIsWrong) {
  EXPECT_EQ(read(""), "1: the file is empty : expected the header kind,a,b,value\n");
  EXPECT_EQ(read("rule,a,b,value\n"), "1: expected the header kind,a,b,value\n");
  EXPECT_EQ(
      read("kind,a,b,value\nmost,7,,2\nfix,7,,0\nmax,7,8,-1\nmax-f,,,1.5\nforbid,\"7,8,\n"
           "max,7,,2,more\nmax-pair,,,2147483648\nmin,7,,1e3\n"),
      "2: kind is \"most\" : expected one of fix, min, max, forbid, group, forbid-groups, "
      "max-pair, max-per-group, max-f\n"
      "3: b is \"\" : expected a dam\n"
      "3: value is \"0\" : expected a number of matings, 1 or more\n"
      "4: b is \"8\" : expected nothing\n"
      "4: value is \"-1\" : expected a number of matings, 0 or more\n"
      "5: value is \"1.5\" : expected an inbreeding coefficient, 0 to 1, with a decimal point\n"
      "6: quotation marks within a cell, or not closed on its line\n"
      "7: more than four cells : expected kind,a,b,value\n"
      "8: value is \"2147483648\" : expected a number of matings, 1 or more\n"
      "9: value is \"1e3\" : expected a number of matings, 0 or more\n");
}

class RulesTest : public SelectionTest {
 protected:
  void rule(RuleKind kind, int a, int b, int n, double f = 0.0) {
    PlanRules& rules = selection.rules;
    rules.file = "rules";
    rules.set.groups_of.assign(candidates.ncands, {});
    for (int i = 1; i <= candidates.ncands; ++i) rules.set.groups_of(i) = {1 + i % 2};
    rules.set.groups = {"even", "odd"};
    rules.set.rules.push_back({{kind, "", "", n, f, 0}, a, b});
  }
  LeastBroken apply() {
    selection.rules.decided = decided_matings(selection.rules.set, selection.nmatings);
    return apply_rules(false, relationship, selection);
  }
  bool keeps_all(const std::vector<Pair>& matings) {
    const auto broken = breaches(selection.rules.set, candidates, relationship, matings);
    return std::accumulate(broken.begin(), broken.end(), std::int64_t{0}) == 0;
  }
  void expect_locked(Mateset view) {
    const std::vector<std::int32_t> before(&view.entry(1), &view.entry(1) + 2 * view.nmatings());
    selection.lock(view);
    EXPECT_EQ(before, std::vector(&view.entry(1), &view.entry(1) + 2 * view.nmatings()));
  }
};

// Slots of two rows; two decided matings, a male and a female that must be used.
TEST_F(RulesTest, OperatorsLeaveLockedEntriesAsTheyAre) {
  for (int seed = 1; seed <= 20; ++seed) {
    selection.rules = {};
    set_candidates({4, 5, 6, 4}, {2, 2, 3, 2, 2, 2}, 10, 2, seed);
    Stream data(static_cast<std::uint32_t>(seed));
    draw_data(data);
    rule(RuleKind::kFix, 1, 5, 2);
    rule(RuleKind::kMin, 2, 0, 1);
    rule(RuleKind::kMin, 6, 0, 2);
    rule(RuleKind::kMax, 7, 0, 1);
    ASSERT_EQ(apply().known, Known::kBest);
    MatesetTable table;
    table.assign(3, 10);
    Population population;
    population.pop.assign(6, 10);
    population.pop_value.assign(6, MatesetValue{});
    base_population(selection, "_null_", population, random, tools().evaluator, run.journal);
    for (int turn = 0; turn < 40; ++turn) {
      const Mateset a = population.pop(1 + turn % 6), b = population.pop(1 + (turn + 1) % 6);
      recombine(a, b, table(1), 0.3);
      mutate(selection, 0.5, table(1), random, run.journal.watches);
      directed_mutation(table(1), 0.5);
      repair_mateset(table(1));
      expect_locked(table(1));
      const Uses uses = uses_of(candidates, table(1));
      EXPECT_LE(uses(7), 1);
      EXPECT_GE(uses(2), 2);
      EXPECT_GE(uses(6), 2);
      b.copy_from(table(1));
    }
  }
}

// All ways to give the males of the rows their females.
TEST_F(RulesTest, PairingsAreTheLeastInbredOfAllThatRulesPermit) {
  int permitted = 0;
  for (int seed = 1; seed <= 300; ++seed) {
    Stream data(static_cast<std::uint32_t>(seed));
    selection.rules = {};
    set_candidates({9, 9, 9}, {9, 9, 9, 9}, 6, 1, seed);
    draw_data(data);
    Rows rows;
    for (int j = 0; j < 6; ++j) rows.emplace_back(data.ceiling(3), 3 + data.ceiling(4));
    if (seed % 2 == 0) rule(RuleKind::kFix, rows[5].first, rows[5].second, 1);
    rule(RuleKind::kForbid, data.ceiling(3), 3 + data.ceiling(4), 0);
    if (seed % 3 != 0) rule(RuleKind::kMaxPair, 0, 0, data.ceiling(2));
    if (seed % 5 != 0) rule(RuleKind::kMaxPerGroup, data.ceiling(4) - 1, data.ceiling(3) - 1, 1);
    rule(RuleKind::kMaxF, 0, 0, 0, 0.2 + 0.1 * data.uni());
    apply();
    if (!keeps_all(selection.rules.decided)) continue;  // a fault of the rules
    const bool repeats = data.uni() < 0.5;
    const auto cost = [&](const Rows& pairs) {
      double sum = 0.0;
      std::map<std::pair<int, int>, int> times;
      for (const auto& [m, f] : pairs)
        sum += 0.5 * rel(m, f) + (times[{m, f}]++ > 0 && !repeats ? 2.0 : 0.0);
      return sum;
    };
    const int free = seed % 2 == 0 ? 5 : 6;
    std::vector<int> order(static_cast<std::size_t>(free));
    std::iota(order.begin(), order.end(), 0);
    double least = 1e9;
    do {
      Rows pairs = rows;
      for (int j = 0; j < free; ++j)
        pairs[static_cast<std::size_t>(j)].second =
            rows[static_cast<std::size_t>(order[static_cast<std::size_t>(j)])].second;
      if (keeps_all({pairs.begin(), pairs.end()})) least = std::min(least, cost(pairs));
    } while (std::next_permutation(order.begin(), order.end()));
    const Mateset view = mateset(rows);
    const std::vector<Pair> found = least_inbred_pairs(selection, relationship, repeats, view);
    EXPECT_EQ(can_be_paired(selection, view), least < 1e9) << seed;
    EXPECT_EQ(random_pairs(selection, view, random).empty(), least == 1e9) << seed;
    ASSERT_EQ(found.empty(), least == 1e9) << seed;
    if (found.empty()) continue;
    ++permitted;
    EXPECT_NEAR(cost({found.begin(), found.end()}), least, 1e-10) << seed;
    enter_pairs(selection, random_pairs(selection, view, random), view);
    EXPECT_TRUE(keeps_all(pairs_of(view))) << seed;
    EXPECT_EQ(uses_of(candidates, view)(4), uses_of(candidates, mateset(rows))(4));
  }
  EXPECT_GT(permitted, 60);
  EXPECT_LT(permitted, 280);
}

}  // namespace
}  // namespace qob::test
