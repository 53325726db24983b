#include "report/tables.h"

#include <gtest/gtest.h>

#include <map>

#include "report/csv_tables.h"
#include "report/small_report.h"

namespace qob::test {
namespace {

std::map<std::string, std::string> csv_of(const Report& report, const SmallHerd& herd) {
  std::map<std::string, std::string> files;
  for_each_table(report, herd.figures(), [&](const ReportTable& table) {
    write_csv(table, [&](const std::string& line) { files[std::string(table.name)].append(line); });
  });
  return files;
}

TEST(Tables, HoldTextsByteForByteAndAllDigits) {
  const SmallHerd herd;
  const auto files = csv_of(small_report(), herd);
  EXPECT_EQ(
      files.at("matings"),
      R"csv(sire,dam,sire_name,dam_name,sire_merit,dam_merit,sire_inbreeding,dam_inbreeding,sire_completeness,dam_completeness,expected_merit,expected_inbreeding,mendelian_variance,common_ancestors,main_common_ancestor,main_common_ancestor_inbreeding
=cmd(),"Ø, 12""",+1,"@line
feed",2,,0,0.3333333333333333,0,1,1.5,0.25,0.4,5,=cmd(),0.125
)csv");
  EXPECT_EQ(
      files.at("candidates"),
      "rank,identifier,name,sex,birth,sire,dam,merit,inbreeding,completeness,unknown_parent,"
      "offspring,max_matings,matings,relationship,relationship_to_chosen,relationship_to_others_chosen,mean_kinship,"
      "contribution_so_far,contribution_wanted,lack,lacking_value,lacking_merit\n"
      "1,=cmd(),+1,M,2001-04-03,,,2,0,0,yes,1,4,1,0.5,0.5,0,0.25,0.5,0.5,chosen,,\n"
      "2,<img src=x onerror=alert(1)>,bad \xFF\xC3 bytes,F,,,,-1e+22,0.1,0.25,yes,1,4,0,0.5,0.5,0.5,"
      "0.25,0.5,0,not_known,0.1,7\n");
  EXPECT_EQ(
      files.at("trend"),
      R"(birth_time,birth,animals,males,females,sires,dams,inbred,mean_inbreeding,largest_inbreeding,coancestry,completeness,complete_generations,parents_age
1,2001,2,1,1,0,0,0,0,0,,0.5,0,
)");
  EXPECT_EQ(
      files.at("rules"),
      "line,kind,a,b,limit,broken_by,value_gained,merit_gained,relationship_gained,rate_gained,"
      "inbreeding_gained,value_without,merit_without,relationship_without,rate_without,"
      "inbreeding_without\n2,max,=cmd(),,1,3,0.5,,,,,,,,,\n");
  Report without = small_report();
  without.plan.rules = {};
  EXPECT_FALSE(csv_of(without, herd).contains("rules"));
}

TEST(Tables, NameAnimalsByTheHerdBookWhereThereIsOne) {
  const std::string head =
      "identifier,number,name,sex,birth,birth_time,sire,dam,inbreeding,generation_coefficient,complete_generations,completeness,mean_kinship,contribution_last_birth_time,offspring,matings\n";
  SmallHerd herd;
  EXPECT_EQ(csv_of(small_report(), herd).at("animals"), head + R"(7,7,",a",M,1,1,,,0,1,0,0,0,0,1,1
5,5,",a",F,,,,,0.1,1,0.25,0.25,0.25,0.25,1,0
9,9,",a",,3,3,7,5,0.3333333333333333,2,,,,,0,1
)");
  ASSERT_EQ(herd.names.read(sheet_of_rows({{"number", "identifier", "name", "birth"},
                                           {"9", "=C", "", "2003"},
                                           {"7", "A;", "Ann"}})),
            "");
  const auto files = csv_of(small_report(), herd);
  EXPECT_EQ(files.at("animals"), head + R"(A;,7,Ann,M,1,1,,,0,1,0,0,0,0,1,1
5,5,,F,,,,,0.1,1,0.25,0.25,0.25,0.25,1,0
=C,9,,,2003,3,A;,5,0.3333333333333333,2,,,,,0,1
)");
  EXPECT_EQ(files.at("founders"),
            "rank,identifier,name,sex,birth,contribution,cumulative_contribution\n"
            "1,5,,F,,0.5,0.5\n2,A;,Ann,M,1,0.25,0.75\n");
}

}  // namespace
}  // namespace qob::test
