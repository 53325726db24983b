// The analyses on several threads.
#include "analysis/qobpophistory.h"
#include "analysis/qobrelshipmatrix.h"
#include "core/format.h"
#include "core/lines_in_parts.h"
#include "support/random_pedigree.h"
#include "support/run_fixture.h"

namespace qob::test {
namespace {

class AnalysisThreads : public RunTest {
 protected:
  // Animals of this shape, some of them candidates.
  void make_animals(int shape) {
    std::mt19937 rng(7);
    Pedigree& p = pedigree;
    p.newped = random_pedigree(shape, rng);
    p.maxid = static_cast<std::int32_t>(p.newped.columns());
    p.oldped.assign(p.maxid, 3, 0);
    for (Table<std::int32_t>* table : {&p.sex, &p.btime, &p.matings}) table->assign(p.maxid, 0);
    p.txt.assign(p.maxid, "");
    for (std::int32_t i = 1; i <= p.maxid; ++i) {
      p.oldped(i, 1) = 3 * i;
      for (int k = 1; k <= 2; ++k) p.oldped(i, 1 + k) = 3 * p.newped(k, i);
      p.btime(i) = i / 40;
      p.matings(i) = draw(rng, 4);
    }
  }

  // All that the analyses leave, the relationship file among it.
  std::string analyse(int threads) {
    run.parallel = Parallel(threads, 0);
    run.files.outputs.clear();
    for (std::string* told : {&out, &log, &summary}) told->clear();
    open_parameters("&PopulationHistory pci_ngen=3 / &RelationshipMatrix gfile='g.rel' /");
    start_watches(run.journal.watches);
    pophistory(run, pedigree);
    const Relationship relationship = setup_nrm(run, pedigree).value();
    units.summary.close();
    std::string all = out + log;
    for (const std::string& name : memory_files().names()) all += name + '\n' + folder.read(name);
    return all.append(reinterpret_cast<const char*>(relationship.nrm.data()),
                      sizeof(double) * static_cast<std::size_t>(relationship.nrm.size()));
  }
};

TEST_F(AnalysisThreads, LeaveTheSameBytesHoweverManyThereAre) {
  units.summary.close();
  for (const int shape : {0, 2}) {
    make_animals(shape);
    const std::string alone = analyse(1);
    EXPECT_NE(alone.find("\n 3 3 1.00000\n"), std::string::npos);
    for (const int threads : {2, 3, 16}) EXPECT_TRUE(analyse(threads) == alone) << threads;
  }
}

TEST(LinesOfThreads, StandInTheirOrder_AndValuesThatDoNotFitAreCounted) {
  const auto write_number = [](Unit& unit, std::int64_t i) { write(unit, "(I4)", i); };
  std::string text, expected;
  Unit file{1}, plain{2};
  file.open_memory(&text);
  plain.open_memory(&expected);
  Parallel parallel(3, 0);
  write_lines(file, 50000, parallel, write_number);
  for (std::int64_t i = 1; i <= 50000; ++i) write_number(plain, i);
  EXPECT_TRUE(text == expected);
  EXPECT_EQ(file.unshown(Shown::kTooWide).line, 10000);
  EXPECT_EQ(file.unshown(Shown::kTooWide).count, 40001);
}

}  // namespace
}  // namespace qob::test
