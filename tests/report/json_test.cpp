#include "report/json.h"

#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>

#include "report/small_report.h"

namespace qob::test {
namespace {

using nlohmann::json;

bool is_of_type(const json& value, const std::string& type) {
  return type == "integer"   ? value.is_number_integer()
         : type == "boolean" ? value.is_boolean()
                             : type == value.type_name();
}

// Expects the value to have the fields that the schema has at this place, and no others.
void expect_described(const json& root, const json& schema, const json& value,
                      const std::string& at) {
  if (schema.contains("$ref")) {
    const std::string pointer = schema["$ref"].get<std::string>().substr(1);
    return expect_described(root, root[json::json_pointer(pointer)], value, at);
  }
  if (schema.contains("const")) {
    EXPECT_EQ(schema["const"], value) << at;
  }
  if (schema.contains("enum")) {
    EXPECT_NE(std::find(schema["enum"].begin(), schema["enum"].end(), value), schema["enum"].end())
        << at << " " << value;
  }
  if (schema.contains("type")) {
    const json types = schema["type"].is_array() ? schema["type"] : json{schema["type"]};
    EXPECT_TRUE(std::any_of(types.begin(), types.end(),
                            [&](const json& type) { return is_of_type(value, type); }))
        << at << " " << value;
  }
  if (value.is_array() && schema.contains("items") && schema["items"].is_object()) {
    EXPECT_TRUE(!value.empty()) << at << ": the small report tells nothing of it";
    for (const json& item : value) expect_described(root, schema["items"], item, at + "[]");
  }
  if (!value.is_object() || !schema.contains("properties")) return;
  std::vector<std::string> keys;
  for (const auto& [key, field] : value.items()) {
    keys.push_back(key);
    EXPECT_TRUE(schema["properties"].contains(key)) << at << "/" << key;
    if (schema["properties"].contains(key))
      expect_described(root, schema["properties"][key], field, at + "/" + key);
  }
  for (const json& key : schema["required"]) EXPECT_TRUE(value.contains(key)) << at << "/" << key;
  EXPECT_EQ(schema["required"].size(), schema["properties"].size()) << at;
}

TEST(Json, HasTheFieldsThatItsSchemaDescribes) {
  const json schema = json::parse(std::ifstream(QOB_SOURCE_DIR "/docs/result.schema.json"));
  const std::vector<Report> reports(2, small_report());
  expect_described(schema, schema["$defs"]["result"], json::parse(json_of(reports[0])), "");
  expect_described(schema, schema["$defs"]["comparison"], json::parse(comparison_json(reports)),
                   "");
}

TEST(Json, ReadsBackAsItWas) {
  const json result = json::parse(json_of(small_report()));
  EXPECT_EQ(result["title"], "A \"herd\"\nof two lines </script>");
  EXPECT_EQ(result["animals"], json::parse(R"json({"number":[7,5,9],
      "id":["=cmd()","<img src=x onerror=alert(1)>","\u00D8, 12\""],
      "name":["+1","bad \uFFFD\uFFFD bytes","@line\nfeed"],
      "birth":["2001-04-03","","3"],"birth_time":[1,null,3],"sex":[1,2,2],"sire":[-1,-1,0],
      "dam":[-1,-1,1],"f":[0.0,0.1,0.33333333],"completeness":[0.0,0.25,1.0]
})json"));
  EXPECT_EQ(result["plan"]["matings"]["common"], json::parse("[[[0,0.125],[1,0.0625]]]"));
  EXPECT_EQ(result["plan"]["alternatives"], json::parse(R"([{"dam":2,"sires":[0],"f":[1e-300]}])"));
  EXPECT_EQ(result["plan"]["matrix"], json::parse(R"({"sires":[0],"dams":[2,1],"f":[25000,0]})"));
  EXPECT_EQ(result["plan"]["value"]["rate"], json());
  EXPECT_EQ(result["plan"]["rules"]["decided"], json::parse("[0]"));
  EXPECT_EQ(result["plan"]["rules"]["list"][0]["gain"]["value"], 0.5);
  EXPECT_EQ(result["plan"]["rules"]["list"][0]["without"]["value"], json());
  EXPECT_EQ(result["candidates"]["merit"], json::parse("[2.0,-1e22]"));
  EXPECT_EQ(result["candidates"]["lack"], json::parse(R"(["chosen","not_known"])"));
  EXPECT_EQ(result["candidates"]["lacking_value"], json::parse("[null,0.1]"));
  EXPECT_EQ(result["warnings"][0]["values"], json::parse(R"({"ne":12.5,"limit":50.0})"));
  EXPECT_EQ(result["making"]["files"]["bytes"][0], 5'000'000'000);
}

TEST(Json, WithoutAPlanOrRulesIsNullThere) {
  EXPECT_EQ(json::parse(json_of(Report()))["plan"], json());
  Report report;
  report.has_plan = true;
  EXPECT_EQ(json::parse(json_of(report))["plan"]["rules"], json());
}

}  // namespace
}  // namespace qob::test
