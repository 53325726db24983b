// Whole runs of the program.
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "support/program.h"
#include "support/transcripts.h"

namespace qob::test {
namespace {

namespace fs = std::filesystem;

const std::string kSource = QOB_SOURCE_DIR;

// Two unrelated pairs, their four offspring, and four candidates of each sex born thereafter.
//
//    1 x 2     3 x 4          1 3 males, 2 4 females
//    5M  6F    7M  8F         full sibs
//    5x8: 11M 12F 13M 14F     7x6: 15M 16F 17M 18F
const std::string kHerd =
    "1 0 0 1 1 0 0.1 a\n2 0 0 2 1 0 0.2 b\n3 0 0 1 1 0 0.3 c\n4 0 0 2 1 0 0.4 d\n"
    "5 1 2 1 2 0 0.5 e\n6 1 2 2 2 0 0.6 f\n7 3 4 1 2 0 0.7 g\n8 3 4 2 2 0 0.8 h\n"
    "11 5 8 1 3 4 1.1 i\n12 5 8 2 3 1 1.2 j\n13 5 8 1 3 4 1.3 k\n14 5 8 2 3 1 1.4 l\n"
    "15 7 6 1 3 4 1.5 m\n16 7 6 2 3 1 1.6 n\n17 7 6 1 3 4 1.7 o\n18 7 6 2 3 1 1.8 p\n";

const std::string kParameters =
    "&DataParameters datafile='herd.dat', resultsdirectory='r_' /\n"
    "&PopulationHistory pci_ngen=3 /\n"
    "&RelationshipMatrix timesteps=0 /\n"
    "&OCSParameters nmatings=4, w_merit=1.0, w_relationship=-2.0 /\n"
    "&AlgorithmParameters generations=30, popsize=10, n_offspring=4, seed_rng=17 /\n"
    "&MatingOptions matingstrategy='mai', repeatedmatings=F /\n";

std::string replaced(std::string text, const std::string& from, const std::string& to) {
  const auto at = text.find(from);
  EXPECT_NE(at, std::string::npos) << from;
  return text.replace(at, from.size(), to);
}

RunResult run(const TemporaryFolder& folder, const std::string& parameters = kParameters,
              const std::string& herd = kHerd) {
  folder.write("herd.dat", herd);
  folder.write("qob.prm", parameters);
  return run_program(folder, "qob.prm");
}

// The lines of a text without those that show a clock or a date.
std::string without_clocks(const std::string& text) {
  std::istringstream lines(text);
  std::string kept;
  for (std::string line; std::getline(lines, line);) {
    const bool clock = line.starts_with("  cpu=") || line.starts_with(" wall=");
    if (!clock && !line.starts_with(" QOB started")) kept += line + "\n";
  }
  return kept;
}

std::map<std::string, std::string> result_files(const TemporaryFolder& folder) {
  std::map<std::string, std::string> files;
  fs::remove(folder / "stderr.txt");
  for (const auto& entry : fs::directory_iterator(folder / "")) {
    const std::string name = entry.path().filename();
    for (const char* kind : {".txt", ".log", ".rel"}) {
      if (name.ends_with(kind)) files[name] = without_clocks(read_file(entry.path()));
    }
  }
  return files;
}

TEST(WholeRun, FilesOfRealHerdsEqualTheKeptOnes) {
  for (const auto& entry : fs::directory_iterator(kSource + "/tests/cases")) {
    if (!entry.is_directory()) continue;
    const std::string name = entry.path().filename();
    const std::string herd = name.substr(0, name.find('_')) + ".dat";
    const TemporaryFolder folder;
    fs::copy(entry.path(), folder / "");
    fs::copy(kSource + "/examples/" + herd.substr(0, herd.find('.')) + "/" + herd, folder / "");
    ASSERT_EQ(run_program(folder, "qob.prm").status, 0) << name;
    auto files = result_files(folder);
    int compared = 0;
    for (const auto& kept : fs::directory_iterator(entry.path() / "expected")) {
      ++compared;
      const std::string file = kept.path().filename();
      EXPECT_EQ(files[file], without_clocks(read_file(kept.path()))) << name << " " << file;
    }
    EXPECT_GE(compared, 10) << name;
  }
}

TEST(ParameterFaults, EachEndsTheRunWithItsMessage) {
  std::ifstream faults(kSource + "/tests/driver/parameter_faults.txt");
  std::string from, to, message;
  std::getline(faults, message);  // what the columns are
  int tried = 0;
  for (; std::getline(faults, from, '|') && std::getline(faults, to, '|'); ++tried) {
    ASSERT_TRUE(std::getline(faults, message));
    const TemporaryFolder folder;
    const RunResult result = run(folder, replaced(kParameters, from, to));
    EXPECT_EQ(result.status, 1) << message;
    EXPECT_TRUE(result.out.ends_with("\n" + message + "\n")) << message << result.out;
    EXPECT_TRUE(read_file(folder / "qob.log").ends_with("\n" + message + "\n"));
    EXPECT_TRUE(result.err.ends_with(" Program terminated. Check file qob.log\n"));
  }
  EXPECT_EQ(tried, 30);
}

// The first words of a script, for those of transcripts.txt.
const std::string kWords =
    "export PATH=$(dirname " QOB_PROGRAM
    "):$PATH LC_ALL=C; exec 2>&1 < /dev/null; ulimit -c 0\n"
    "run() { qob qob.prm > out.txt 2> err.txt; echo $? \"$(tail -n 1 err.txt)\"; }\n"
    "with() { FROM=$1 TO=$2 awk '{ i = index($0, ENVIRON[\"FROM\"]) } i { $0 = substr($0, 1, i - 1) "
    "ENVIRON[\"TO\"] substr($0, i + length(ENVIRON[\"FROM\"])) } 1' qob.prm > x; mv x qob.prm; }\n"
    "halves() { for f in ./*; do test -s \"$f\" && test -n \"$(tail -c 1 \"$f\")\" && echo $f; done; }\n";

TEST(WholeRun, FollowsTheTranscripts) {
  const auto transcripts = transcripts_of(kSource + "/tests/driver/transcripts.txt");
  for (const Transcript& transcript : transcripts) {
    const TemporaryFolder folder;
    folder.write("herd.dat", kHerd);
    folder.write("qob.prm", kParameters);
    EXPECT_EQ(shown_by(folder, kWords + transcript.script), transcript.shown) << transcript.script;
  }
  EXPECT_EQ(transcripts.size(), 44U);
}

}  // namespace
}  // namespace qob::test
