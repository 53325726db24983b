// The fast evaluation and directed mutation against their plain forms, to the last bit.
#include <cstring>

#include "ocs/selection_fixture.h"
#include "plain/search.h"

namespace qob::test {
namespace {

class SearchKernels : public SelectionTest {
 protected:
  // A herd of many ties: relationships and merits take few values, every third herd has negative
  // relationships, every fourth no ties, some have relationships that no herd has, or one that is
  // no 32-bit integer beside others that are.
  void draw_herd(int problem) {
    data = Stream(static_cast<std::uint32_t>(problem));
    std::vector<int> limits[2];
    for (auto& sex : limits) {
      sex.resize(static_cast<std::size_t>(2 + data.ceiling(40)));
      for (int& limit : sex) limit = data.ceiling(5);
    }
    const int slot_rows = data.ceiling(3);
    set_candidates(limits[0], limits[1], slot_rows * (1 + data.ceiling(8)), slot_rows, problem);
    draw_data(data);
    Candidates& c = candidates;
    const double scale = problem % 11 == 0 ? 2e307 : problem % 11 == 1 ? 1e-322 : 1.0;
    const double steps = problem % 4 == 0 ? 1e9 : 4.0;
    for (int i = 1; i <= c.ncands; ++i) {
      c.merit(i) = std::round(c.merit(i) * steps) / steps;
      goal.apv2(i) = std::round(goal.apv2(i) * steps) / steps;
      for (int j = 1; j <= i; ++j) {
        const double a = data.uni() - (problem % 3 == 0 ? 0.5 : 0.0);
        relate(i, j, scale * ((i == j) + std::round(a * steps) / steps));
      }
    }
    if (problem % 6 == 5) make_alike();
    const double odd[] = {0x1p-29, 0x1p-30, 1.0 + 0x1p-30, -0.0, 4.0, 0.1};
    if (problem % 7 == 3) relate(c.ncands, data.ceiling(c.ncands - 1), odd[problem % 6]);
    if (problem % 13 == 0) goal.vpapv = 1e6;
    objective.criterion = problem % 5 == 0  ? Criterion::kMerit
                          : problem % 5 < 3 ? Criterion::kPenalty
                                            : Criterion::kConstraint;
    tools().caches.rows = RowCache(relationship, c, problem % 2 == 0 ? 4000 : 1 << 20);
    probability = problem % 7 == 0 ? 1.0 : data.uni();
  }

  // Families of which nothing tells the members apart, one of them without relatives, and some
  // that are related to single ones.
  void make_alike() {
    for (int i = 1; i <= candidates.ncands; ++i) {
      candidates.merit(i) = goal.apv2(i) = 1.0;
      for (int j = 1; j <= i; ++j) {
        const int family = i % 4 == j % 4 ? i % 4 : 0;
        relate(i, j, i == j ? 1.1 : i % 9 == 0 && j % 3 == 1 ? 0.7 : 0.1 * family);
      }
    }
  }

  // Every other time with males in slots.
  Rows draw_rows() {
    Rows rows;
    const Candidates& c = candidates;
    const int slots = static_cast<int>(selection.male_slots());
    const bool in_slots = data.uni() < 0.5;
    for (int j = 0; j < selection.nmatings; ++j) {
      const int drawn = data.ceiling(c.nmcands);
      const int male =
          in_slots && j >= slots ? rows[static_cast<std::size_t>(j - slots)].first : drawn;
      rows.emplace_back(male, c.nmcands + data.ceiling(c.nfcands));
    }
    return rows;
  }

  // What a change leaves: rows, the next draw and the lines of the log.
  std::string outcome(auto change, const Rows& rows) {
    const Mateset view = mateset(rows);
    const Random before = random;
    log.clear();
    change(view);
    std::string text = log + format_list(random.uni());
    for (const auto& [male, female] : rows_of(view)) text += format_list(male, female);
    random = before;
    return text;
  }
  void evaluate_plainly(const Rows& rows, MatesetValue& value) {
    plain::evaluation(tools().problem, tools().evaluator, mateset(rows), value);
  }

  double probability = 1.0;  // of directed mutation

  Stream data{1};
};

TEST_F(SearchKernels, DirectedMutationMakesTheChoicesOfThePlainForm) {
  int changed = 0;
  for (int problem = 1; problem <= 300; ++problem) {
    draw_herd(problem);
    for (int k = 0; k < 6; ++k) {
      const Rows rows = draw_rows();
      MatesetValue value;
      evaluate_plainly(rows, value);
      // At the constraint, above it and below it.
      objective.constraint = value.relationship * (k % 3 == 0 ? 1.0 : 0.9 + 0.2 * data.uni());
      standing.best_value.fitness = value.fitness + 0.1 - 0.2 * data.uni();
      Tools& t = tools();
      const auto plainly = [&](Mateset view) {
        plain::directed_mutation(t.problem, probability, view, random, t.evaluator);
      };
      const std::string plain = outcome(plainly, rows);
      ASSERT_EQ(outcome([&](Mateset view) { directed_mutation(view, probability); }, rows), plain)
          << problem;
      changed += plain != outcome([](Mateset) {}, rows);
      random.uni();
    }
  }
  EXPECT_GT(changed, 1000);
}

TEST_F(SearchKernels, EvaluationOfSeveralGivesTheBitsOfOneAfterAnother) {
  int legal = 0;
  for (int problem = 1; problem <= 200; ++problem) {
    draw_herd(problem);
    const std::size_t count = static_cast<std::size_t>(data.ceiling(40));
    std::vector<MatesetValue> plain(count), fast(count);
    std::vector<Rows> rows;
    log.clear();
    for (MatesetValue& value : plain) {
      rows.push_back(draw_rows());
      evaluate_plainly(rows.back(), value);
    }
    const std::string plain_log = std::exchange(log, "");
    Evaluator& evaluator = tools().evaluator;
    for (std::size_t k = 0; k < count; ++k) evaluator.add(mateset(rows[k]), fast[k]);
    evaluator.finish();
    EXPECT_EQ(log, plain_log);
    for (std::size_t k = 0; k < count; ++k) {
      ASSERT_EQ(fast[k].legal, plain[k].legal);
      legal += plain[k].legal;
      ASSERT_EQ(std::memcmp(&fast[k], &plain[k], offsetof(MatesetValue, legal)), 0) << problem;
    }
  }
  EXPECT_TRUE(legal > 1000 && legal < 3000) << legal;
}

TEST_F(SearchKernels, RowsHoldTheMatrix_WhateverIsKept) {
  for (const double odd :
       {0.25, 0x1p-30}) {  // with the second, doubles take the place of integers half way
    draw_herd(6);
    relate(3, 2, odd);
    const std::int32_t n = candidates.ncands;
    RowCache rows(relationship, candidates, 5 * sizeof(double) * static_cast<std::size_t>(n + 1));
    ASSERT_TRUE(rows.is_fixed());
    int kept = 0;
    for (int call = 0; call < 60000; ++call) {
      const std::int32_t wanted[] = {data.ceiling(call < 30000 ? n : 3), n};
      const std::size_t count = wanted[0] == n ? 1 : 2;
      const std::int32_t k = data.ceiling(n);
      if (call % 3 == 0) {
        rows.prepare(std::vector<RowCache::Want>{{wanted[0], 2}});
        const KeptRow row = rows.find(wanted[0]);
        kept += row.is_kept();
        const double a = row.fixed != nullptr  ? KeptRow::kUnit * row.fixed[k]
                         : row.real != nullptr ? row.real[k]
                                               : rows.element(wanted[0], k);
        ASSERT_EQ(a, rel(wanted[0], k));
        continue;
      }
      const double* row[2];
      rows.read({wanted, count}, static_cast<RowCache::Keep>(call % 3 - 1), row);
      for (std::size_t b = 0; b < count; ++b) ASSERT_EQ(row[b][k], rel(wanted[b], k));
      ASSERT_EQ(rows.own()[k], rel(k, k));
    }
    EXPECT_EQ(rows.is_fixed(), odd == 0.25);
    EXPECT_TRUE(kept > 5000 && kept < 19000) << kept;
  }
}

}  // namespace
}  // namespace qob::test
