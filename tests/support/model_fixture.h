// A Model whose units write to memory and whose stops can be caught.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "analysis/inbreeding.h"
#include "core/qobtypestools.h"
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

class ModelTest : public ::testing::Test {
 protected:
  ModelTest() {
    before_ = set_stop_handler([](std::string_view text, int status) {
      throw Stopped{std::string(text), status};
    });
    model.units.out.open_memory(&out);
    model.units.log.open_memory(&log);
    model.units.summary.open_memory(&summary);
  }
  ~ModelTest() override { set_stop_handler(before_); }

  // Reads a data file with these lines: id sire dam sex birth_time max_matings ebv text.
  void read_animals(std::string_view table) {
    model.parameters.data.datafile = folder.write("animals.dat", table);
    readrecode(model);
    inbreeding_coefficients(model.pedigree.newped, model.pedigree.f, model.units.out);
  }

  // Expects that `action` stops the run with a line that ends so, in the log and on screen.
  void expect_stop(const std::string& message, auto action) {
    EXPECT_THROW(action(), Stopped) << message;
    EXPECT_TRUE(log.ends_with(message + "\n")) << log << "expected: " << message;
    EXPECT_TRUE(out.ends_with(message + "\n"));
  }

  TemporaryFolder folder;
  Model model;
  std::string out, log, summary;

 private:
  StopHandler before_;
};

}  // namespace qob::test
