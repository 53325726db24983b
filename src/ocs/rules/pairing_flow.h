// Matings as a flow: from sires, through the limits of a sire's matings with a group, to dams, one
// mating after the other on the cheapest way that is left, others giving way to it where that helps
// (successive shortest paths with potentials: Edmonds & Karp 1972, J. ACM 19:248; of an assignment
// Jonker & Volgenant 1987, Computing 38:325). After each mating there is no cheaper set of so many.
//
//   sire --------------------------> dam
//     \--> gate (sire x group) -----/
//
// Costs are whole numbers, so that nothing rounds. They are given by an object that knows
//
//   sires(), dams(), gates()    how many there are; sires and dams are counted from 0, gates from 1
//   gates_of(s), sire_of(g)     the gates of a sire, the sire of a gate
//   gate(s, d), dams_of(g)      the gate of a pair, 0: none; the dams to whom a gate leads
//   counts_pairs()              whether what a mating costs depends on how many the pair has
//   of_sire(s, n), of_dam(d, n), of_pair(s, d, n), of_gate(g, n)
//                               what the n-th mating costs there, 0 or more and never less than the
//                               one before; kNoRoom: there is to be none
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <map>
#include <utility>
#include <vector>

namespace qob {

inline constexpr std::int64_t kNoRoom = -1;

template <class Costs>
class PairingFlow {
 public:
  // costs: must outlive it.
  explicit PairingFlow(const Costs& costs);

  // A mating that stays, whatever it costs. To be called before all others.
  void stand(std::int32_t s, std::int32_t d);
  // Adds this mating if it costs nothing. To be called before any `add`.
  bool place(std::int32_t s, std::int32_t d);
  // Adds a mating at least cost, of any sire or of this one. False: there is no room for one.
  // Either all are added so, or all with a sire.
  bool add();
  bool add(std::int32_t s);

  // Of a sire, with those that stand.
  std::int32_t matings(std::int32_t s) const { return of_sire_[at(s)]; }
  // Calls action(s, d, n) for the matings, without those that stand.
  template <class Action>
  void for_each_pair(Action action) const {
    for (std::int32_t d = 0; d < dams_; ++d)
      for (const Held& held : held_[at(d)]) action(held.sire, d, held.n);
  }

 private:
  // Nodes: dams, then gates, then sires. Of equally near ones the first is the next, so that the
  // way to a dam is short.
  static constexpr std::int64_t kFar = std::numeric_limits<std::int64_t>::max() / 4;
  static constexpr std::int32_t kStart = -1;
  struct Node {
    std::int64_t potential = 0, distance = kFar;
    std::int32_t from = kStart;
    bool is_done = false;
  };
  struct Held {
    std::int32_t sire = 0, n = 0;
  };
  struct Through {
    std::int32_t n = 0, standing = 0;
  };
  using Near = std::pair<std::int64_t, std::int32_t>;  // distance and node

  static std::size_t at(std::int64_t i) { return static_cast<std::size_t>(i); }
  Node& node(std::int32_t v) { return nodes_[at(v)]; }
  std::int32_t node_of_gate(std::int32_t g) const { return dams_ + g - 1; }
  std::int32_t node_of_sire(std::int32_t s) const { return dams_ + gates_ + s; }
  std::int32_t gate_at(std::int32_t v) const { return v - dams_ + 1; }
  std::int32_t sire_at(std::int32_t v) const { return v - dams_ - gates_; }
  bool is_gate(std::int32_t v) const { return v >= dams_ && v < dams_ + gates_; }
  std::int32_t gate_of(std::int32_t s, std::int32_t d) const {
    return gates_ > 0 ? costs_.gate(s, d) : 0;
  }
  // The node from which the pair is reached.
  std::int32_t hub(std::int32_t s, std::int32_t d) const {
    const std::int32_t gate = gate_of(s, d);
    return gate == 0 ? node_of_sire(s) : node_of_gate(gate);
  }
  std::int32_t matings(std::int32_t s, std::int32_t d) const;
  void change(std::int32_t s, std::int32_t d, std::int32_t by);
  void reach(std::int32_t v, std::int64_t distance, std::int32_t from);
  void relax(std::int32_t from, std::int32_t to, std::int64_t cost) {
    reach(to, node(from).distance + cost + node(from).potential - node(to).potential, from);
  }
  bool find_end();
  void leave_dam(std::int32_t d);
  void leave_sire(std::int32_t s);
  void leave_gate(std::int32_t g);
  void reach_dam(std::int32_t s, std::int32_t d, std::int32_t from);
  void add_along(std::int32_t d);

  const Costs& costs_;
  std::int32_t sires_, dams_, gates_;
  std::vector<std::int32_t> of_sire_, of_dam_;  // matings
  std::vector<Through> through_;                // by gate, from 1
  std::vector<std::vector<Held>> held_;         // by dam
  std::map<std::pair<std::int32_t, std::int32_t>, std::int32_t> standing_;
  std::vector<Node> nodes_;
  std::vector<std::int32_t> reached_;    // nodes
  std::vector<Near> near_;               // a heap
  std::int64_t potential_of_start_ = 0;  // that of the end is 0
};

template <class Costs>
PairingFlow<Costs>::PairingFlow(const Costs& costs)
    : costs_(costs),
      sires_(costs.sires()),
      dams_(costs.dams()),
      gates_(costs.gates()),
      of_sire_(at(sires_), 0),
      of_dam_(at(dams_), 0),
      through_(at(gates_) + 1),
      held_(at(dams_)),
      nodes_(at(dams_) + at(gates_) + at(sires_)) {}

// Those that stand with them; 0 where that makes no difference.
template <class Costs>
std::int32_t PairingFlow<Costs>::matings(std::int32_t s, std::int32_t d) const {
  if (!costs_.counts_pairs()) return 0;
  std::int32_t n = 0;
  for (const Held& held : held_[at(d)])
    if (held.sire == s) n = held.n;
  if (standing_.empty()) return n;
  const auto found = standing_.find({s, d});
  return found == standing_.end() ? n : n + found->second;
}

template <class Costs>
void PairingFlow<Costs>::change(std::int32_t s, std::int32_t d, std::int32_t by) {
  std::vector<Held>& all = held_[at(d)];
  auto held = std::find_if(all.begin(), all.end(), [&](const Held& h) { return h.sire == s; });
  if (held == all.end()) held = all.insert(held, Held{s, 0});
  held->n += by;
  if (held->n == 0) all.erase(held);
}

template <class Costs>
void PairingFlow<Costs>::stand(std::int32_t s, std::int32_t d) {
  ++of_sire_[at(s)];
  ++of_dam_[at(d)];
  ++standing_[{s, d}];
  Through& through = through_[at(gate_of(s, d))];  // of gate 0 nobody asks
  ++through.n;
  ++through.standing;
}

template <class Costs>
bool PairingFlow<Costs>::place(std::int32_t s, std::int32_t d) {
  const std::int32_t gate = gate_of(s, d);
  if (costs_.of_sire(s, of_sire_[at(s)] + 1) != 0 || costs_.of_dam(d, of_dam_[at(d)] + 1) != 0 ||
      costs_.of_pair(s, d, matings(s, d) + 1) != 0 ||
      (gate != 0 && costs_.of_gate(gate, through_[at(gate)].n + 1) != 0))
    return false;
  ++of_sire_[at(s)];
  ++of_dam_[at(d)];
  ++through_[at(gate)].n;
  change(s, d, 1);
  return true;
}

template <class Costs>
void PairingFlow<Costs>::reach(std::int32_t v, std::int64_t distance, std::int32_t from) {
  if (distance >= node(v).distance) return;
  if (node(v).distance == kFar) reached_.push_back(v);
  node(v).distance = distance;
  node(v).from = from;
  near_.emplace_back(distance, v);
  std::push_heap(near_.begin(), near_.end(), std::greater<>());
}

template <class Costs>
void PairingFlow<Costs>::leave_dam(std::int32_t d) {
  for (const Held& held : held_[at(d)]) {
    const std::int32_t n = std::max(matings(held.sire, d), 1);
    relax(d, hub(held.sire, d), -costs_.of_pair(held.sire, d, n));
  }
}

template <class Costs>
void PairingFlow<Costs>::reach_dam(std::int32_t s, std::int32_t d, std::int32_t from) {
  if (node(d).is_done) return;
  const std::int64_t cost = costs_.of_pair(s, d, matings(s, d) + 1);
  if (cost != kNoRoom) relax(from, d, cost);
}

template <class Costs>
void PairingFlow<Costs>::leave_sire(std::int32_t s) {
  for (const std::int32_t gate : costs_.gates_of(s)) {
    const std::int64_t cost = costs_.of_gate(gate, through_[at(gate)].n + 1);
    if (cost != kNoRoom) relax(node_of_sire(s), node_of_gate(gate), cost);
  }
  for (std::int32_t d = 0; d < dams_; ++d)
    if (gate_of(s, d) == 0) reach_dam(s, d, node_of_sire(s));
}

template <class Costs>
void PairingFlow<Costs>::leave_gate(std::int32_t g) {
  const std::int32_t s = costs_.sire_of(g);
  const Through& through = through_[at(g)];
  if (through.n > through.standing)
    relax(node_of_gate(g), node_of_sire(s), -costs_.of_gate(g, through.n));
  for (const std::int32_t d : costs_.dams_of(g)) reach_dam(s, d, node_of_gate(g));
}

// Back from the dam: where the way goes on to a dam the pair has one more mating, where it comes
// from one, one less.
template <class Costs>
void PairingFlow<Costs>::add_along(std::int32_t d) {
  const auto sire_of = [&](std::int32_t v) {
    return is_gate(v) ? costs_.sire_of(gate_at(v)) : sire_at(v);
  };
  ++of_dam_[at(d)];
  std::int32_t v = d;
  for (std::int32_t from = node(v).from; from != kStart; from = node(v).from) {
    if (v < dams_) {
      change(sire_of(from), v, 1);
    } else if (from < dams_) {
      change(sire_of(v), from, -1);
    } else {
      through_[at(gate_at(std::min(v, from)))].n += is_gate(v) ? 1 : -1;
    }
    v = from;
  }
  ++of_sire_[at(sire_at(v))];
}

// From what has been reached by now. The nearest dam with room ends the way.
template <class Costs>
bool PairingFlow<Costs>::find_end() {
  std::int64_t end = kFar;
  std::int32_t last = kStart;
  while (!near_.empty() && near_.front().first < end) {
    const auto [distance, v] = near_.front();
    std::pop_heap(near_.begin(), near_.end(), std::greater<>());
    near_.pop_back();
    if (node(v).is_done || distance > node(v).distance) continue;
    node(v).is_done = true;
    if (is_gate(v)) {
      leave_gate(gate_at(v));
    } else if (v >= dams_) {
      leave_sire(sire_at(v));
    } else {
      const std::int64_t cost = costs_.of_dam(v, of_dam_[at(v)] + 1);
      if (cost != kNoRoom && distance + cost + node(v).potential < end) {
        end = distance + cost + node(v).potential;
        last = v;
      }
      leave_dam(v);
    }
  }
  if (last != kStart) {
    add_along(last);
    potential_of_start_ -= end;
  }
  for (const std::int32_t v : reached_) {
    if (last != kStart && node(v).distance < end) node(v).potential += node(v).distance - end;
    node(v).distance = kFar;
    node(v).is_done = false;
  }
  reached_.clear();
  near_.clear();
  return last != kStart;
}

template <class Costs>
bool PairingFlow<Costs>::add() {
  for (std::int32_t s = 0; s < sires_; ++s) {
    const std::int64_t cost = costs_.of_sire(s, of_sire_[at(s)] + 1);
    if (cost == kNoRoom) continue;
    const std::int32_t v = node_of_sire(s);
    reach(v, cost + potential_of_start_ - node(v).potential, kStart);
  }
  return find_end();
}

template <class Costs>
bool PairingFlow<Costs>::add(std::int32_t s) {
  if (costs_.of_sire(s, of_sire_[at(s)] + 1) == kNoRoom) return false;
  reach(node_of_sire(s), 0, kStart);
  return find_end();
}

}  // namespace qob
