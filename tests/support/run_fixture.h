// A run whose units write to memory, as does the system, and whose stops can be caught.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>

#include "analysis/inbreeding.h"
#include "core/qobtypestools.h"
#include "core/stop.h"
#include "pedigree/qobreadrecode.h"
#include "system/memory/memory_files.h"

namespace qob::test {

// What a stop throws in tests.
struct Stopped {
  std::string text;
  int status;
};

// The files in memory, of which there are none at the start and at the end.
class MemoryFolder {
 public:
  MemoryFolder() { memory_files().clear(); }
  MemoryFolder(const MemoryFolder&) = delete;
  MemoryFolder& operator=(const MemoryFolder&) = delete;
  ~MemoryFolder() { memory_files().clear(); }

  std::string operator/(std::string_view name) const { return std::string(name); }
  std::string write(const std::string& name, std::string contents) const {
    memory_files().put(name, std::move(contents));
    return name;
  }
  // Empty if there is no such file.
  std::string read(const std::string& name) const {
    const MemoryFiles::Contents contents = memory_files().get(name);
    return contents != nullptr ? *contents : "";
  }
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
    parameters.data.datafile = folder.write("animals.dat", std::string(table));
    pedigree = readrecode(run);
    inbreeding_coefficients(pedigree.newped, pedigree.f, units.out, run.parallel);
  }

  // Expects that `action` stops the run with a line that ends so, in the log and on screen.
  void expect_stop(const std::string& message, auto action) {
    EXPECT_THROW(action(), Stopped) << message;
    EXPECT_TRUE(log.ends_with(message + "\n")) << log << "expected: " << message;
    EXPECT_TRUE(out.ends_with(message + "\n"));
  }

  // Opens a parameter file with these groups.
  void open_parameters(std::string_view groups) {
    ASSERT_EQ(run.parameter_file.open(folder.write("qob.prm", std::string(groups))), 0);
  }

  MemoryFolder folder;
  qob::Run run;
  Parameters& parameters = run.parameters;
  Units& units = run.journal.units;
  std::string out, log, summary;
  Pedigree pedigree;

 private:
  StopHandler before_;
};

}  // namespace qob::test
