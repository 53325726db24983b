// A plan while it is made and changed: how often it uses each candidate, and what its value depends
// on. From change to change merit and relationship are carried on, so that they differ from the
// evaluation's by rounding.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "ocs/kernels/row_cache.h"
#include "ocs/mateset.h"
#include "ocs/objective.h"

namespace qob {

// What a plan is worth, or a change of that. Of one that lacks parents, as if these were of the
// mean merit of their sex and related to nobody.
struct Worth {
  double merit = 0.0;         // mean merit of the parents
  double scaled_merit = 0.0;  // scaled mean merit less its expectation
  double relationship = 0.0;  // average relationship of the next generation

  Worth operator+(const Worth& other) const {
    return {merit + other.merit, scaled_merit + other.scaled_merit,
            relationship + other.relationship};
  }
};

class PlanInMaking {
 public:
  // A plan that uses nobody yet. Selection, relationships and rows must outlive it.
  PlanInMaking(const Problem& problem, RowCache& rows);
  PlanInMaking(const PlanInMaking&) = delete;
  PlanInMaking& operator=(const PlanInMaking&) = delete;

  // Gives candidate i so many rows more.
  void add(std::int32_t i, std::int32_t count);

  const Uses& uses() const { return uses_; }
  const Worth& worth() const { return worth_; }
  // Rows that a candidate takes at once.
  std::int32_t unit(std::int32_t i) const { return problem_.selection.unit(i); }
  // Whether it has a unit that no rule locks.
  bool may_lose(std::int32_t i) const { return uses_(i) - problem_.selection.least(i) >= unit(i); }
  // Whether it may have another unit.
  bool has_room(std::int32_t i) const { return problem_.selection.most(i) - uses_(i) >= unit(i); }

  // What another unit of i changes.
  Worth addition(std::int32_t i) const;
  // What it changes that a unit passes from x to y, both of one sex. row_x: of the cache.
  Worth replacement(std::int32_t x, std::int32_t y, const double* row_x) const;
  // The relationship that two replacements change together beyond what each changes alone. Of the
  // second one the rows of x2 and of y2, which takes its place, are of the cache.
  double interaction(std::int32_t x1, std::int32_t y1, std::int32_t x2, const double* row_x2,
                     const double* row_y2) const;
  // The same of a replacement with itself.
  double interaction(std::int32_t x, std::int32_t y) const;

  const Problem& problem() const { return problem_; }
  RowCache& rows() const { return rows_; }

 private:
  double contribution(std::int32_t i) const { return d_ * static_cast<double>(unit(i)); }
  double interaction(std::int32_t x1, std::int32_t x2, double between) const;
  double mean_merit(std::int32_t i) const;
  Worth merit_change(std::int32_t i, double merit, double d) const;

  const Problem& problem_;
  const Candidates& candidates_;
  const Goal& goal_;
  RowCache& rows_;
  double d_;  // the contribution of one row
  Uses uses_;
  std::vector<double> sum_;  // by candidate: contributions times its relationships with them
  Worth worth_;
};

}  // namespace qob
