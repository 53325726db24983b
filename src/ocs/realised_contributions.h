// What parents have contributed to the population that is alive.
//
// With overlapping generations a plan adds to what earlier time steps have fixed. share(i, a) is
// the part of the parenthood of age class a that is animal i's, w(a) the weight of the class, and
//
//   x(i) = sum over a of w(a) share(i, a)       the contributions of the parents of those now alive
//   y(i) = sum over a of w(a + 1) share(i, a)   what of them is left when all are a time step older
//
// so that with contributions c of the plan the average relationship of the coming generation is
// (y + c)'A(y + c) / L^2 = (vpapv + apv2'c + c'Ac) / L^2 with vpapv = y'Ay and apv2 = 2 Ay, and
// that of the last generation x'Ax / L^2 (Grundy, Villanueva & Woolliams 2000, Anim. Sci. 70:373).
// A y goes through the pedigree without forming A.
#pragma once

#include "core/units.h"
#include "ocs/age_tables.h"
#include "ocs/selection.h"

namespace qob {

// Fills last_rel, vpapv and apv2 of the goal, whose last_genint is given. cohortrel: stands for
// last_rel where no parent is known.
void realised_contributions(const Pedigree& pedigree, const Candidates& candidates,
                            const AgeStructure& ages, double cohortrel, Units& units, Goal& goal);

}  // namespace qob
