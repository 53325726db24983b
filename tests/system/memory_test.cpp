// The system in memory, and a whole run in it.
#include <cerrno>

#include "driver/run.h"
#include "support/run_fixture.h"
#include "system/shell.h"

namespace qob::test {
namespace {

using Names = std::vector<std::string>;

std::string first_line(const std::string& path) {
  InputFile file;
  std::string_view line;
  return file.open(path) == 0 && file.next_line(line) == 0 ? std::string(line) : "";
}

TEST(MemoryFiles, NamesAreComparedInTheirNormalForm_AndWhatIsNotThereIsToldAsBySystems) {
  const MemoryFolder folder;
  folder.write("./r/../r/b.txt", "b\n");
  EXPECT_EQ(memory_files().names(), Names{"r/b.txt"});
  EXPECT_TRUE(are_same_path("r//b.txt", "./r/b.txt") && are_one_file("r/b.txt", "x/../r/b.txt"));
  EXPECT_FALSE(are_one_file("r/c.txt", "r/c.txt") || are_same_path("r/b.txt", "b.txt"));
  folder.write("r/s/c.prm", "");
  folder.write("r/s/d.prm", "");
  EXPECT_EQ(entries_of("./r", ""), (Names{"./r/b.txt", "./r/s"}));
  EXPECT_EQ(entries_of("r/s", "d.prm"), Names{"r/s/d.prm"});
  EXPECT_TRUE(entries_of(".", ".txt").empty());
  EXPECT_EQ(path_from("./r/s/", "r/b.txt") + " " + path_from("./", "r/b.txt"), "../b.txt r/b.txt");
  EXPECT_TRUE(InputFile::exists("r/") && !InputFile::exists("b.txt"));
  InputFile in;
  OutputFile out;
  EXPECT_EQ(in.open("r/c.txt"), ENOENT);
  EXPECT_EQ(in.open("r"), EISDIR);
  EXPECT_EQ(in.open("."), EISDIR);
  EXPECT_EQ(in.open("r/b.txt/"), ENOENT);
  EXPECT_EQ(in.rewind(), EBADF);
  EXPECT_EQ(out.open("r", Show::kEachLine), EISDIR);
  EXPECT_EQ(out.open("", Show::kEachLine), ENOENT);
  EXPECT_EQ(memory_files().names().size(), 3U);
}

TEST(MemoryFiles, AreSeenAsTheirWritersPromise) {
  const MemoryFolder folder;
  folder.write("lines", "old\n");
  OutputFile lines, whole;
  ASSERT_EQ(lines.open("lines", Show::kEachLine), 0);
  EXPECT_EQ(folder.read("lines"), "");
  ASSERT_EQ(whole.open("whole", Show::kWhenComplete) + lines.write("one\n"), 0);
  const MemoryFiles::Contents before = memory_files().get("lines");
  InputFile reader;
  ASSERT_EQ(reader.open("lines"), 0);
  ASSERT_EQ(lines.write("two\n") + whole.write(std::string(99999, 'x') + "\n"), 0);
  EXPECT_EQ(*before + folder.read("lines"), "one\none\ntwo\n");
  EXPECT_TRUE(InputFile::exists("whole") && folder.read("whole").empty());
  EXPECT_EQ(whole.close() + lines.close(), 0);
  EXPECT_EQ(folder.read("whole").size(), 100000U);
  {
    OutputFile left;  // as when memory runs out behind its first lines
    ASSERT_EQ(left.open("left", Show::kWhenComplete) + left.write("one\n"), 0);
  }
  EXPECT_EQ(folder.read("left"), "one\n");
  std::string_view line;
  EXPECT_TRUE(reader.next_line(line) == 0 && line == "one" && reader.rewind() == 0);
  EXPECT_TRUE(reader.next_line(line) == 0 && reader.next_line(line) == kEndOfFile);
  EXPECT_TRUE(copy_in_shell("lines", "x\\y", "z") && first_line("xyz") == "one");
  EXPECT_FALSE(copy_in_shell("missing", "", "z") || InputFile::exists("z"));
}

TEST_F(RunTest, AWholeRunNeedsNoOtherSystem) {
  folder.write("herd.dat", "1 0 0 1 1 4 0.1 a\n2 0 0 2 1 4 0.2 b\n3 0 0 1 1 4 0.3 c\n");
  folder.write("qob.prm",
               "&DataParameters datafile='herd.dat', resultsdirectory='r/' /\n"
               "&PopulationHistory pci_ngen=1 / &RelationshipMatrix /\n"
               "&OCSParameters nmatings=2, w_merit=1.0 /\n"
               "&AlgorithmParameters generations=3, popsize=4, n_offspring=2, seed_rng=1 /\n"
               "&MatingOptions matingstrategy='mai' /\n");
  qob::Run own;  // whose units write to files
  try {
    qob::run(own, {"qob.prm", "--quiet"});
  } catch (const Stopped& stopped) {
    EXPECT_EQ(stopped.text, "QOB ended successfully") << folder.read(kStandardOutput);
  }
  EXPECT_TRUE(folder.read(kStandardOutput).starts_with(" QOB initialising\n"));
  EXPECT_EQ(folder.read(kStandardError), "");
  EXPECT_TRUE(folder.read("qob.log").size() > 1000 &&
              folder.read("r/qob.log") == folder.read("qob.log"));
  for (const char* name : {"F_summary", "f_coeff", "qob_MatingList", "male_list", "qob_best"}) {
    EXPECT_TRUE(folder.read("r/" + std::string(name) + ".txt").ends_with('\n')) << name;
  }
}

}  // namespace
}  // namespace qob::test
