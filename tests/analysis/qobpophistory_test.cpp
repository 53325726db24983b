#include "analysis/qobpophistory.h"

#include <algorithm>
#include <sstream>

#include "support/run_fixture.h"

namespace qob::test {
namespace {

// The animals in their order, F in brackets; 99 has no record, 20 no relative.
//
//   11 x 12             2000
//   13 14               2003 from 11 x 12
//   15 [.25]            2006 from 13 x 14
//   99, 16              2006 from 13 x 99
//   17 [.375]           2008 from 13 x 15
//   18 [.125]           2008 from 16 x 14
//   21 22 [.265625]     2010 from 17 x 18
//   19                  2007 from  ? x 15
//   20                  2007
const std::string kHerd =
    "11 0 0 1 2000 0 0 a\n12 0 0 2 2000 0 0 b\n13 11 12 1 2003 0 0 thirteen\n14 11 12 2 2003 0 0\n"
    "15 13 14 2 2006 0 0\n16 13 99 1 2006 0 0\n17 13 15 1 2008 0 0 seventeen\n18 16 14 2 2008 0 0\n"
    "21 17 18 1 2010 0 0\n22 17 18 2 2010 0 0\n19 0 15 2 2007 0 0 c\n20 0 0 1 2007 0 0 d\n";

bool has(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

class PopHistory : public RunTest {
 protected:
  void analyse(const std::string& table, const std::string& groups) {
    log.clear();
    parameters.data.ignoreparentalpedigreeerrors = true;
    parameters.data.resultsdirectory = folder / "r_";
    read_animals(table);
    open_parameters(groups);
    pophistory(run, pedigree);
  }
  // A result file without its remarks and blank lines.
  std::string table(const char* name) const {
    std::istringstream file(folder.read(name));
    std::string lines;
    for (std::string line; std::getline(file, line);) {
      if (!line.starts_with(" #") && !trim(line).empty()) lines += line + "\n";
    }
    return lines;
  }
};

TEST_F(PopHistory, ListsCoefficientsAndGroupsInOrderOfAppearance) {
  analyse(kHerd, "&PopulationHistory pci_ngen=3 /");
  std::string coefficients = table("r_f_coeff.txt");
  coefficients.erase(73, 4 * 73);  // animals 11 to 14
  EXPECT_EQ(coefficients,
            "      Animal        Sire         Dam Sex   Group       F     GEN    PCI3\n"
            "          15          13          14   2    2006  0.2500  3.0000  0.3333\n"
            "          99           0           0   0   -9999  0.0000  1.0000  0.0000\n"
            "          16          13          99   1    2006  0.0000  2.5000  0.0000\n"
            "          17          13          15   1    2008  0.3750  3.5000  0.4444\n"
            "          18          16          14   2    2008  0.1250  3.2500  0.4000\n"
            "          21          17          18   1    2010  0.2656  4.3750  0.7895\n"
            "          22          17          18   2    2010  0.2656  4.3750  0.7895\n"
            "          19           0          15   2    2007  0.0000  2.5000  0.0000\n"
            "          20           0           0   1    2007  0.0000  1.0000  0.0000\n");
  const std::string groups =
      "   Group       N N.inbred      avg.F   max.F avg.coa   exp.F   alpha    PCI3 Gencoef  GenInt\n"
      "    2000       2       0      0.0000  0.0000  0.2500  0.0000  0.0000  0.0000    1.00    0.00\n"
      "    2003       2       0      0.0000  0.0000  0.3750  0.0000  0.0000  0.0000    2.00    3.00\n"
      "    2006       2       1      0.1250  0.2500  0.3750  0.1250  0.0000  0.1667    2.75    2.25\n"
      "   -9999       1       0      0.0000  0.0000  0.5000  0.0000  0.0000  0.0000    1.00    0.00\n"
      "    2008       2       2      0.2500  0.3750  0.4453  0.2344  0.0204  0.4222    3.38    3.50\n"
      "    2010       2       2      0.2656  0.2656  0.5391  0.2656  0.0000  0.7895    4.38    2.00\n"
      "    2007       2       0      0.0000  0.0000  0.2500  0.0000  0.0000  0.0000    1.75    0.50\n"
      "     ALL      13       5      0.0986  0.3750\n";
  EXPECT_TRUE(has(summary, " # GenInt  : Generation Interval\n" + groups));
  EXPECT_TRUE(has(log, groups));
}

}  // namespace
}  // namespace qob::test
