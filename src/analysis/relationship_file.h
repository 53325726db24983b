// The relationship file: additive relationships between animals as text, one a line.
//
//   1021 1004 0.250000     two identifiers of the data file in either order, and the relationship
//   1021 1021 1.12500      an animal with itself: 1 + F
//
// Pairs that the file does not hold are unrelated.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "core/finding.h"
#include "core/lines_in_parts.h"
#include "core/progress.h"
#include "core/qobtypestools.h"
#include "pedigree/pedigree.h"

namespace qob {

// Writes a record. id1, id2: identifiers of the data file; a: their relationship, with six
// significant digits.
void write_relationship(Unit& unit, std::int32_t id1, std::int32_t id2, double a);

// Writes `gfile`, the name as it stands. A failure stops the run.
class RelationshipWriter {
 public:
  explicit RelationshipWriter(Run& run);

  void write(const Lines& records);
  void close();
  std::int64_t records() const { return records_; }

 private:
  Units& units_;
  Unit file_{15};
  std::int64_t records_ = 0;
};

// Reads `gfile` record by record: three values in free form within the first 120 characters of a
// line. A line that holds fewer keeps the others from the line before.
class RelationshipReader {
 public:
  // The matrix is read first; a second reading checks what the selection needs of it, with
  // messages of its own.
  enum class Reading { kMatrix, kCheck };

  struct Record {
    std::int32_t i, j;  // numbers of the animals
    double a;           // their relationship
  };

  // Opens the file. A failure stops the run.
  RelationshipReader(Run& run, const Pedigree& pedigree, Reading reading);

  // False at the end of the file. A record that cannot be read or names an animal that the data
  // file does not hold stops the run. Reports progress on standard output.
  bool next(Record& record);
  // Tells, on standard error, which lines hold something else than three values.
  void tell_odd_lines() const;
  // Lines read.
  std::int64_t records() const { return records_; }

 private:
  [[noreturn]] void stop_at_unreadable(std::int64_t line, int status);
  void look_at(std::string_view line, std::string_view read, int status);
  std::int32_t number_of(std::int32_t id, std::int32_t guess, std::string_view line);

  Units& units_;
  const Pedigree& pedigree_;
  Reading reading_;
  std::string file_name_;
  InputFile file_;
  std::array<std::int32_t, 2> id_ = {0, 0};
  std::array<std::int32_t, 2> number_ = {0, 0};  // of the animals of the line before
  double a_ = 0.0;
  std::int64_t records_ = 0;
  Finding cut_, more_, fewer_;
  Progress progress_{"Relationship file"};
};

}  // namespace qob
