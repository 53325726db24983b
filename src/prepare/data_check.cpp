#include "prepare/data_check.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>
#include <vector>

#include "core/finding.h"
#include "core/lexer.h"
#include "core/stop.h"
#include "ocs/remarks.h"
#include "pedigree/data_remarks.h"
#include "pedigree/pedigree.h"
#include "system/input_file.h"
#include "system/process.h"

namespace qob {
namespace {

constexpr std::size_t kShown = 5;  // of a kind
constexpr std::size_t kLongestLine = std::size_t{1} << 20U;
constexpr std::int32_t kMostRecords = 1'000'000'000;

struct Record {
  std::int64_t line;
  std::array<std::int32_t, 3> id = {0, 0, 0};  // animal, sire, dam
  std::int32_t sex = -1, btime = 0, matings = 0;
  double ebv = 0.0;
  Text<15> txt = ".";
};

class DataCheck {
 public:
  DataCheck(const std::string& path, Units& units) : path_(path), units_(units) {}

  bool check() {
    read_records();
    number_animals();
    enter_parents();
    remark_on_candidates();
    return tell();
  }

 private:
  void read_records() {
    InputFile file(kLongestLine);
    int status = file.open(path_);
    std::string_view line;
    for (std::int64_t number = 1; status == 0 && (status = file.next_line(line)) == 0; ++number) {
      if (ended_ || !read_record(number, line)) {
        ended_ = true;
        remarks_.add_unread_line(number, line);
      }
    }
    if (status != kEndOfFile) stop(printable(path_) + ": " + error_text(status));
  }

  // False: the line ends the data.
  bool read_record(std::int64_t number, std::string_view line) {
    const std::string_view text = line.substr(0, kLineWidth);
    Record r{number};
    std::string_view rest;
    if (read_list(text, r.id[0], r.id[1], r.id[2]) == kEndOfFile) return false;
    int status = read_list_before(rest, text, r.id[0], r.id[1], r.id[2], r.sex, r.btime, r.matings,
                                  r.ebv, r.txt);
    if (status == kEndOfFile)
      status =
          read_list_before(rest, text, r.id[0], r.id[1], r.id[2], r.sex, r.btime, r.matings, r.ebv);
    remarks_.add_record(number, line, rest);
    if (status == kEndOfFile) {
      incomplete_.add(number, [] { return "fewer than seven values"; });
    } else if (status != 0) {
      unreadable_.add(number, [&] { return unreadable_value(text); });
    } else if (std::ssize(records_) < kMostRecords) {
      records_.push_back(r);
    }
    return true;
  }

  // The first value that stops the reading.
  static std::string unreadable_value(std::string_view text) {
    Record r{0};
    RecordReader reader(text);
    const auto fault = [](const char* what) {
      return std::string(what) + " cannot be read : expected ";
    };
    for (std::size_t k = 0; k < 3; ++k) {
      if (!reader.read(r.id[k]))
        return fault(std::array{"Animal_id", "Sire_is", "Dam_id"}[k]) + "an integer";
    }
    if (!reader.read(r.sex)) return fault("sex") + "1 or 2";
    if (!reader.read(r.btime)) return fault("birth_time") + "a whole time step";
    if (!reader.read(r.matings)) return fault("max_matings") + "an integer";
    return reader.read(r.ebv) ? fault("optional_text") + "a word or a text in quotes"
                              : fault("ebv") + "a number";
  }

  // The first record of an identifier counts.
  void number_animals() {
    Pedigree& p = pedigree_;
    std::vector<Record> kept;
    for (const Record& r : records_) {
      const IdTree::Found animal = p.ids.build_tree(r.id[0], p.maxid);
      if (!animal.in_tree) {
        kept.push_back(r);
        continue;
      }
      doubled_.add(r.line, [&] {
        return "Animal_id " + std::to_string(r.id[0]) +
               (r.id[0] == 0
                    ? " is that of unknown parents"
                    : " is recorded in line " +
                          std::to_string(kept[static_cast<std::size_t>(animal.number) - 1].line) +
                          " already");
      });
    }
    records_ = std::move(kept);
    const std::int32_t n = p.maxid;
    p.oldped.assign(n, 3, 0);
    p.newped.assign(2, n, 0);
    p.sex.assign(n, 0);
    p.btime.assign(n, 0);
    p.matings.assign(n, 0);
    p.txt.assign(n, "");
  }

  const Record& record(std::int32_t i) const { return records_[static_cast<std::size_t>(i) - 1]; }

  void enter_parents() {
    Pedigree& p = pedigree_;
    for (std::int32_t i = 1; i <= p.maxid; ++i) {
      const Record& r = record(i);
      for (int k = 0; k < 3; ++k) p.oldped(i, k + 1) = r.id[static_cast<std::size_t>(k)];
      p.sex(i) = r.sex;
      p.btime(i) = r.btime;
      p.matings(i) = r.matings;
      p.txt(i) = r.txt;
    }
    for (std::int32_t i = 1; i <= p.maxid; ++i) {
      for (int k = 1; k <= 2; ++k) enter_parent(i, k);
      remarks_.add_animal(record(i).line, p, i);
    }
  }

  void enter_parent(std::int32_t i, int k) {
    Pedigree& p = pedigree_;
    const std::int32_t id = p.oldped(i, k + 1);
    if (id == 0) return;
    const std::int64_t line = record(i).line;
    const std::string name = (k == 1 ? "sire " : "dam ") + std::to_string(id);
    const IdTree::Found parent = p.ids.find(id);
    if (!parent.in_tree) {
      return unrecorded_.add(line, [&] { return name + " has no record"; });
    }
    if (parent.number == i) {
      return misplaced_.add(line, [&] { return name + " is the animal itself"; });
    }
    if (parent.number > i) {
      misplaced_.add(line, [&] {
        return name + " has its record in line " + std::to_string(record(parent.number).line) +
               " : expected before its offspring";
      });
    }
    p.newped(k, i) = parent.number;
    if (p.btime(parent.number) < p.btime(i)) return;
    younger_.add(line, [&] {
      return name + " is born in " + std::to_string(p.btime(parent.number)) +
             ", its offspring in " + std::to_string(p.btime(i)) +
             " : expected an earlier time step";
    });
  }

  // What the selection says of those that it would choose from.
  void remark_on_candidates() {
    const Pedigree& p = pedigree_;
    for (std::int32_t i = 1; i <= p.maxid; ++i) {
      if (p.matings(i) <= 0) continue;
      if (p.sex(i) != kMale && p.sex(i) != kFemale) {
        sexless_.add(record(i).line, [&] {
          return "sex " + std::to_string(p.sex(i)) + " of a candidate : expected 1 or 2";
        });
      } else {
        ++(p.sex(i) == kMale ? candidates_.nmcands : candidates_.nfcands);
      }
    }
    candidates_.ncands = candidates_.nmcands + candidates_.nfcands;
    candidates_.unknown_parents.assign(candidates_.ncands, 0);
    std::int32_t next[2] = {0, candidates_.nmcands};
    for (std::int32_t i = 1; i <= p.maxid; ++i) {
      if (p.matings(i) <= 0 || (p.sex(i) != kMale && p.sex(i) != kFemale)) continue;
      candidates_.unknown_parents(++next[p.sex(i) - 1]) =
          p.oldped(i, 2) == 0 || p.oldped(i, 3) == 0 ? 1 : 0;
    }
    if (p.maxid > 0) candidates_.birth_time = *std::max_element(p.btime.begin(), p.btime.end()) + 1;
  }

  // Faults, then remarks.
  bool tell() {
    const std::string file = printable(path_);
    std::int64_t faults = 0;
    for (const Finding* finding :
         {&unreadable_, &incomplete_, &doubled_, &misplaced_, &unrecorded_, &younger_, &sexless_}) {
      finding->tell(units_, file);
      faults += finding->count();
    }
    remarks_.tell_of_numbering(units_, file);
    remarks_.tell_of_values(units_, file);
    if (candidates_.ncands > 0) {
      remark_on_last_time_step(pedigree_, candidates_, units_);
      remark_on_unknown_parents(candidates_, units_);
    }
    units_.tell(file + ": " + std::to_string(records_.size()) + " animals, " +
                std::to_string(candidates_.nmcands) + " male and " +
                std::to_string(candidates_.nfcands) +
                " female candidates, faults that stop a run: " + std::to_string(faults));
    return faults == 0;
  }

  const std::string& path_;
  Units& units_;
  bool ended_ = false;
  std::vector<Record> records_;  // by animal, once doubles are left out
  Pedigree pedigree_;
  Candidates candidates_;
  DataRemarks remarks_{kShown};
  Finding unreadable_{kShown}, incomplete_{kShown}, doubled_{kShown}, misplaced_{kShown};
  Finding unrecorded_{kShown}, younger_{kShown}, sexless_{kShown};
};

}  // namespace

bool check_data_file(const std::string& path, Units& units) {
  return DataCheck(path, units).check();
}

}  // namespace qob
