// The relationships over all candidates against the plain forms, bit by bit.
#include "ocs/kernels/means_by_sex.h"
#include "ocs/selection_fixture.h"
#include "plain/mating_lists.h"
#include "plain/selection_report.h"

namespace qob::test {
// Every third row of the matrix is a male's while there are any; row `vacant` has no candidate.
TEST_F(SelectionTest, RelationshipsOfAllCandidatesAreThoseOfThePlainForms) {
  const int cases[][4] = {{1, 1, 3, 3}, {1, 15, 17, 9}, {7, 10, 5, 9}, {20, 45, 40, 2000000000}};
  for (const auto& [males, females, vacant, largest] : cases) {
    Stream draw(static_cast<std::uint32_t>(males));
    set_candidates(std::vector<int>(std::size_t(males)), std::vector<int>(std::size_t(females)), 1);
    Candidates& c = candidates;
    for (int i = 1, m = 0, f = males; i <= c.ncands; ++i) {
      c.cands(m < males && (i % 3 == 0 || f == c.ncands) ? ++m : ++f) = i;
      c.max_matings(i) = draw.ceiling(largest);
      relationship.nrm_id(i) = i < vacant ? i : i + 1;
    }
    relationship.nrm.assign((c.ncands + 1) * (c.ncands + 2) / 2, 0.0);
    for (double& a : relationship.nrm) a = 1.5 * draw.uni() - 0.3;
    Rows rows(37);
    for (auto& [m, f] : rows) m = draw.ceiling(males), f = males + draw.ceiling(females);
    const auto fast = means_by_sex(relationship, c);
    const auto plain = plain::relationships_of(relationship, c);
    const double(*cells[])[2] = {fast.plain.with_own, fast.plain.without_own,
                                 fast.weighted.with_own, fast.weighted.without_own};
    for (int k = 0; k < 16; ++k)
      EXPECT_EQ(cells[k / 4][k / 2 % 2][k % 2], plain.sexes[k / 4][k / 2 % 2][k % 2].value()) << k;
    const Table<ListColumns> averages = list_columns(relationship, c, mateset(rows));
    for (int i = 1; i <= c.ncands; ++i) {
      EXPECT_EQ(averages(i), plain::averages_of(relationship, c, mateset(rows), i)) << i;
      for (int s : {0, 1, 2}) EXPECT_EQ(fast.to_others[s](i), plain.to_others[s](i)) << i;
    }
  }
}
}  // namespace qob::test
