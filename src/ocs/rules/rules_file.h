// Reading a file of rules. The program itself has no library that reads CSV, and needs none for
// this form of it: no cell goes on in another line.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "ocs/rules/rule.h"

namespace qob {

// What is wrong on a line of a file of rules.
struct RuleFault {
  std::int64_t line = 0;
  std::string text;
  bool operator==(const RuleFault&) const = default;
};

struct RulesFile {
  std::vector<Rule> rules;
  std::vector<RuleFault> faults;
};

inline constexpr std::string_view kRulesHeader = "kind,a,b,value";

// From the bytes of a file, in any encoding of text files. The separator is a comma, a semicolon or
// a tab, as behind "kind" in its header.
RulesFile rules_of(std::string bytes);

// Reads a file. Returns 0 or the system's error number.
int read_rules(const std::string& path, RulesFile& file);

}  // namespace qob
