// Whole runs of the program.
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "support/program.h"

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

TEST(WholeRun, TheSameSeedGivesTheSameFilesAndAnotherSeedDoesNot) {
  const TemporaryFolder first, second, other;
  EXPECT_EQ(run(first).status, 0);
  EXPECT_EQ(run(second).status, 0);
  EXPECT_EQ(run(other, replaced(kParameters, "seed_rng=17", "seed_rng=-4")).status, 0);
  const auto files = result_files(first);
  EXPECT_EQ(files.size(), 12U);
  EXPECT_EQ(files, result_files(second));
  EXPECT_NE(files.at("r_qob_conv.txt"), result_files(other).at("r_qob_conv.txt"));
  EXPECT_EQ(files.at("qob.log"), files.at("r_qob.log"));
}

// All relationships of this herd have at most six digits.
TEST(WholeRun, RelationshipsFromAFileGiveTheSameMatingsAsThePedigree) {
  const TemporaryFolder folder;
  EXPECT_EQ(run(folder, replaced(kParameters, "timesteps=0", "gfile='g.rel'")).status, 0);
  const auto written = result_files(folder);
  const std::string from_file = "source='file', gfile='g.rel'";
  EXPECT_EQ(run(folder, replaced(kParameters, "timesteps=0", from_file)).status, 0);
  const auto read = result_files(folder);
  for (const char* name : {"r_qob_MatingList.txt", "r_qob_best.txt", "r_Candidates.txt"}) {
    EXPECT_EQ(written.at(name), read.at(name)) << name;
  }
  EXPECT_NE(read.at("r_F_summary.txt").find("Summary of individuals not in file"),
            std::string::npos);
}

TEST(WholeRun, PhasesAreLeftOutAsTheParametersSay) {
  const std::string history_only = replaced(kParameters, "timesteps=0", "timesteps=-1");
  const std::string up_to_matrix = replaced(kParameters, "nmatings=4", "dfconstraint=0.5");
  for (const std::string& parameters : {history_only, up_to_matrix}) {
    const TemporaryFolder folder;
    const RunResult result = run(folder, parameters);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err.substr(result.err.find("QOB ended")), "QOB ended successfully\n");
    EXPECT_TRUE(fs::exists(folder / "r_F_summary.txt"));
    EXPECT_FALSE(fs::exists(folder / "r_qob_MatingList.txt"));
    const std::string log = read_file(folder / "r_qob.log");
    std::size_t watches = 0;
    const std::string timing = log.substr(log.find("Timing of QOB"));
    for (std::size_t at = 0; (at = timing.find(" wall=", at)) != std::string::npos; ++at) ++watches;
    EXPECT_EQ(watches, 14U);
    EXPECT_NE(timing.find("\n  Pedigree:\n"), std::string::npos);
  }
  const std::string short_file = kParameters.substr(0, kParameters.find("&OCS"));
  const TemporaryFolder folder;
  EXPECT_EQ(run(folder, replaced(short_file, "timesteps=0", "timesteps=-1")).status, 0);
}

TEST(CommandLine, HelpVersionAndFaultyArguments) {
  const TemporaryFolder folder;
  const RunResult help = run_program(folder, "--help");
  EXPECT_EQ(help.status, 0);
  for (const char* text : {"&DataParameters", "crossover_probability", "qob_MatingList.txt"}) {
    EXPECT_NE(help.out.find(text), std::string::npos) << text;
  }
  EXPECT_EQ(run_program(folder, "--version").out, "QOB v3.0 build 16.05.29\n");

  const RunResult none = run_program(folder, "");
  EXPECT_EQ(none.status, 1);
  EXPECT_EQ(
      none.out,
      " QOB initialising\n Filename not specified in command line. Default QOB.PRM assumed\n");
  EXPECT_EQ(none.err, "ERROR  Parameter file not specified when calling QOB \n");

  const RunResult longer = run_program(folder, std::string(256, 'x'));
  EXPECT_EQ(longer.status, 1);
  EXPECT_EQ(
      longer.out,
      " QOB initialising\n ERROR: Invalid command argument (filename) Value of error:    -1\n");
  EXPECT_EQ(longer.err, " Program terminated. Check file qob.log\n");
  EXPECT_FALSE(fs::exists(folder / "qob.log"));

  const RunResult missing = run_program(folder, "nowhere.prm further arguments");
  EXPECT_EQ(missing.status, 1);
  EXPECT_NE(missing.out.find("\n ERROR Parameter file not found : nowhere.prm\n"),
            std::string::npos);

  fs::create_directory(folder / "directory.prm");
  EXPECT_NE(
      run_program(folder, "directory.prm").out.find("\n ERROR Could not open file directory.prm\n"),
      std::string::npos);

  fs::remove(folder / "qob.log");
  fs::create_directory(folder / "qob.log");
  const RunResult no_log = run(folder);
  EXPECT_EQ(no_log.status, 1);
  EXPECT_EQ(no_log.err, "ERROR in opening log file qob.log \n");
  fs::remove(folder / "qob.log");
  fs::create_symlink("/dev/full", folder / "qob.log");
  EXPECT_EQ(run(folder).err, " ERROR in writing file qob.log : No space left on device\n");
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

TEST(ParameterFaults, AFaultyAlgorithmGroupIsShownAsFarAsItWasRead) {
  const TemporaryFolder folder;
  const RunResult result = run(folder, replaced(kParameters, "n_offspring=4", "n_offspring=?"));
  EXPECT_EQ(result.status, 1);
  EXPECT_NE(result.out.find(
                "&ALGORITHMPARAMETERS\nGENERATIONS = 30,\nPOPSIZE = 10,\nN_OFFSPRING = 10,\n"),
            std::string::npos);
}

// The first words of a script, for those of transcripts.txt.
const std::string kWords =
    "export PATH=$(dirname " QOB_PROGRAM
    "):$PATH LC_ALL=C; exec 2>&1 < /dev/null\n"
    "run() { qob qob.prm > out.txt 2> err.txt; echo $? \"$(tail -n 1 err.txt)\"; }\n"
    "with() { FROM=$1 TO=$2 awk '{ i = index($0, ENVIRON[\"FROM\"]) } i { $0 = substr($0, 1, i - 1) "
    "ENVIRON[\"TO\"] substr($0, i + length(ENVIRON[\"FROM\"])) } 1' qob.prm > x; mv x qob.prm; }\n"
    "halves() { for f in ./*; do test -s \"$f\" && test -n \"$(tail -c 1 \"$f\")\" && echo $f; done; }\n";

TEST(WholeRun, FollowsTheTranscripts) {
  std::ifstream transcripts(kSource + "/tests/driver/transcripts.txt");
  int count = 0;
  for (std::string line, script, shown; std::getline(transcripts, line) || !script.empty();) {
    if (transcripts && line.starts_with("$ ")) {
      script += line.substr(2) + "\n";
    } else if (transcripts && !line.empty()) {
      if (!line.starts_with("# ")) shown += line + "\n";
    } else if (!script.empty()) {
      const TemporaryFolder folder;
      folder.write("herd.dat", kHerd);
      folder.write("qob.prm", kParameters);
      const std::string file = folder.write("../" + folder.name() + ".sh", kWords + script);
      std::system(("cd " + (folder / "") + " && sh " + file + " > " + file + ".txt").c_str());
      EXPECT_EQ(read_file(file + ".txt"), shown) << script;
      fs::remove(file), fs::remove(file + ".txt");
      script.clear(), shown.clear(), ++count;
    }
  }
  EXPECT_EQ(count, 11);
}

}  // namespace
}  // namespace qob::test
