#include "driver/first_look.h"

#include <algorithm>
#include <string>
#include <vector>

#include "core/edit.h"
#include "core/finding.h"

namespace qob {
namespace {

constexpr std::size_t kNameWidth = 80;  // of texts that name files

std::string path_of(const Run& run) { return run.files.path(run.parameters.files.qobparmfile); }

// Reads every group that the run will read, from a file and into parameters of its own.
class Look {
 public:
  Look(Units& units, std::string path) : units_(units), path_(std::move(path)) {}

  void look();

 private:
  bool read(const Group& group);
  bool read_anywhere(const Group& group) { return file_.rewind() == 0 && read(group); }
  bool is_given(const Group& group) { return file_.rewind() == 0 && file_.find(group) == 0; }
  void read_contributions();
  void tell(std::int64_t line, const std::string& text) {
    units_.tell(printable(path_) + (line > 0 ? ":" + std::to_string(line) : "") + ": " + text);
  }
  std::string expected_before(const std::string& group);
  void tell_unread_groups();
  void tell_option(std::string_view key, std::string_view value,
                   const std::vector<std::string_view>& known, const std::string& taken);
  void tell_limits();
  void check_widths();
  std::int64_t line_of(std::string_view key) const;

  Units& units_;
  std::string path_;
  NamelistFile file_;
  Parameters p_;
};

// False: the group is missing or cannot be read, which is told.
bool Look::read(const Group& group) {
  const std::string name = "&" + std::string(group.name);
  int status = file_.find(group);
  if (status == kEndOfFile) {
    const std::string before = expected_before(lowercase(group.name));
    tell(0, name + " is missing" + (before.empty() ? "" : " behind &" + before) +
                " : the run will end where it is needed");
  } else if (status == 0) {
    const std::int64_t line = file_.group_line();
    status = file_.read_items(group);
    if (status == kEndOfFile) tell(line, name + " is not closed by \"/\"");
    if (status == kMalformed) tell(file_.fault().line, file_.fault().text);
  }
  if (status == 0) check_widths();
  return status == 0;
}

// Texts that are longer than their variables are cut. What is left of a file's name would name
// another file.
void Look::check_widths() {
  for (const NamelistFile::Given& given : file_.given()) {
    if (!given.is_cut()) continue;
    const std::string key(given.key);
    if (given.width == kNameWidth) {
      handle_error(units_, "ERROR in reading QOB Parameter file, ", key, " is longer than",
                   kNameWidth, " characters");
    }
    tell(given.line, key + " = '" + printable(given.whole) + "' : expected at most " +
                         std::to_string(given.width) + " characters; the first are taken");
  }
}

std::int64_t Look::line_of(std::string_view key) const {
  for (const NamelistFile::Given& given : file_.given()) {
    if (given.key == key) return given.line;
  }
  return 0;
}

// The group behind which one of this name is looked for; "" where it may stand anywhere.
std::string Look::expected_before(const std::string& group) {
  if (group == lowercase(group_of(p_.contrib).name)) return std::string(group_of(p_.history).name);
  if (group == lowercase(group_of(p_.history).name)) return std::string(group_of(p_.data).name);
  return "";
}

// Groups are read once, but for requests.
void Look::tell_unread_groups() {
  const std::string request = lowercase(group_of(p_.contrib).name);
  std::vector<std::string> known, seen;
  for (const Group& group : groups_of(p_)) known.push_back(lowercase(group.name));
  const auto has = [](const std::vector<std::string>& names, const std::string& name) {
    return std::find(names.begin(), names.end(), name) != names.end();
  };
  Finding unread;
  std::string name;
  for (bool in_group = false; file_.next_group(name, in_group) == 0;) {
    const std::string group = lowercase(name), before = expected_before(group);
    std::string why;
    if (!has(known, group)) {
      why = " is no group that is read";
    } else if (!before.empty() && !has(seen, lowercase(before))) {
      why = " is not read : expected behind &" + before;
    } else if (group != request && has(seen, group)) {
      why = " is not read : the first of that name is taken";
    } else {
      seen.push_back(group);
      continue;
    }
    unread.add(file_.group_line(), [&] { return "&" + printable(name) + why; });
  }
  unread.tell(units_, printable(path_));
}

void Look::tell_option(std::string_view key, std::string_view value,
                       const std::vector<std::string_view>& known, const std::string& taken) {
  if (std::find(known.begin(), known.end(), option_text(value)) != known.end()) return;
  std::string text = std::string(key) + " = '" + printable(trim(value)) + "' : expected ";
  for (const std::string_view name : known) {
    text.append(name == known.front()  ? "'"
                : name == known.back() ? "' or '"
                                       : "', '")
        .append(name);
  }
  tell(line_of(key), text + "'; " + taken + " is taken");
}

void Look::tell_limits() {
  const OCSParameters& p = p_.ocs;
  const std::string optimise = option_text(p.optimise);
  if (optimise == "constraint" && (p.dfconstraint > 1.0 || p.dfconstraint < 1.0e-5)) {
    tell(line_of("dfconstraint"), "dfconstraint = " + shortest(p.dfconstraint) +
                                      " : expected 0.00001 to 1; the nearest of them is taken");
  }
  const bool penalty = optimise != "constraint" && optimise != "merit";
  for (const NamelistFile::Given& given : file_.given()) {
    const std::string_view key = given.key;
    const bool used = key == "dfconstraint" ? optimise == "constraint" : penalty;
    if (used || (key != "dfconstraint" && key != "w_merit" && key != "w_relationship")) continue;
    tell(given.line, std::string(key) + " is not used by this way to optimise");
  }
  if (penalty && p.w_relationship > 0.0) {
    tell(line_of("w_relationship"),
         "w_relationship = " + shortest(p.w_relationship) + " : expected 0 or less; -1 is taken");
  }
}

// Requests end with the file.
void Look::read_contributions() {
  int status = 0;
  while (status == 0) {
    const Group group = group_of(p_.contrib);
    status = file_.find(group);
    if (status == 0) status = file_.read_items(group);
    if (status == kMalformed) tell(file_.fault().line, file_.fault().text);
  }
}

void Look::look() {
  if (file_.open(path_) != 0) return;  // that is told when the run opens it
  tell_unread_groups();
  file_.rewind();
  if (!read(group_of(p_.data)) || !read(group_of(p_.history))) return;
  read_contributions();
  if (!read_anywhere(group_of(p_.relationship))) return;
  tell_option("source", p_.relationship.source, {"pedigree", "file"}, "'file'");
  if (p_.relationship.timesteps < 0 || !read_anywhere(group_of(p_.ocs))) return;
  tell_option("optimise", p_.ocs.optimise, {"penalty", "constraint", "merit"}, "'penalty'");
  tell_limits();
  if (p_.ocs.nmatings < 0 || !read_anywhere(group_of(p_.algorithm))) return;
  for (const Group& group : {group_of(p_.improvement), group_of(p_.rules)})
    if (is_given(group) && !read_anywhere(group)) return;
  tell_option("pairing", p_.rules.pairing, {"matingstrategy", "least"}, "'matingstrategy'");
  if (!read_anywhere(group_of(p_.mating))) return;
  tell_option("matingstrategy", p_.mating.matingstrategy, {"random", "mai"}, "'random'");
}

// What was meant by a name that is too long for its variable.
void take_up_whole(const NamelistFile& file, Files& files) {
  for (const NamelistFile::Given& given : file.given()) {
    if (given.is_cut()) files.inputs.push_back(files.path(given.whole));
  }
}

}  // namespace

bool know_inputs(Run& run) {
  std::vector<std::string>& inputs = run.files.inputs;
  inputs.push_back(path_of(run));
  NamelistFile file;
  DataParameters data;
  RelationshipMatrix relationship;  // faults are told when their turn comes
  if (file.open(path_of(run)) != 0) return false;
  const bool has_data = file.read(group_of(data)) == 0;
  take_up_whole(file, run.files);
  inputs.push_back(run.files.path(data.datafile));
  const bool has_source = file.rewind() == 0 && file.read(group_of(relationship)) == 0;
  take_up_whole(file, run.files);
  MatingRules rules;
  if (file.rewind() == 0 && file.read(group_of(rules)) == 0 && rules.has_file())
    inputs.push_back(run.files.path(rules.rulesfile));
  take_up_whole(file, run.files);
  if (!has_source || option_text(relationship.source) != "pedigree") {
    inputs.push_back(run.files.path(relationship.gfile));
  }
  return has_data;
}

void look_through_parameters(Run& run) { Look(run.journal.units, path_of(run)).look(); }

}  // namespace qob
