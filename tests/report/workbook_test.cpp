#include "report/workbook.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "report/small_report.h"

namespace qob::test {
namespace {

// A member of the file, which is a zip archive.
std::string member(const std::string& file, const std::string& name) {
  const std::string text = file + ".xml";
  const std::string command =
      "python3 -c 'import sys, zipfile; open(sys.argv[3], \"wb\").write(zipfile.ZipFile(sys.argv[1]).read(sys.argv[2]))' '" +
      file + "' xl/" + name + " '" + text + "'";
  EXPECT_EQ(std::system(command.c_str()), 0);
  std::ostringstream content;
  content << std::ifstream(text).rdbuf();
  return content.str();
}

class WorkbookTest : public testing::Test {
 protected:
  const std::filesystem::path folder_ =
      std::filesystem::path(testing::TempDir()) / ("workbook_" + std::to_string(::getpid()));
  void SetUp() override { std::filesystem::create_directory(folder_); }
  void TearDown() override { std::filesystem::remove_all(folder_); }
  const std::string file_ = folder_ / "tables.xlsx";
};

TEST_F(WorkbookTest, HoldsTextsAsTextsAndNumbersAsNumbers) {
  Workbook workbook(file_);
  for_each_table(small_report(), SmallHerd().figures(),
                 [&](const ReportTable& table) { workbook.add(table); });
  ASSERT_EQ(workbook.close(), "");
  const std::string names = member(file_, "workbook.xml");
  for (const char* name : {"matings", "candidates", "animals", "trend", "founders"})
    EXPECT_NE(names.find("name=\"" + std::string(name) + "\""), std::string::npos);
  const std::string sheet = member(file_, "worksheets/sheet2.xml");
  for (const char* cell :
       {"<c r=\"A2\"><v>1</v></c>", "<c r=\"B2\" t=\"inlineStr\"><is><t>=cmd()</t></is></c>",
        "<t>&lt;img src=x onerror=alert(1)&gt;</t>", "<t>bad \uFFFD\uFFFD bytes</t>",
        "<c r=\"I3\"><v>0.1</v></c>", "ySplit=\"1\"", "<c r=\"A1\" s=\"1\""})
    EXPECT_NE(sheet.find(cell), std::string::npos) << cell << "\n" << sheet;
  EXPECT_EQ(sheet.find("<f>"), std::string::npos);
  EXPECT_EQ(sheet.find("r=\"V2\""), std::string::npos) << "no number is no cell";
}

TEST_F(WorkbookTest, OfTooManyRowsSaysSo) {
  Workbook workbook(file_);
  // Only the last rows hold anything, which is quick.
  const auto rows = [](std::string_view name, std::int64_t count) {
    return ReportTable{name, {"row"}, count, [](std::int64_t row, std::size_t) -> Cell {
                         return row > 1'048'570 ? Cell(row) : Cell();
                       }};
  };
  workbook.add(rows("full", 1'048'575));
  workbook.add(rows("animals", 1'048'576));
  ASSERT_EQ(workbook.close(), "");
  const std::string full = member(file_, "worksheets/sheet1.xml");
  const std::string over = member(file_, "worksheets/sheet2.xml");
  EXPECT_NE(full.find("<c r=\"A1048576\"><v>1048574</v></c>"), std::string::npos);
  EXPECT_NE(over.find("<c r=\"A1048575\"><v>1048573</v></c>"), std::string::npos);
  EXPECT_NE(over.find("<t>a sheet has no more rows: all 1048576 are in animals.csv</t>"),
            std::string::npos);
}

TEST_F(WorkbookTest, ThatCannotBeWrittenIsAFault) {
  Workbook workbook(folder_ / "none" / "tables.xlsx");
  EXPECT_NE(workbook.close(), "");
}

}  // namespace
}  // namespace qob::test
