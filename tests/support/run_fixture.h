// A run whose units write to memory and whose stops can be caught.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "analysis/inbreeding.h"
#include "core/qobtypestools.h"
#include "core/stop.h"
#include "pedigree/qobreadrecode.h"

namespace qob::test {

// What a stop throws in tests.
struct Stopped {
  std::string text;
  int status;
};

// A folder of its own, removed at the end.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string pattern = std::filesystem::temp_directory_path() / "qob_test_XXXXXX";
    path_ = mkdtemp(pattern.data());
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() { std::filesystem::remove_all(path_); }

  std::string name() const { return std::filesystem::path(path_).filename(); }
  std::string operator/(std::string_view name) const { return path_ + "/" + std::string(name); }
  std::string write(std::string_view name, std::string_view contents) const {
    std::ofstream(*this / name, std::ios::binary) << contents;
    return *this / name;
  }

 private:
  std::string path_;
};

class RunTest : public ::testing::Test {
 protected:
  RunTest() {
    before_ = set_stop_handler([](std::string_view text, int status) {
      throw Stopped{std::string(text), status};
    });
    units.out.open_memory(&out);
    units.log.open_memory(&log);
    units.summary.open_memory(&summary);
  }
  ~RunTest() override { set_stop_handler(before_); }

  // Reads a data file with these lines: id sire dam sex birth_time max_matings ebv text.
  void read_animals(std::string_view table) {
    parameters.data.datafile = folder.write("animals.dat", table);
    pedigree = readrecode(run);
    inbreeding_coefficients(pedigree.newped, pedigree.f, units.out);
  }

  // Expects that `action` stops the run with a line that ends so, in the log and on screen.
  void expect_stop(const std::string& message, auto action) {
    EXPECT_THROW(action(), Stopped) << message;
    EXPECT_TRUE(log.ends_with(message + "\n")) << log << "expected: " << message;
    EXPECT_TRUE(out.ends_with(message + "\n"));
  }

  // Opens a parameter file with these groups.
  void open_parameters(std::string_view groups) {
    ASSERT_EQ(run.parameter_file.open(folder.write("qob.prm", groups)), 0);
  }

  TemporaryFolder folder;
  qob::Run run;
  Parameters& parameters = run.parameters;
  Units& units = run.journal.units;
  std::string out, log, summary;
  Pedigree pedigree;

 private:
  StopHandler before_;
};

}  // namespace qob::test
