#include <utility>

#include "support/run_fixture.h"

namespace qob::test {
namespace {

// `text` with each #n written as an integer in 12 columns.
std::string expanded(std::string text) {
  for (auto at = text.find('#'); at != std::string::npos; at = text.find('#')) {
    std::size_t end = at + 1;
    while (text[end] == '-' || (text[end] >= '0' && text[end] <= '9')) ++end;
    text.replace(at, 1, 13 - (end - at), ' ');
  }
  return text;
}

class ReadRecode : public RunTest {
 protected:
  // The tables that were filled, a line an animal.
  std::string animals() const {
    const Pedigree& p = pedigree;
    std::string lines = "\n";
    for (std::int32_t i = 1; i <= p.maxid; ++i) {
      lines += formatted("(4I3,' =',2I3,' :',I2,I6,I2,F6.2,1X,A,'|')", i, p.oldped(i, 1),
                         p.oldped(i, 2), p.oldped(i, 3), p.sire(i), p.dam(i), p.sex(i), p.btime(i),
                         p.matings(i), p.ebv(i), p.txt(i));
      lines += p.ids.find(p.oldped(i, 1)).number == i ? "\n" : " not in the tree\n";
    }
    return lines;
  }
};

// 99 and 98 have no records. The first to name 99 is no candidate, the first to name 98 is one.
TEST_F(ReadRecode, AnimalsAreNumberedInOrderAndUnrecordedParentsInsertedWhereThatIsAllowed) {
  parameters.data.ignoreparentalpedigreeerrors = true;
  parameters.data.recodefile = folder / "recoded.txt";
  read_animals(
      "7 99 0 1 2000 0 -0.5 'a text cut short'\n-5,99,98,2,2000,2,0.25 x y\n4 7 98 2 2001 2 3\n");
  EXPECT_EQ(animals(), R"(
  1 99  0  0 =  0  0 : 0 -9999 0  0.00 ID_Inserted    |
  2  7 99  0 =  1  0 : 1  2000 0 -0.50 a text cut shor|
  3 98  0  0 =  0  0 : 0 -9999 0  0.00 ID_Inserted    |
  4 -5 99 98 =  1  3 : 2  2000 2  0.25 x              |
  5  4  7 98 =  2  3 : 2  2001 2  3.00 .              |
)");
  EXPECT_EQ(folder.read("recoded.txt"),
            " -Old Id-  -New ID- \n        99         1\n         7         2\n"
            "        98         3\n        -5         4\n         4         5\n");
  const std::string read = expanded(
      " Datafile read with #3 records and #5 individuals\n"
      " WARNING: Inserted parent of candidate in record #2\n"
      "          please check as this can influence age profile use in optimisation of contributions\n");
  const std::string head =
      "\nAssumes the following input in datafile :\n"
      " Animal_id Sire_is Dam_id sex birth_time max_matings ebv optional_text\n\n";
  EXPECT_EQ(log, head + expanded(" Inserted parent #99 as #1\n Inserted parent #98 as #3\n") +
                     read + "Recoded Animal id's written to file\n\nAnimal id's recoded\n\n");
  EXPECT_EQ(out, " Reading datafile\n" + read + " Animals renumbered\n");
}

TEST_F(ReadRecode, FaultsAreListedAndStopTheRun) {
  const std::string unreadable =
      " ERROR in Read statement in Subroutine ReadRecode Value of error:  5010\n";
  // 1 is its own sire, 99 and 98 have no record, 3 has one too late, 4 has two.
  const std::string disorder =
      "1 1 0 1 1 0 0\n4 99 98 1 2 0 0\n5 99 3 1 2 0 0\n3 0 0 2 1 0 0\n4 0 0 1 1 0 0\n0 0 0 1 1 0 0\n";
  const struct {
    std::string table;
    bool ignore;
    std::string log;  // behind its head
  } cases[] = {
      {disorder, false,
       " Inserted parent #1 as #1\n Potential errors in pedigree :\n"
       "  Parent not recorded :  #1 at record #1\n  Offspring already recorded :  #1 at record #1\n"
       " Inserted parent #99 as #2\n  Parent not recorded :  #99 at record #2\n"
       " Inserted parent #98 as #3\n  Parent not recorded :  #98 at record #2\n"
       " Inserted parent #3 as #5\n  Parent not recorded :  #3 at record #3\n"
       "  Offspring already recorded :  #3 at record #4\n"
       "  Offspring already recorded :  #4 at record #5\n"
       "  Offspring already recorded :  #0 at record #6\n"
       " Datafile read with #6 records and #6 individuals\n ERRORs found in pedigree, See log file\n"},
      {"2 1 0 1 2 0 0\n1 0 0 1 1 0 0\n", true,  // a record that comes too late is never excused
       " Inserted parent #1 as #1\n Potential errors in pedigree :\n"
       "  Offspring already recorded :  #1 at record #2\n"
       " Datafile read with #2 records and #2 individuals\n ERRORs found in pedigree, See log file\n"},
      // Missing values are 0, so record 5 is born before its sire.
      {"1 0 0 1 1 0 0\n2 0 0 2 3 0 0\n3 1 2 1 1 0 0\n4 1 0 1 2 0\n5 1 0 1\n6 1 0 1 2 0 0\n", false,
       " Datafile read with #6 records and #6 individuals\n Errors in data :\n"
       "  Birth times inconsistent. Offspring :  #3 parent : #1 at record #3#1#0\n"
       "  Birth times inconsistent. Offspring :  #3 parent : #2 at record #3#1#0\n"
       " Warning : Record #4 is not complete\n Record : 4 1 0 1 2 0\n"
       " Warning : Record #5 is not complete\n Record : 5 1 0 1\n"
       "  Birth times inconsistent. Offspring :  #5 parent : #1 at record #5#0#0\n"
       "Recoded Animal id's written to file\n\n ERRORs found in data file, See log file\n"},
      // Only the first fault is given the title, and an incomplete record is one. An inserted
      // parent's birth time takes part in the check.
      {"1 0 0 1 1\n2 99 0 1 -9999 0 0\n3 q 0 m\n", true,
       " Inserted parent #99 as #2\n Datafile read with #3 records and #4 individuals\n"
       " Warning : Record #1 is not complete\n Record : 1 0 0 1 1\n"
       "  Birth times inconsistent. Offspring :  #2 parent : #99 at record #2#-9999#0\n"
       " ERROR\n Record: 3 q 0 m\n" +
           unreadable},
      // A record whose animal cannot be read counts, but has no number.
      {"1 0 0 1 1 0 0\nx 1 0 1 2 0 0\n", false,
       " Datafile read with #2 records and #1 individuals\n ERROR\n Record: x 1 0 1 2 0 0\n" +
           unreadable},
      // A first parent -1 passes for the parent of the record before and is not looked up.
      {"5 -1 0 1 1 0 0\n", false,
       " Datafile read with #1 records and #1 individuals\n"
       " ERROR when reading data, unrecognised parent\n"}};
  parameters.data.recodefile = folder / "recoded.txt";
  for (const auto& c : cases) {
    log.clear();
    parameters.data.ignoreparentalpedigreeerrors = c.ignore;
    EXPECT_THROW(read_animals(c.table), Stopped);
    EXPECT_EQ(log.substr(log.find("\n\n") + 2), expanded(c.log));
  }
  const auto at_pedigree = out.find(expanded(" Parent not recorded :  #98 at record #2\n"));
  const auto at_data = out.find(expanded(" Offspring :  #3 parent : #2 at record #3\n Warning : "));
  EXPECT_TRUE(at_pedigree < at_data && at_data < out.size());
}

TEST_F(ReadRecode, WhatIsBehindAShortLineOrColumn120IsNotRead) {
  for (const std::string end : {"", "   ", "7 0", "7 0 ,"}) {
    read_animals("1 0 0 1 2000 0 0\n" + end + "\n1 x 0\n");
    EXPECT_EQ(pedigree.nobs, 1) << "'" << end << "'";
  }
  read_animals("1 0 0 1 2000 0 0.25" + std::string(101, ' ') + "far\n" +   // from column 121
               "2 0 0 2 2000 0 " + std::string(103, ' ') + "3.75 far\n");  // the point in 120
  EXPECT_EQ(pedigree.txt(1).trimmed(), ".");
  EXPECT_EQ(pedigree.ebv(2), 3.0);
}

}  // namespace
}  // namespace qob::test
