// What is odd in a data file and yet no fault: most often a mistake that gives another plan.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "core/finding.h"
#include "core/tables.h"
#include "pedigree/pedigree.h"

namespace qob {

// Of a record only so many characters are read.
inline constexpr std::size_t kLineWidth = 120;

class DataRemarks {
 public:
  // shown: how many of a kind are told in full.
  explicit DataRemarks(std::size_t shown = 1) : shown_(shown) {}
  // A record whose identifiers cannot be read.
  void add_unreadable(std::int64_t line);
  // A line behind the records, from the one on that ended them.
  void add_unread_line(std::int64_t line, std::string_view text);
  // A line that holds a record, as it stands in the file; rest: what stands behind its values when
  // they have their plain form, else all of it.
  void add_record(std::int64_t line, std::string_view text, std::string_view rest);
  // The animal of a record that has been entered, once all that it names have been.
  void add_animal(std::int64_t line, const Pedigree& pedigree, std::int32_t i);

  // Tell what was found when animals got their numbers, and then their values; file: the data file.
  void tell_of_numbering(Units& units, const std::string& file) const;
  void tell_of_values(Units& units, const std::string& file) const;

 private:
  void add_values(std::int64_t line, std::string_view text);
  void add_commas(std::int64_t line, std::string_view record, const std::string& ebv,
                  const std::string& text);
  void add_text(std::int64_t line, std::string_view text);
  void add_parent(std::int64_t line, const Pedigree& pedigree, std::int32_t i, int k);
  void add_birth_time(std::int64_t line, std::int32_t btime);

  std::size_t shown_;
  std::int64_t end_line_ = 0, unread_ = 0;  // the line that ended the records, lines behind it
  Finding unreadable_{shown_};
  Finding cut_{shown_}, behind_slash_{shown_}, empty_{shown_}, many_{shown_}, comma_{shown_};
  Finding long_text_{shown_};
  std::array<Finding, 2> wrong_sex_{Finding(shown_), Finding(shown_)};  // of sires, of dams
  Finding number_as_text_{shown_}, no_record_{shown_}, both_{shown_}, selfed_{shown_};
  Finding date_{shown_}, no_time_{shown_};
  Table<char> used_;  // as a sire (1), as a dam (2)
  struct BirthTime {
    std::int64_t line = 0;  // 0 before the first one is known
    std::int64_t value = 0;
  };
  BirthTime first_, last_;
};

}  // namespace qob
