#include "driver/frontier_parameters.h"

#include <algorithm>

#include "core/namelist.h"
#include "driver/sheet_file.h"
#include "ocs/objective.h"
#include "system/paths.h"
#include "system/process.h"

namespace qob {
namespace {

constexpr std::size_t kLongestName = 80;
constexpr std::string_view kNone = "_null_";

class Reader {
 public:
  explicit Reader(const std::string& path) : path_(path) {
    const int status = file_.open(path);
    if (status != 0) refuse(path, error_text(status));
  }

  // False, where the group may be missing: it is.
  bool read(const Group& group, bool may_be_missing = false) {
    int status = file_.find(group);
    if (status == kEndOfFile && may_be_missing) return false;
    const std::string name = "&" + std::string(group.name);
    if (status == kEndOfFile) refuse(path_, name + " is missing");
    const std::string at = path_ + ":" + std::to_string(file_.group_line());
    if (status == 0) status = file_.read_items(group);
    if (status == kEndOfFile) refuse(at, name + " is not closed by \"/\"");
    if (status == kMalformed)
      refuse(path_ + ":" + std::to_string(file_.fault().line), file_.fault().text);
    if (status != 0) refuse(path_, error_text(status));
    for (const NamelistFile::Given& value : file_.given()) {
      if (value.is_cut() && value.width == kLongestName)
        refuse(path_ + ":" + std::to_string(value.line),
               std::string(value.key) + " is longer than 80 characters");
    }
    return true;
  }
  bool read_anywhere(const Group& group, bool may_be_missing = false) {
    file_.rewind();
    return read(group, may_be_missing);
  }

 private:
  std::string path_;
  NamelistFile file_;
};

// The name of a file as it is called from `folder`.
Text<kLongestName> name_from(const std::string& folder, std::string_view key,
                             std::string_view name) {
  const std::string bare(adjustl_trim(name));
  if (bare.starts_with('/') || bare == kNone) return bare;
  const std::string path = path_from(folder, bare);
  if (path.size() > kLongestName) {
    refuse(
        folder,
        std::string(key) + " would be " + path +
            " there, which is longer than 80 characters : expected --output with another folder, or a link to the file");
  }
  return path;
}

// Its keys that count.
Group goal_group(OCSParameters& goal) {
  Group group = group_of(goal);
  const Criterion criterion = criterion_of(goal.optimise);
  std::erase_if(group.keys, [&](const Key& key) {
    return key.name == "dfconstraint" ? criterion != Criterion::kConstraint
           : key.name == "w_merit" || key.name == "w_relationship"
               ? criterion == Criterion::kConstraint || criterion == Criterion::kMerit
               : false;
  });
  return group;
}

}  // namespace

GivenParameters read_parameters(const std::string& path) {
  Reader file(path);
  GivenParameters given;
  Parameters& p = given.groups;
  file.read(group_of(p.data));
  file.read(group_of(p.history));
  for (Contrib request; file.read(group_of(request), true); request = {})
    given.requests.push_back(request);
  file.read_anywhere(group_of(p.relationship));
  file.read_anywhere(group_of(p.ocs));
  file.read_anywhere(group_of(p.algorithm));
  file.read_anywhere(group_of(p.improvement), true);
  file.read_anywhere(group_of(p.rules), true);
  file.read_anywhere(group_of(p.mating));
  return given;
}

std::string results_prefix(const GivenParameters& given) {
  const std::string_view prefix = adjustl_trim(given.groups.data.resultsdirectory);
  const std::string_view name = prefix.substr(prefix.find_last_of("/\\") + 1);  // npos + 1 is 0
  return "./" + std::string(name.empty() ? "QOB_" : name);
}

std::string parameter_file(const GivenParameters& given, const RunParameters& run,
                           const std::string& folder) {
  Parameters p = given.groups;
  p.data.datafile = name_from(folder, "datafile", p.data.datafile);
  p.data.resultsdirectory = results_prefix(given);
  p.data.recodefile = kNone;
  const bool by_pedigree = option_text(p.relationship.source) == "pedigree";
  p.relationship.gfile =
      by_pedigree ? kNone : name_from(folder, "gfile", p.relationship.gfile).trimmed();
  if (p.rules.has_file()) p.rules.rulesfile = name_from(folder, "rulesfile", p.rules.rulesfile);
  p.ocs = run.goal;
  p.algorithm = run.algorithm;
  p.improvement = run.improvement;
  std::string text;
  Unit unit(10);
  unit.open_memory(&text);
  echo(unit, group_of(p.data));
  echo(unit, group_of(p.history));
  for (Contrib request : given.requests) echo(unit, group_of(request));
  echo(unit, group_of(p.relationship));
  echo(unit, goal_group(p.ocs));
  echo(unit, group_of(p.algorithm));
  if (p.improvement.is_wanted()) echo(unit, group_of(p.improvement));
  if (p.rules.is_wanted()) echo(unit, group_of(p.rules));
  echo(unit, group_of(p.mating));
  return text;
}

}  // namespace qob
