// Runs at the same time over one herd.
#include <gtest/gtest.h>

#include <regex>

#include "driver/end_of.h"
#include "driver/run.h"
#include "driver/shared_herd.h"
#include "system/memory/memory_files.h"

namespace qob::test {
namespace {

std::string parameters(int seed, const std::string& goal) {
  return "&DataParameters datafile='herd.dat', resultsdirectory='./Q_' /\n&PopulationHistory /\n"
         "&Contrib ancestor=3 / &RelationshipMatrix /\n&OCSParameters nmatings=8, limitmalematings=2, " +
         goal +
         " /\n&AlgorithmParameters generations=40, popsize=8, restart_interval=15, seed_rng=" +
         std::to_string(seed) +
         " / &Improvement finish=T / &MatingOptions matingstrategy='mai' /\n";
}

// All that is in the files of that folder, without dates and times.
std::string files_in(const std::string& folder) {
  static const std::regex clocks("(cpu|wall)=.*|QOB started.*");
  std::string all;
  for (const std::string& name : memory_files().names()) {
    if (name.starts_with(folder))
      all += name.substr(folder.size()) + "\n" +
             std::regex_replace(*memory_files().get(name), clocks, "");
  }
  return all;
}

class SharedHerdThreads : public ::testing::Test {
 protected:
  ~SharedHerdThreads() override { memory_files().clear(); }

  static std::string folder(const std::string& where, int k) {
    return where + std::to_string(k) + "/";
  }
  static void put(const std::string& name, const std::string& text) {
    memory_files().put(name, text);
  }
  // Ten animals a time step, even ones males; those of the last two steps are candidates.
  static std::string herd() {
    std::string lines;
    for (int i = 1; i <= 60; ++i) {
      const int born = (i - 1) / 10, before = 10 * (born - 1);
      const int sire = born == 0 ? 0 : before + 2 + 2 * (i % 5);
      const int dam = born == 0 ? 0 : before + 1 + 2 * (i / 2 % 5);
      lines += format_list(i, sire, dam, i % 2 + 1, born, born > 3 ? 4 : 0, i % 7) + "\n";
    }
    return lines;
  }
};

TEST_F(SharedHerdThreads, EachLeavesTheFilesThatItLeavesAlone) {
  const std::string goals[] = {"w_relationship=-2", "optimise='constraint', dfconstraint=0.05",
                               "w_relationship=-50"};
  std::string alone[3];
  for (int k = 0; k < 3; ++k) {
    for (const char* where : {"alone", "together"}) {
      put(folder(where, k) + "herd.dat", herd());
      put(folder(where, k) + "qob.prm", parameters(k + 1, goals[k]));
    }
    ToldRun told;
    told.run.files.folder = folder("alone", k);
    const End end = end_of([&] { run(told.run, {"qob.prm"}); });
    EXPECT_EQ(end.text, "QOB ended successfully") << told.last_words();
    alone[k] = files_in(folder("alone", k));
  }
  SharedHerd shared;
  ToldRun first;
  first.run.files.folder = folder("together", 0);
  ASSERT_EQ(end_of([&] { read_herd(first.run, "qob.prm", shared); }).text, "");
  Parallel(3, 0).for_each(3, 1, [&](std::int64_t k, int) {
    ToldRun told;
    told.run.files.folder = folder("together", static_cast<int>(k));
    end_of([&] { run_with(shared, told.run, "qob.prm"); });
  });
  for (int k = 0; k < 3; ++k) EXPECT_EQ(files_in(folder("together", k)), alone[k]);
  EXPECT_NE(alone[0], alone[2]);
}

}  // namespace
}  // namespace qob::test
