// The fast evaluation and directed mutation against their plain forms, to the last bit.
#include <cstring>

#include "ocs/selection_fixture.h"
#include "plain/search.h"

namespace qob::test {
namespace {

class SearchKernels : public SelectionTest {
 protected:
  // A herd of many ties: relationships and merits take few values, every third herd has negative
  // relationships, every fourth no ties, some have relationships that no herd has.
  void draw_herd(int problem) {
    data = Stream(static_cast<std::uint32_t>(problem));
    std::vector<int> limits[2];
    for (auto& sex : limits) {
      sex.resize(static_cast<std::size_t>(2 + data.ceiling(40)));
      for (int& limit : sex) limit = data.ceiling(5);
    }
    const int unit = data.ceiling(3);
    set_candidates(limits[0], limits[1], unit * (1 + data.ceiling(8)), unit, problem);
    draw_data(data);
    Candidates& c = model.candidates;
    const double scale = problem % 11 == 0 ? 2e307 : problem % 11 == 1 ? 1e-322 : 1.0;
    const double steps = problem % 4 == 0 ? 1e9 : 4.0;
    for (int i = 1; i <= c.ncands; ++i) {
      c.merit(i) = std::round(c.merit(i) * steps) / steps;
      model.goal.apv2(i) = std::round(model.goal.apv2(i) * steps) / steps;
      for (int j = 1; j <= i; ++j) {
        const double a = data.uni() - (problem % 3 == 0 ? 0.5 : 0.0);
        relate(i, j, scale * ((i == j) + std::round(a * steps) / steps));
      }
    }
    model.rows = RelationshipRows(problem % 2 == 0 ? 4000 : 1 << 20);
    model.parameters.ocs.optimise = problem % 5 == 0  ? "merit"
                                    : problem % 5 < 3 ? "penalty"
                                                      : "constraint";
    model.parameters.algorithm.directed_mutation_probability = problem % 7 == 0 ? 1.0 : data.uni();
  }

  // Every other time with males in slots.
  Rows draw_rows() {
    Rows rows;
    const Candidates& c = model.candidates;
    const int slots = static_cast<int>(male_slots(model));
    const bool in_slots = data.uni() < 0.5;
    for (int j = 0; j < model.parameters.ocs.nmatings; ++j) {
      const int drawn = data.ceiling(c.nmcands);
      const int male =
          in_slots && j >= slots ? rows[static_cast<std::size_t>(j - slots)].first : drawn;
      rows.emplace_back(male, c.nmcands + data.ceiling(c.nfcands));
    }
    return rows;
  }

  // What a change leaves: rows, the next draw and the lines of the log.
  std::string outcome(void (*change)(Model&, Mateset), const Rows& rows) {
    const Mateset view = mateset(rows);
    const Random before = model.random;
    log.clear();
    change(model, view);
    std::string text = log + format_list(model.random.uni());
    for (const auto& [male, female] : rows_of(view)) text += format_list(male, female);
    model.random = before;
    return text;
  }

  Stream data{1};
};

TEST_F(SearchKernels, DirectedMutationMakesTheChoicesOfThePlainForm) {
  int changed = 0;
  for (int problem = 1; problem <= 300; ++problem) {
    draw_herd(problem);
    for (int k = 0; k < 6; ++k) {
      const Rows rows = draw_rows();
      ValueRecord value;
      plain::evaluation(model, mateset(rows), value);
      // At the constraint, above it and below it.
      model.goal.constraint = value.relationship * (k % 3 == 0 ? 1.0 : 0.9 + 0.2 * data.uni());
      model.search.best_value.fitness = value.fitness + 0.1 - 0.2 * data.uni();
      const std::string plain = outcome(plain::directed_mutation, rows);
      ASSERT_EQ(outcome(directed_mutation, rows), plain) << problem;
      changed += plain != outcome([](Model&, Mateset) {}, rows);
      model.random.uni();
    }
  }
  EXPECT_GT(changed, 1000);
}

TEST_F(SearchKernels, EvaluationOfSeveralGivesTheBitsOfOneAfterAnother) {
  int legal = 0;
  for (int problem = 1; problem <= 200; ++problem) {
    draw_herd(problem);
    const std::size_t count = static_cast<std::size_t>(data.ceiling(40));
    std::vector<ValueRecord> plain(count), fast(count);
    std::vector<Rows> rows;
    log.clear();
    for (ValueRecord& value : plain) {
      rows.push_back(draw_rows());
      plain::evaluation(model, mateset(rows.back()), value);
    }
    const std::string plain_log = std::exchange(log, "");
    Evaluations evaluations(model);
    for (std::size_t k = 0; k < count; ++k) evaluations.add(mateset(rows[k]), fast[k]);
    evaluations.finish();
    EXPECT_EQ(log, plain_log);
    for (std::size_t k = 0; k < count; ++k) {
      ASSERT_EQ(fast[k].legal, plain[k].legal);
      legal += plain[k].legal;
      ASSERT_EQ(std::memcmp(&fast[k], &plain[k], offsetof(ValueRecord, legal)), 0) << problem;
    }
  }
  EXPECT_TRUE(legal > 1000 && legal < 3000) << legal;
}

TEST_F(SearchKernels, RelationshipRowsHoldTheMatrix_WhateverIsKept) {
  draw_herd(4);
  const std::int32_t n = model.candidates.ncands;
  RelationshipRows rows(5 * sizeof(double) * static_cast<std::size_t>(n + 1));
  for (int call = 0; call < 60000; ++call) {
    const std::int32_t wanted[] = {data.ceiling(call < 30000 ? n : 3), n};
    const double* row[2];
    const auto keep = static_cast<RelationshipRows::Keep>(call % 3);
    rows.read(model.relationship, model.candidates, {wanted, wanted[0] == n ? 1UL : 2UL}, keep,
              row);
    const std::int32_t k = data.ceiling(n);
    if (row[0] != nullptr) {
      ASSERT_EQ(row[0][k], rel(wanted[0], k));
    } else {
      ASSERT_EQ(keep, RelationshipRows::Keep::kOften);
      ASSERT_EQ(rows.element(model.relationship, wanted[0], k), rel(wanted[0], k));
    }
    ASSERT_EQ(rows.own()[k], rel(k, k));
  }
}

}  // namespace
}  // namespace qob::test
