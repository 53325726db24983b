#include "core/namelist.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "system/memory/memory_files.h"

namespace qob {
namespace {

struct Demo {
  std::int32_t count = -1;
  double weight = 0.1;
  bool flag = false;
  Text<4> word = "none";

  Group group() {
    return {"Demo", {{"Count", &count}, {"weight", &weight}, {"flag", &flag}, {"word", &word}}};
  }
  std::string echoed() {
    std::string out;
    Unit unit(1);
    unit.open_memory(&out);
    echo(unit, group());
    return out;
  }
};

// A file with these bytes.
std::string file_with(const std::string& bytes) {
  memory_files().put("demo.prm", bytes);
  return "demo.prm";
}

// Status and values of one group after another up to the first that fails.
std::string all_reads(const std::string& bytes) {
  NamelistFile file;
  EXPECT_EQ(file.open(file_with(bytes)), 0);
  Demo demo;
  std::string out;
  for (int status = 0; status == 0;) {
    status = file.read(demo.group());
    out += std::to_string(status) + ":" + std::to_string(demo.count) + literal(demo.weight) +
           literal(demo.flag) + std::string(demo.word.view()) + " ";
  }
  return out;
}

TEST(Namelist, Echo_ShowsEveryKindOfValue_AndReadsBack) {
  Demo demo{2147483647, 1e-7 / 3, true, "a\"b"};
  EXPECT_EQ(demo.echoed(),
            "&DEMO\nCOUNT = 2147483647,\nWEIGHT = 3.3333333333333334e-08,\nFLAG = T,\n"
            "WORD = \"a\"\"b\",\n/\n");
  NamelistFile file;
  ASSERT_EQ(file.open(file_with(demo.echoed())), 0);
  Demo again;
  EXPECT_EQ(file.read(again.group()), 0);
  EXPECT_EQ(again.echoed(), demo.echoed());
}

TEST(Namelist, WellFormedGroups_AreRead) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"&demo/", "0:-10.1Fnone "},
      {"text\r\n&DEMO\tCOUNT=+3,\r\n\r\n WORD = \"it's\"\r\n flag\r\n=\r\n.TRUE./\r\n",
       "0:30.1Tit's "},
      {"R&D's &Demo word='a/!''' weight=1.5d0! /\n,flag=t /", "0:-11.5Ta/!' "},
      {"&Demo! /\n count=1 count=1*2,, weight= flag=\n/", "0:20.1Fnone "},
      {"&Demo count=5, count=, weight=1*,word='' /", "0:50.1F     "},
      {"&Demo count=1/&Demo word='longer' / x &demo,flag=T,count=3/",
       "0:10.1Fnone 0:10.1Flong 0:30.1Tlong "},
      {"!&Demo count=1/\n&Other a='&Demo count=2/' b=\"! / \"!&Demo /\n/ &Demo count=3/",
       "0:30.1Fnone "},
      {"&Demos / &De /\n&Other s='it, &Demo/\n\"/ &Demo/\n/ it's &&Demo count=4/", "0:40.1Fnone "},
  };
  for (const auto& [bytes, expected] : cases) {
    const std::string last = expected.substr(expected.rfind(':'));
    EXPECT_EQ(all_reads(bytes), expected + "-1" + last) << bytes;
  }
}

TEST(Namelist, EveryDeviation_IsAnError_AndEarlierValuesStay) {
  std::istringstream cases(  // separated by |
      "other=1 /|word='x' =1 /|flag='T' /|2 /|count 2 /|count /|count, =2 /|count:2 /|count(1)=2 /|"
      "count=='2' /|count=1.5 /|count='1' /|count=x /|weight=.1 2 /|weight=.1,2 /|weight=2*.1 /|"
      "weight=0*1 /|count=2* /|count=, 2 /|weight=nan /|weight=1e999 /|weight=T /|flag=1 /|flag=. "
      "/|"
      "word=x /|word=1 /|word=T /|word='x'y /|word='a' 'b' /|word='open /|word='open\n' /|&end|"
      "&Demo count=1/|$ /|stray text /");
  for (std::string items; std::getline(cases, items, '|');) {
    const std::string result = all_reads("&Demo count=8 " + items + "\n&Demo/\n");
    EXPECT_TRUE(result.starts_with("5010:80.1")) << items << " -> " << result;
  }
  EXPECT_EQ(all_reads(std::string("&Demo flag=T count=1\0 /", 23)), "5010:-10.1Tnone ");
  for (const std::string items : {"", "\n", " ! /", " count="}) {
    EXPECT_EQ(all_reads("&Demo count=8" + items), "-1:80.1Fnone ") << items;
  }
}

}  // namespace
}  // namespace qob
