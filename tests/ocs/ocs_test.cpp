// What whole runs on real herds do not show: reports worked out by hand, and rare paths.
#include "analysis/qobrelshipmatrix.h"
#include "mating/qobmate.h"
#include "ocs/selection_fixture.h"

namespace qob::test {
namespace {

class OcsReports : public SelectionTest {
 protected:
  // One solution, that by merit, and no generation.
  void select(const char* table, int nmatings) {
    read_animals(table);
    open_parameters("&RelationshipMatrix /");
    relationship = *setup_nrm(run, pedigree);
    parameters.ocs.nmatings = nmatings;
    parameters.algorithm.popsize = 1;
    parameters.algorithm.generations = -1;
    initialize_qob(run);
    selection = set_up_selection(run, std::move(pedigree), relationship);
    plan = ocs(run, selection, relationship);
  }
  Plan plan;
};

// 1 M, 2 F; 3 M and 4 F are 1 x 2.
constexpr const char* kSibs =
    "1 0 0 1 1 2 4 Ace\n2 0 0 2 1 1 1 Bea\n3 1 2 1 2 1 1\n4 1 2 2 2 2 3 Dot\n";

// Contributions of 1/3, 1/6, 1/6, 1/3 use every mating: c'Ac = 10/36 + 11/36. The last generation's
// average relationship is that of its parents, 0.5.
TEST_F(OcsReports, StatisticsAndConstraintAreThoseWorkedOutByHand) {
  parameters.ocs.optimise = "constraint";
  parameters.ocs.dfconstraint = 0.01;
  select(kSibs, 3);
  EXPECT_DOUBLE_EQ(objective_of(parameters.ocs, goal).constraint, 0.5 + 1.5 * 0.01);
  EXPECT_DOUBLE_EQ(goal.expmerit, 0.5 * (3.0 / 2.0 + 7.0 / 4.0));
  for (
      const char* line :
      {"   Males    2   2.500  +/-2.12           3   0.00000\n",
       "     Males   0.750000   0.375000       0.500000   0.375000\n",
       "     Males   0.777778   0.388889       0.500000   0.388889\n",
       "           Males   0.000   0.177        \n         Females   0.177   0.000        \n",
       "             All                   0.096\n", "  Merit of males   0.000  -1.000        \n",
       "Merit of females   1.000   0.000        \n    Merit of all                  -0.192\n",
       "                    Mean merit : 2.66667    \n                    Inbreeding :    0.194444\n",
       " Avg. relationship(generation) :    0.583333\n\n     Observed last time step :     2\n",
       "\n WARNING : A solution fulfilling the constraint on rate of inbreeding could not be found\n",
       " Optimisation criterion constrains expected rate of inbreeding\n   --- Optimisation could not",
       " Evaluation value        :-68.3333    \n Average breeding value  : 2.66667    \n",
       " Males used            :       2 used, with     1.50 +/-     0.71 matings\n",
       " Rate of  inbreeding     :     0.05556\n"}) {
    EXPECT_NE(summary.find(line), std::string::npos) << line << "\nis not in\n" << summary;
  }
}

// Candidates 1 to 4 are the animals 1, 3, 2, 4.
TEST_F(OcsReports, MatingListCountsTheLinesOfADam_WhoeverTheSire) {
  parameters.data.resultsdirectory = folder / "";
  select(kSibs, 3);
  plan.best().copy_from(mateset({{2, 4}, {1, 3}, {1, 4}}));
  mating(run, selection, relationship, plan);
  const std::string list = folder.read("qob_MatingList.txt");
  EXPECT_EQ(
      list.substr(list.find('\n') + 1),
      R"(           1           2       1       1       1    2.500      0.00000  0.50000    Ace             Bea            
           1           4       2       2       1    3.500      0.25000  0.50000    Ace             Dot            
           3           4       3       1       2    2.000      0.25000  0.50000    .               Dot            
)");
}

TEST_F(OcsReports, OneMaleHasNoSpread) {
  select("1 0 0 1 1 2 4\n2 0 0 2 1 1 1\n3 0 0 2 1 1 2\n", 2);
  EXPECT_NE(summary.find("   Males    1   4.000  +/-0.00 "), std::string::npos) << summary;
  EXPECT_EQ(summary.find("nan"), std::string::npos) << summary;
  EXPECT_EQ(summary.find("NaN"), std::string::npos) << summary;
}

// Both rows of both parents hold female 2, who may have one mating.
TEST_F(SelectionTest, Recombine_RepairsWhatItCompletes) {
  set_candidates({9}, {1, 3}, 2);
  const Mateset parent = mateset({{1, 2}, {1, 2}}), child = mateset(Rows(2));
  recombine(parent, parent, child, 0.5);
  EXPECT_EQ(child.female(1) + child.female(2), 2 + 3);
}

}  // namespace
}  // namespace qob::test
