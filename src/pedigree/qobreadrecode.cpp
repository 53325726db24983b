#include "pedigree/qobreadrecode.h"

#include <array>
#include <string>

#include "core/lexer.h"

namespace qob {
namespace {

constexpr std::size_t kLineWidth = 120;  // what follows is not looked at

struct Reader {
  explicit Reader(Model& m) : model(m), pedigree(m.pedigree) {}

  Model& model;
  Pedigree& pedigree;
  InputFile file{kLineWidth};
  bool faults = false;  // of the pass under way

  void first_fault(std::string_view title) {
    if (!faults) write_list(model.units.log, title);
    faults = true;
  }
};

void open(Reader& reader) {
  Model& model = reader.model;
  const Text<80>& name = model.parameters.data.datafile;
  const std::string path(adjustl_trim(name));
  if (!InputFile::exists(path)) {
    handle_error(model, format_list("ERROR File with data not found: ", name));
  }
  const int status = reader.file.open(path);
  if (status != 0) {
    handle_error(model, format_list("ERROR Could not open DataFile in Subroutine ReadRecode", name),
                 status);
  }
  write_list(model.units.out, "Reading datafile");
  write(model.units.log, "(/,A)", "Assumes the following input in datafile :");
  write(model.units.log, "(A,/)",
        " Animal_id Sire_is Dam_id sex birth_time max_matings ebv optional_text");
}

// Numbers a parent of record `nobs` that the record before did not have.
void number_parent(Reader& reader, std::int32_t id) {
  Pedigree& pedigree = reader.pedigree;
  Units& units = reader.model.units;
  const IdTree::Found parent = reader.model.ids.build_tree(id, pedigree.maxid);
  if (parent.in_tree) return;
  write_list(units.log, "Inserted parent ", id, " as ", parent.number);
  if (reader.model.parameters.data.ignoreparentalpedigreeerrors) return;
  reader.first_fault("Potential errors in pedigree :");
  both_list(units.out, units.log, " Parent not recorded :  ", id, " at record ", pedigree.nobs);
}

void number_animal(Reader& reader, std::int32_t id) {
  Pedigree& pedigree = reader.pedigree;
  Units& units = reader.model.units;
  if (!reader.model.ids.build_tree(id, pedigree.maxid).in_tree) return;
  reader.first_fault("Potential errors in pedigree :");
  both_list(units.out, units.log, " Offspring already recorded :  ", id, " at record ",
            pedigree.nobs);
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
    const int read = read_list(line, id[0], id[1], id[2]);
    if (read == kEndOfFile) return;
    ++pedigree.nobs;
    if (read == kMalformed && read_list(line, id[0]) == kMalformed) continue;
    for (std::size_t k = 1; k <= 2; ++k) {
      if (id[k] != before[k] && id[k] != 0) number_parent(reader, id[k]);
    }
    number_animal(reader, id[0]);
    before = id;
  }
  if (status != kEndOfFile) {
    handle_error(reader.model, format_list("ERROR in Read statement in Subroutine ReadRecode"),
                 status);
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
  Model& model = reader.model;
  write_list(model.units.log, "ERROR");
  write_list(model.units.log, "Record: ", printable(line));
  handle_error(model, format_list("ERROR in Read statement in Subroutine ReadRecode"), status);
}

Record read_record(Reader& reader, std::int32_t r) {
  std::string_view line;
  const int read = reader.file.next_line(line);
  if (read != 0) stop_at_unreadable(reader, "", read);
  Record v;
  int status = read_list(line, v.id[0], v.id[1], v.id[2], v.sex, v.btime, v.matings, v.ebv, v.txt);
  if (status == kEndOfFile) {  // before the text, which may be missing, or before a number
    status = read_list(line, v.id[0], v.id[1], v.id[2], v.sex, v.btime, v.matings, v.ebv);
  }
  if (status == kEndOfFile) {
    Units& units = reader.model.units;
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
  Units& units = reader.model.units;
  both_list(units.out, units.log, "WARNING: Inserted parent of candidate in record ", r);
  both_list(
      units.out, units.log,
      "         please check as this can influence age profile use in optimisation of contributions");
}

// Enters parent k (1 sire, 2 dam) of animal i, read from record r.
void enter_parent(Reader& reader, int k, std::int32_t i, std::int32_t r) {
  Pedigree& pedigree = reader.pedigree;
  Model& model = reader.model;
  const std::int32_t id = pedigree.oldped(i, k + 1);
  if (id == 0) return;
  const std::int32_t guess = i > 1 ? pedigree.newped(k, i - 1) : 0;  // full sibs follow one another
  const IdTree::Found parent = model.ids.find(id, guess);
  const std::int32_t p = parent.number;
  // A parent that follows its offspring was not recorded when its offspring was numbered.
  if (!parent.in_tree || p >= i) {
    handle_error(model, format_list("ERROR when reading data, unrecognised parent"));
  }
  if (pedigree.oldped(p, 1) == 0) fill_inserted_parent(reader, p, id, i, r);
  pedigree.newped(k, i) = p;
  if (pedigree.btime(p) < pedigree.btime(i)) return;
  reader.first_fault("Errors in data :");
  const std::string fault =
      format_list(" Birth times inconsistent. Offspring :  ", pedigree.oldped(i, 1),
                  " parent : ", pedigree.oldped(p, 1), " at record ", r);
  model.units.out.write_line(fault);
  model.units.log.write_line(fault + format_record("(2I12)", pedigree.btime(i), 0));
}

// Second pass: the values of every animal.
void read_values(Reader& reader) {
  Pedigree& pedigree = reader.pedigree;
  const std::int32_t n = pedigree.maxid;
  allocate(reader.model, "ERROR in allocating memory in Subroutine ReadRecode (2)", [&] {
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
    const Record record = read_record(reader, r);
    // Animals are numbered in the order of their records, but for inserted parents.
    i = reader.model.ids.find(record.id[0], i + 1).number;
    const bool changed = i == 0 || pedigree.oldped(i, 1) != 0;  // since the first pass
    if (changed) stop_at_unreadable(reader, "", kMalformed);
    for (int k = 0; k < 3; ++k) pedigree.oldped(i, k + 1) = record.id[static_cast<std::size_t>(k)];
    pedigree.sex(i) = record.sex;
    pedigree.btime(i) = record.btime;
    pedigree.matings(i) = record.matings;
    pedigree.ebv(i) = record.ebv;
    pedigree.txt(i) = record.txt;
    for (int k = 1; k <= 2; ++k) enter_parent(reader, k, i, r);
  }
  for (i = 1; i <= n; ++i) {
    if (pedigree.oldped(i, 1) == 0) stop_at_unreadable(reader, "", kMalformed);
  }
}

void write_recoded_ids(Model& model) {
  Unit unit(15);
  openfilerecodedids(model, unit);
  for (std::int32_t i = 1; i <= model.pedigree.maxid; ++i) {
    printrecodedids(unit, model.pedigree.oldped(i, 1), i);
  }
  closefilerecodedids(model, unit);
  write(model.units.log, "(A,/)", "Recoded Animal id's written to file");
}

}  // namespace

void openfilerecodedids(Model& model, Unit& unit) {
  const Text<80>& name = model.parameters.data.recodefile;
  const std::string path(adjustl_trim(name));
  claim_output(model, path);
  const int status = unit.open_write(path, OutputFile::Show::kWhenComplete);
  if (status != 0) {
    handle_error(model, format_list("ERROR Could not open file for recoded ID's", name), status);
  }
  write(unit, "(2A10)", " -Old Id- ", " -New ID- ");
}

void printrecodedids(Unit& unit, std::int32_t old_id, std::int32_t new_id) {
  write(unit, "(2I10)", old_id, new_id);
}

void closefilerecodedids(Model& model, Unit& unit) {
  const int status = unit.close();
  if (status != 0) {
    handle_error(model,
                 format_list("ERROR Could not close file for recoded ID's",
                             model.parameters.data.recodefile),
                 status);
  }
}

void readrecode(Model& model) {
  Reader reader(model);
  Units& units = model.units;
  Pedigree& pedigree = model.pedigree;
  open(reader);
  model.ids.initialise_tree();
  allocate(model, "Error in allocating memory for tree", [&] { number_animals(reader); });
  both_list(units.out, units.log, "Datafile read with ", pedigree.nobs, " records and ",
            pedigree.maxid, " individuals");
  if (reader.faults) handle_error(model, format_list("ERRORs found in pedigree, See log file"));
  if (pedigree.maxid == 0 && pedigree.nobs == 0) {
    handle_error(
        model, format_list("ERROR No animals in file with data: ", model.parameters.data.datafile));
  }
  reader.faults = false;
  read_values(reader);
  if (adjustl_trim(model.parameters.data.recodefile) != "_null_") write_recoded_ids(model);
  if (reader.faults) handle_error(model, format_list("ERRORs found in data file, See log file"));
  reader.file.close();
  write_list(units.out, "Animals renumbered");
  write(units.log, "(A,/)", "Animal id's recoded");
}

}  // namespace qob
