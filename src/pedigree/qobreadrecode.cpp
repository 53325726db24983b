#include "pedigree/qobreadrecode.h"

#include <algorithm>
#include <array>
#include <limits>
#include <string>
#include <utility>

#include "core/lexer.h"
#include "core/progress.h"
#include "pedigree/data_remarks.h"

namespace qob {
namespace {

constexpr std::size_t kLongestLine = std::size_t{1} << 20U;  // of which remarks are made

constexpr std::int32_t kProgressStep = 10000;
constexpr std::int32_t kMostAnimals = std::numeric_limits<std::int32_t>::max();

struct Reader {
  explicit Reader(Run& run)
      : parameters(run.parameters.data),
        path(run.files.path(parameters.datafile)),
        units(run.journal.units) {}

  const DataParameters& parameters;
  const std::string path;
  Units& units;
  Pedigree pedigree;
  InputFile file{kLongestLine};
  DataRemarks remarks;
  Progress progress{"Data file"};
  bool faults = false;  // of the pass under way

  void first_fault(std::string_view title) {
    if (!faults) write_list(units.log, title);
    faults = true;
  }
};

void open(Reader& reader) {
  Units& units = reader.units;
  const Text<80>& name = reader.parameters.datafile;
  if (!InputFile::exists(reader.path)) {
    handle_error(units, "ERROR File with data not found: ", name);
  }
  const int status = reader.file.open(reader.path);
  if (status != 0) {
    handle_error(units, ErrorValue{status},
                 "ERROR Could not open DataFile in Subroutine ReadRecode", name);
  }
  write_list(units.out, "Reading datafile");
  write(units.log, "(/,A)", "Assumes the following input in datafile :");
  write(units.log, "(A,/)",
        " Animal_id Sire_is Dam_id sex birth_time max_matings ebv optional_text");
}

// Numbers a parent of record `nobs` that the record before did not have.
void number_parent(Reader& reader, std::int32_t id) {
  Pedigree& pedigree = reader.pedigree;
  Units& units = reader.units;
  const IdTree::Found parent = pedigree.ids.build_tree(id, pedigree.maxid);
  if (parent.in_tree) return;
  write_list(units.log, "Inserted parent ", id, " as ", parent.number);
  if (reader.parameters.ignoreparentalpedigreeerrors) return;
  reader.first_fault("Potential errors in pedigree :");
  both_list(units.out, units.log, " Parent not recorded :  ", id, " at record ", pedigree.nobs);
}

void number_animal(Reader& reader, std::int32_t id) {
  Pedigree& pedigree = reader.pedigree;
  Units& units = reader.units;
  if (!pedigree.ids.build_tree(id, pedigree.maxid).in_tree) return;
  reader.first_fault("Potential errors in pedigree :");
  both_list(units.out, units.log, " Offspring already recorded :  ", id, " at record ",
            pedigree.nobs);
}

// What of a line is read.
std::string_view record_of(std::string_view line) { return line.substr(0, kLineWidth); }

// The line that ended the data, and those behind it.
void note_unread(Reader& reader, std::string_view line) {
  for (std::int64_t number = std::int64_t{reader.pedigree.nobs} + 1;; ++number) {
    reader.remarks.add_unread_line(number, line);
    if (reader.file.next_line(line) != 0) return;
  }
}

// First pass: gives every animal its number. A line that holds fewer than three values ends the
// data; a record whose animal cannot be read is counted and left to the second pass.
void number_animals(Reader& reader) {
  Pedigree& pedigree = reader.pedigree;
  std::array<std::int32_t, 3> id = {0, 0, 0};         // animal, sire, dam
  std::array<std::int32_t, 3> before = {-1, -1, -1};  // of the record before
  std::string_view line;
  int status;
  while ((status = reader.file.next_line(line)) == 0) {
    const std::string_view record = record_of(line);
    const int read = read_list(record, id[0], id[1], id[2]);
    if (read == kEndOfFile) return note_unread(reader, line);
    if (pedigree.nobs % kProgressStep == 0) reader.progress.show(0.5 * reader.file.share_read());
    if (std::max(pedigree.nobs, pedigree.maxid) > kMostAnimals - 3) {
      handle_error(reader.units, "ERROR More animals than", kMostAnimals,
                   " in file with data: ", reader.parameters.datafile);
    }
    ++pedigree.nobs;
    if (read == kMalformed) reader.remarks.add_unreadable(pedigree.nobs);
    if (read == kMalformed && read_list(record, id[0]) == kMalformed) continue;
    for (std::size_t k = 1; k <= 2; ++k) {
      if (id[k] != before[k] && id[k] != 0) number_parent(reader, id[k]);
    }
    number_animal(reader, id[0]);
    before = id;
  }
  if (status != kEndOfFile) {
    handle_error(reader.units, ErrorValue{status},
                 "ERROR in Read statement in Subroutine ReadRecode");
  }
}

// What a record holds; values that it lacks are 0, its sex -1 and its text ".".
struct Record {
  std::array<std::int32_t, 3> id = {0, 0, 0};
  std::int32_t sex = -1, btime = 0, matings = 0;
  double ebv = 0.0;
  Text<15> txt = ".";
};

[[noreturn]] void stop_at_unreadable(Reader& reader, std::string_view line, int status) {
  Units& units = reader.units;
  write_list(units.log, "ERROR");
  write_list(units.log, "Record: ", printable(line));
  handle_error(units, ErrorValue{status}, "ERROR in Read statement in Subroutine ReadRecode");
}

Record read_record(Reader& reader, std::int32_t r) {
  std::string_view whole;
  const int read = reader.file.next_line(whole);
  if (read != 0) stop_at_unreadable(reader, "", read);
  const std::string_view line = record_of(whole);
  Record v;
  std::string_view rest;
  int status = read_list_before(rest, line, v.id[0], v.id[1], v.id[2], v.sex, v.btime, v.matings,
                                v.ebv, v.txt);
  if (status == kEndOfFile) {  // before the text, which may be missing, or before a number
    status =
        read_list_before(rest, line, v.id[0], v.id[1], v.id[2], v.sex, v.btime, v.matings, v.ebv);
  }
  reader.remarks.add_record(r, whole, rest);
  if (status == kEndOfFile) {
    Units& units = reader.units;
    both_list(units.out, units.log, "Warning : Record ", r, " is not complete");
    write_list(units.log, "Record : ", printable(line));
    reader.faults = true;
  }
  if (status == kMalformed) stop_at_unreadable(reader, line, status);
  return v;
}

// A parent without a record of its own.
void fill_inserted_parent(Reader& reader, std::int32_t p, std::int32_t id, std::int32_t offspring,
                          std::int32_t r) {
  Pedigree& pedigree = reader.pedigree;
  pedigree.oldped(p, 1) = id;
  pedigree.sex(p) = 0;
  pedigree.btime(p) = kNoBirthTime;
  pedigree.matings(p) = 0;
  pedigree.ebv(p) = 0.0;
  pedigree.txt(p) = "ID_Inserted";
  if (pedigree.matings(offspring) <= 0) return;
  Units& units = reader.units;
  both_list(units.out, units.log, "WARNING: Inserted parent of candidate in record ", r);
  both_list(
      units.out, units.log,
      "         please check as this can influence age profile use in optimisation of contributions");
}

// Enters parent k (1 sire, 2 dam) of animal i, read from record r.
void enter_parent(Reader& reader, int k, std::int32_t i, std::int32_t r) {
  Pedigree& pedigree = reader.pedigree;
  const std::int32_t id = pedigree.oldped(i, k + 1);
  if (id == 0) return;
  const std::int32_t guess = i > 1 ? pedigree.newped(k, i - 1) : 0;  // full sibs follow one another
  const IdTree::Found parent = pedigree.ids.find(id, guess);
  const std::int32_t p = parent.number;
  // A parent that follows its offspring was not recorded when its offspring was numbered.
  if (!parent.in_tree || p >= i) {
    handle_error(reader.units, "ERROR when reading data, unrecognised parent");
  }
  if (pedigree.oldped(p, 1) == 0) fill_inserted_parent(reader, p, id, i, r);
  pedigree.newped(k, i) = p;
  if (pedigree.btime(p) < pedigree.btime(i)) return;
  reader.first_fault("Errors in data :");
  const std::string fault =
      format_list(" Birth times inconsistent. Offspring :  ", pedigree.oldped(i, 1),
                  " parent : ", pedigree.oldped(p, 1), " at record ", r);
  // The second number is not the parent's birth time but 0: so because it is looked up with the
  // indices of the pedigree exchanged, where no entry is, and those who compare logs know it so.
  reader.units.out.write_line(fault);
  reader.units.log.write_line(fault + formatted("(2I12)", pedigree.btime(i), 0));
}

// Second pass: the values of every animal.
void read_values(Reader& reader) {
  Pedigree& pedigree = reader.pedigree;
  const std::int32_t n = pedigree.maxid;
  allocate(reader.units, "ERROR in allocating memory in Subroutine ReadRecode (2)", [&] {
    pedigree.oldped.assign(n, 3, 0);
    pedigree.newped.assign(2, n, 0);
    pedigree.sex.assign(n, 0);
    pedigree.btime.assign(n, 0);
    pedigree.matings.assign(n, 0);
    pedigree.ebv.assign(n, 0.0);
    pedigree.txt.assign(n, "");
  });
  const int status = reader.file.rewind();
  if (status != 0) stop_at_unreadable(reader, "", status);
  std::int32_t i = 0;
  for (std::int32_t r = 1; r <= pedigree.nobs; ++r) {
    if (r % kProgressStep == 0) reader.progress.show(0.5 + 0.5 * reader.file.share_read());
    const Record record = read_record(reader, r);
    // Animals are numbered in the order of their records, but for inserted parents.
    i = reader.pedigree.ids.find(record.id[0], i + 1).number;
    const bool changed = i == 0 || pedigree.oldped(i, 1) != 0;  // since the first pass
    if (changed) stop_at_unreadable(reader, "", kMalformed);
    for (int k = 0; k < 3; ++k) pedigree.oldped(i, k + 1) = record.id[static_cast<std::size_t>(k)];
    pedigree.sex(i) = record.sex;
    pedigree.btime(i) = record.btime;
    pedigree.matings(i) = record.matings;
    pedigree.ebv(i) = record.ebv;
    pedigree.txt(i) = record.txt;
    for (int k = 1; k <= 2; ++k) enter_parent(reader, k, i, r);
    reader.remarks.add_animal(r, pedigree, i);
  }
  for (i = 1; i <= n; ++i) {
    if (pedigree.oldped(i, 1) == 0) stop_at_unreadable(reader, "", kMalformed);
  }
}

void write_recoded_ids(Run& run, const Pedigree& pedigree) {
  Unit unit(15);
  openfilerecodedids(run, unit);
  for (std::int32_t i = 1; i <= pedigree.maxid; ++i)
    printrecodedids(unit, pedigree.oldped(i, 1), i);
  closefilerecodedids(run, unit);
  write(run.journal.units.log, "(A,/)", "Recoded Animal id's written to file");
}

}  // namespace

void openfilerecodedids(Run& run, Unit& unit) {
  Units& units = run.journal.units;
  const Text<80>& name = run.parameters.data.recodefile;
  const std::string path = run.files.path(name);
  claim_output(run, path);
  units.take_up(unit);
  const int status = unit.open_write(path, OutputFile::Show::kWhenComplete);
  if (status != 0) {
    handle_error(units, ErrorValue{status}, "ERROR Could not open file for recoded ID's", name);
  }
  write(unit, "(2A10)", " -Old Id- ", " -New ID- ");
}

void printrecodedids(Unit& unit, std::int32_t old_id, std::int32_t new_id) {
  write(unit, "(2I10)", old_id, new_id);
}

void closefilerecodedids(Run& run, Unit& unit) {
  Units& units = run.journal.units;
  const int status = unit.close();
  units.tell_unshown(unit);
  if (status == 0) return;
  handle_error(units, ErrorValue{status}, "ERROR Could not close file for recoded ID's",
               run.parameters.data.recodefile);
}

Pedigree readrecode(Run& run) {
  Reader reader(run);
  Units& units = run.journal.units;
  const Pedigree& pedigree = reader.pedigree;
  open(reader);
  allocate(units, "Error in allocating memory for tree", [&] { number_animals(reader); });
  const std::string file = printable(adjustl_trim(reader.parameters.datafile));
  reader.remarks.tell_of_numbering(units, file);
  both_list(units.out, units.log, "Datafile read with ", pedigree.nobs, " records and ",
            pedigree.maxid, " individuals");
  if (reader.faults) handle_error(units, "ERRORs found in pedigree, See log file");
  if (pedigree.maxid == 0 && pedigree.nobs == 0) {
    handle_error(units, "ERROR No animals in file with data: ", reader.parameters.datafile);
  }
  reader.faults = false;
  read_values(reader);
  reader.remarks.tell_of_values(units, file);
  if (adjustl_trim(reader.parameters.recodefile) != "_null_") write_recoded_ids(run, pedigree);
  if (reader.faults) handle_error(units, "ERRORs found in data file, See log file");
  write_list(units.out, "Animals renumbered");
  write(units.log, "(A,/)", "Animal id's recoded");
  return std::move(reader.pedigree);
}

}  // namespace qob
