#include "analysis/relationship_file.h"

#include <charconv>

#include "analysis/kernels/relationship_text.h"
#include "core/lexer.h"

namespace qob {
namespace {

constexpr std::size_t kLineWidth = 120;                      // what follows is not read
constexpr std::size_t kLongestLine = std::size_t{1} << 20U;  // of which remarks are made
constexpr std::size_t kIntegerWidth = 11;                    // of 32 bits with sign
constexpr std::int64_t kProgressStep = 1'000'000;

}  // namespace

void write_relationship(Unit& unit, std::int32_t id1, std::int32_t id2, double a) {
  char line[2 * kIntegerWidth + kRelationshipWidth + 3];
  char* at = line;
  for (const std::int32_t id : {id1, id2}) {
    *at++ = ' ';
    at = std::to_chars(at, at + kIntegerWidth, id).ptr;
  }
  *at++ = ' ';
  at = put_relationship(at, a);
  unit.write_line({line, static_cast<std::size_t>(at - line)});
}

RelationshipWriter::RelationshipWriter(Run& run) : units_(run.journal.units) {
  openresultsfile(run, "", run.parameters.relationship.gfile, file_);
}

void RelationshipWriter::write(const Lines& records) {
  records.write_to(file_);
  records_ += records.count();
}

void RelationshipWriter::close() { closeresultsfile(units_, file_); }

RelationshipReader::RelationshipReader(Run& run, const Pedigree& pedigree, Reading reading)
    : units_(run.journal.units), pedigree_(pedigree), reading_(reading), file_(kLongestLine) {
  const std::string path = run.files.path(run.parameters.relationship.gfile);
  file_name_ = printable(path);
  if (reading == Reading::kMatrix && !InputFile::exists(path)) {
    handle_error(units_, "ERROR Relationship File not found : ", path);
  }
  int status = file_.open(path);
  if (status == 0) status = run.files.relationships.open(path);
  if (status != 0) {
    handle_error(units_, ErrorValue{status}, "ERROR Could not open relationship file ", path);
  }
}

bool RelationshipReader::next(Record& record) {
  std::string_view whole;
  int status = file_.next_line(whole);
  if (status == kEndOfFile) return false;
  if (status != 0) stop_at_unreadable(records_ + 1, status);
  ++records_;
  const std::string_view line = whole.substr(0, kLineWidth);
  std::string_view rest;
  status = read_list_before(rest, line, id_[0], id_[1], a_);
  if (status != 0 || !rest.empty() || whole.size() > line.size()) look_at(whole, line, status);
  if (status == kMalformed) {
    write_list(units_.out, "Record read ", printable(line));
    stop_at_unreadable(records_, status);
  }
  if (records_ % kProgressStep == 0) {
    write_list(units_.out, "Finished ", records_, " records");
    progress_.show(file_.share_read());
  }
  // Files go through the pairs of an animal one after another.
  record.i = number_of(id_[0], number_[0], line);
  record.j = number_of(id_[1], number_[1] + 1, line);
  record.a = a_;
  number_ = {record.i, record.j};
  return true;
}

void RelationshipReader::look_at(std::string_view line, std::string_view read, int status) {
  if (line.size() > read.size() && !is_blank_text(line.substr(read.size()))) {
    cut_.add(records_, [] { return "longer than 120 characters : the others are not read"; });
  }
  Lexer lexer(read);
  std::int64_t values = 0;
  for (Token token = lexer.next(); token.kind == Token::Kind::kValue; token = lexer.next()) {
    values += token.repeat;
  }
  if (status == kEndOfFile || values < 3) {
    fewer_.add(records_, [] {
      return "fewer than three values : those that are missing are taken from the line before";
    });
  } else if (values > 3) {
    more_.add(records_, [&] { return "more than three values : " + printable(read); });
  }
}

void RelationshipReader::tell_odd_lines() const {
  for (const Finding* finding : {&cut_, &more_, &fewer_}) finding->tell(units_, file_name_);
}

void RelationshipReader::stop_at_unreadable(std::int64_t line, int status) {
  constexpr const char* kReadError = "ERROR in reading external relationship file";
  if (reading_ == Reading::kMatrix) handle_error(units_, ErrorValue{status}, kReadError);
  handle_error(units_, ErrorValue{status}, kReadError, ", line ", line);
}

// Numbers beyond the animals' belong to identifiers that only a request for contributions named.
std::int32_t RelationshipReader::number_of(std::int32_t id, std::int32_t guess,
                                           std::string_view line) {
  if (id == 0) handle_error(units_, "ERROR Reading id 0 from Relationship file");
  const IdTree::Found animal = pedigree_.ids.find(id, guess);
  if (animal.in_tree && animal.number <= pedigree_.maxid) return animal.number;
  Unit& out = units_.out;
  write_list(out, "Record : ", printable(line));
  write_list(out, "Record ", records_, " : ", id_[0], id_[1], a_);
  handle_error(units_, "ERROR Individual ", id, " not found in pedigree");
}

}  // namespace qob
