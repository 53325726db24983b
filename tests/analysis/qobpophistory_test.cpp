#include "analysis/qobpophistory.h"

#include <algorithm>
#include <sstream>

#include "support/program.h"

namespace qob::test {
namespace {

// The animals in their order, F in brackets; 99 has no record, 20 no relative.
//
//   11 x 12             2000         relationships:       13  14  15  17  18  99
//   13 14               2003 from 11 x 12     of 11 .5   .5 .5   .5   .375 0
//   15 [.25]            2006 from 13 x 14        13 1   .5 .75  .875 .5   0
//   99, 16              2006 from 13 x 99        16 .5  .25 .375 .4375 .625 .5
//   17 [.375]           2008 from 13 x 15        17 .875 .625 1 1.375 .53125 0
//   18 [.125]           2008 from 16 x 14        19 .375 .375 .625 .5 .28125 0
//   21 22 [.265625]     2010 from 17 x 18        21 to 22: .890625
//   19                  2007 from  ? x 15
//   20                  2007
const std::string kHerd =
    "11 0 0 1 2000 0 0 a\n12 0 0 2 2000 0 0 b\n13 11 12 1 2003 0 0 thirteen\n14 11 12 2 2003 0 0\n"
    "15 13 14 2 2006 0 0\n16 13 99 1 2006 0 0\n17 13 15 1 2008 0 0 seventeen\n18 16 14 2 2008 0 0\n"
    "21 17 18 1 2010 0 0\n22 17 18 2 2010 0 0\n19 0 15 2 2007 0 0 c\n20 0 0 1 2007 0 0 d\n";

bool has(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

class PopHistory : public ModelTest {
 protected:
  void analyse(const std::string& table, const std::string& parameters) {
    log.clear();
    model.pedigree = {};
    model.parameters.data.ignoreparentalpedigreeerrors = true;
    model.parameters.data.resultsdirectory = folder / "r_";
    read_animals(table);
    model.parameter_file.open(folder.write("qob.prm", parameters));
    pophistory(model);
  }
  // A result file without its remarks and blank lines.
  std::string table(const char* name) const {
    std::istringstream file(read_file(folder / name));
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

// r is half of what an animal is related to both members of the group, c the same of their genes.
const std::string kFounders2007 =
    "          11           0        2007       2  0.125000  0.125000 a               founder\n"
    "          12           0        2007       2  0.125000  0.125000 b               founder\n"
    "          99           0        2007       2  0.000000  0.000000 ID_Inserted     founder\n"
    "          19           0        2007       2  0.500000  0.250000 c               founder\n"
    "          20           0        2007       2  0.500000  0.500000 d               founder\n";
const std::string kFounders2006 =
    "          11           0        2006       2  0.375000  0.375000 a               founder\n"
    "          12           0        2006       2  0.375000  0.375000 b               founder\n"
    "          99           0        2006       2  0.250000  0.250000 ID_Inserted     founder\n"
    "          19           0        2006       2  0.406250  0.000000 c               founder\n"
    "          20           0        2006       2  0.000000  0.000000 d               founder\n";
const std::string kHead = "    Ancestor  Descendant       Group N.Group   Add.rel  Gen.cont\n";

TEST_F(PopHistory, RequestsAreAnsweredOneByOne) {
  analyse(kHerd,
          "&PopulationHistory / &Contrib / &Contrib ancestor=13 descendant=17 /\n"
          "&Contrib ancestor=17 descendant=13 / &Contrib group=2008 ancestor=13 /\n"
          "&Contrib group=2006 / &Contrib group=1900 / &Contrib / &Contrib ancestor=777 /\n"
          "&Contrib descendant=13 ancestor=777 / &Contrib ancestor=13 /");
  const std::string text = " thirteen       seventeen      \n";
  const std::string pair =
      "          13          17           0       0  0.875000  0.750000" + text;
  const std::string group = "          13           0        2008       2  0.687500  0.500000";
  EXPECT_EQ(table("r_gencont.txt"), kHead + kFounders2007 + kFounders2007 + pair + pair + group +
                                        " thirteen       \n" + kFounders2006 + kFounders2006);
  const std::pair<std::string*, const char*> messages[] = {
      {&log,
       " Contrib Parameters read :\n&CONTRIB\nANCESTOR = 13,\nDESCENDANT = 17,\nGROUP = 0,\n/"},
      {&out,
       "\n GC from ancestor :          13\n\nContribution of Ancestor      13  to descendant"},
      {&summary,
       "\nContribution of Ancestor      13 to group     2008 written to file gencont.txt"},
      {&log,
       "  ERROR in namelist Contrib. Animal not in pedigree :          777\n  Request ignored"},
      {&log, "  ERROR in namelist Contrib. ID too large\n"},
      {&out,
       "  Ancestor=          13 Descendant=           0 Group=           0 Namelist Contrib"}};
  for (const auto& [lines, message] : messages) EXPECT_TRUE(has(*lines, message)) << message;
  EXPECT_EQ(log.find("not in pedigree"), log.rfind("not in pedigree"));
}

}  // namespace
}  // namespace qob::test
