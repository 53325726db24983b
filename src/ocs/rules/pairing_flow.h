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
//   sires(), dams()             how many there are; both are counted from 0
//   counts_pairs()              whether what a mating costs depends on how many the pair has
//   gate(s, d)                  the gate of a pair, counted from 1 over all sires; 0: none
//   of_sire(s, n), of_dam(d, n), of_pair(s, d, n), of_gate(g, n)
//                               what the n-th mating costs there, 0 or more and never less than the
//                               one before; kNoRoom: there is to be none
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
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
  bool add() { return start() && augment(); }
  bool add(std::int32_t s) { return start(s) && augment(); }

  // Of a sire, with those that stand.
  std::int32_t matings(std::int32_t s) const { return of_sire_[at(s)]; }

  // Calls action(s, d, n) for the matings, without those that stand.
  template <class Action>
  void for_each_pair(Action action) const {
    for (std::int32_t d = 0; d < dams_; ++d)
      for (const Held& held : held_[at(d)]) action(held.sire, d, held.n);
  }

 private:
  // Nodes: dams, then sires, then gates, so that of equally near ones a dam is the next.
  static constexpr std::int64_t kFar = std::numeric_limits<std::int64_t>::max() / 4;
  struct Held {
    std::int32_t sire = 0, n = 0;
  };
  struct GateNode {
    std::int32_t gate = 0, sire = 0, n = 0, standing = 0;
  };

  static std::size_t at(std::int64_t i) { return static_cast<std::size_t>(i); }
  std::int32_t node_of_sire(std::int32_t s) const { return dams_ + s; }
  std::int32_t node_of_gate(std::int32_t s, std::int32_t d) const {
    return gate_node_.empty() ? -1 : gate_node_[at(std::int64_t{s} * dams_ + d)];
  }
  GateNode& gate_at(std::int32_t node) { return gates_[at(node - dams_ - sires_)]; }
  // The node from which the pair is reached.
  std::int32_t hub(std::int32_t s, std::int32_t d) const {
    const std::int32_t node = node_of_gate(s, d);
    return node < 0 ? node_of_sire(s) : node;
  }
  void find_gates();
  std::int32_t matings(std::int32_t s, std::int32_t d) const;
  void change(std::int32_t s, std::int32_t d, std::int32_t by);
  void relax(std::int32_t from, std::int32_t to, std::int64_t cost);
  void clear();
  bool start();
  bool start(std::int32_t s);
  bool augment();
  std::int32_t nearest() const;
  void leave_dam(std::int32_t d);
  void leave_sire(std::int32_t s);
  void leave_gate(std::int32_t node);
  void reach_dams(std::int32_t s, std::int32_t node);
  void add_along(std::int32_t d);

  const Costs& costs_;
  std::int32_t sires_, dams_;
  std::vector<std::int32_t> gate_node_;  // by sire and dam; none where there are no gates
  std::vector<GateNode> gates_;
  std::vector<std::vector<std::int32_t>> gates_of_;  // nodes, by sire
  std::vector<std::int32_t> of_sire_, of_dam_;       // matings
  std::vector<std::vector<Held>> held_;              // by dam
  std::map<std::pair<std::int32_t, std::int32_t>, std::int32_t> standing_;
  std::vector<std::int64_t> potential_, distance_;  // by node
  std::vector<std::int32_t> from_;
  std::vector<char> done_;
  std::int64_t potential_of_end_ = 0;
};

template <class Costs>
PairingFlow<Costs>::PairingFlow(const Costs& costs)
    : costs_(costs), sires_(costs.sires()), dams_(costs.dams()) {
  of_sire_.assign(at(sires_), 0);
  of_dam_.assign(at(dams_), 0);
  held_.resize(at(dams_));
  gates_of_.resize(at(sires_));
  find_gates();
  potential_.assign(at(dams_) + at(sires_) + gates_.size(), 0);
}

template <class Costs>
void PairingFlow<Costs>::find_gates() {
  if (!costs_.has_gates()) return;
  std::map<std::int32_t, std::int32_t> node;  // by gate
  gate_node_.assign(at(std::int64_t{sires_} * dams_), -1);
  for (std::int32_t s = 0; s < sires_; ++s) {
    for (std::int32_t d = 0; d < dams_; ++d) {
      const std::int32_t gate = costs_.gate(s, d);
      if (gate == 0) continue;
      const auto next = dams_ + sires_ + static_cast<std::int32_t>(gates_.size());
      const auto [found, is_new] = node.try_emplace(gate, next);
      gate_node_[at(std::int64_t{s} * dams_ + d)] = found->second;
      if (!is_new) continue;
      gates_.push_back({gate, s, 0, 0});
      gates_of_[at(s)].push_back(next);
    }
  }
}

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
  const std::int32_t node = node_of_gate(s, d);
  if (node < 0) return;
  ++gate_at(node).n;
  ++gate_at(node).standing;
}

template <class Costs>
bool PairingFlow<Costs>::place(std::int32_t s, std::int32_t d) {
  const std::int32_t node = node_of_gate(s, d);
  if (costs_.of_sire(s, of_sire_[at(s)] + 1) != 0 || costs_.of_dam(d, of_dam_[at(d)] + 1) != 0 ||
      costs_.of_pair(s, d, matings(s, d) + 1) != 0 ||
      (node >= 0 && costs_.of_gate(gate_at(node).gate, gate_at(node).n + 1) != 0))
    return false;
  ++of_sire_[at(s)];
  ++of_dam_[at(d)];
  change(s, d, 1);
  if (node >= 0) ++gate_at(node).n;
  return true;
}

template <class Costs>
void PairingFlow<Costs>::relax(std::int32_t from, std::int32_t to, std::int64_t cost) {
  const std::int64_t distance =
      distance_[at(from)] + cost + potential_[at(from)] - potential_[at(to)];
  if (distance >= distance_[at(to)]) return;
  distance_[at(to)] = distance;
  from_[at(to)] = from;
}

template <class Costs>
void PairingFlow<Costs>::clear() {
  distance_.assign(potential_.size(), kFar);
  from_.assign(potential_.size(), -1);
  done_.assign(potential_.size(), 0);
}

template <class Costs>
bool PairingFlow<Costs>::start() {
  clear();
  for (std::int32_t s = 0; s < sires_; ++s) {
    const std::int64_t cost = costs_.of_sire(s, of_sire_[at(s)] + 1);
    if (cost != kNoRoom) distance_[at(node_of_sire(s))] = cost - potential_[at(node_of_sire(s))];
  }
  return true;
}

template <class Costs>
bool PairingFlow<Costs>::start(std::int32_t s) {
  clear();
  distance_[at(node_of_sire(s))] = 0;
  return costs_.of_sire(s, of_sire_[at(s)] + 1) != kNoRoom;
}

template <class Costs>
std::int32_t PairingFlow<Costs>::nearest() const {
  std::int64_t least = kFar;
  std::size_t found = potential_.size();
  for (std::size_t v = 0; v < potential_.size(); ++v) {
    if (done_[v] != 0 || distance_[v] >= least) continue;
    least = distance_[v];
    found = v;
  }
  return found < potential_.size() ? static_cast<std::int32_t>(found) : -1;
}

template <class Costs>
void PairingFlow<Costs>::leave_dam(std::int32_t d) {
  for (const Held& held : held_[at(d)])
    relax(d, hub(held.sire, d), -costs_.of_pair(held.sire, d, std::max(matings(held.sire, d), 1)));
}

template <class Costs>
void PairingFlow<Costs>::reach_dams(std::int32_t s, std::int32_t node) {
  const bool is_gated = !gate_node_.empty();
  for (std::int32_t d = 0; d < dams_; ++d) {
    if (done_[at(d)] != 0 || (is_gated && hub(s, d) != node)) continue;
    const std::int64_t cost = costs_.of_pair(s, d, matings(s, d) + 1);
    if (cost != kNoRoom) relax(node, d, cost);
  }
}

template <class Costs>
void PairingFlow<Costs>::leave_sire(std::int32_t s) {
  for (const std::int32_t node : gates_of_[at(s)]) {
    const std::int64_t cost = costs_.of_gate(gate_at(node).gate, gate_at(node).n + 1);
    if (cost != kNoRoom) relax(node_of_sire(s), node, cost);
  }
  reach_dams(s, node_of_sire(s));
}

template <class Costs>
void PairingFlow<Costs>::leave_gate(std::int32_t node) {
  const GateNode& gate = gate_at(node);
  if (gate.n > gate.standing)
    relax(node, node_of_sire(gate.sire), -costs_.of_gate(gate.gate, gate.n));
  reach_dams(gate.sire, node);
}

// Back from the dam: where the way goes on to a dam the pair has one more mating, where it comes
// from one, one less.
template <class Costs>
void PairingFlow<Costs>::add_along(std::int32_t d) {
  const auto sire_of = [&](std::int32_t node) {
    return node < dams_ + sires_ ? node - dams_ : gate_at(node).sire;
  };
  ++of_dam_[at(d)];
  std::int32_t node = d;
  for (std::int32_t from = from_[at(node)]; from >= 0; from = from_[at(node)]) {
    if (node < dams_) {
      change(sire_of(from), node, 1);
    } else if (from < dams_) {
      change(sire_of(node), from, -1);
    } else {
      GateNode& gate = gate_at(std::max(node, from));
      gate.n += node > from ? 1 : -1;
    }
    node = from;
  }
  ++of_sire_[at(node - dams_)];
}

template <class Costs>
bool PairingFlow<Costs>::augment() {
  std::int64_t end = kFar;
  std::int32_t last = -1;
  for (std::int32_t v = nearest(); v >= 0 && distance_[at(v)] < end; v = nearest()) {
    done_[at(v)] = 1;
    if (v >= dams_ + sires_) {
      leave_gate(v);
    } else if (v >= dams_) {
      leave_sire(v - dams_);
    } else {
      const std::int64_t cost = costs_.of_dam(v, of_dam_[at(v)] + 1);
      const std::int64_t reached = distance_[at(v)] + cost + potential_[at(v)] - potential_of_end_;
      if (cost != kNoRoom && reached < end) {
        end = reached;
        last = v;
      }
      leave_dam(v);
    }
  }
  if (last < 0) return false;
  for (std::size_t v = 0; v < potential_.size(); ++v) potential_[v] += std::min(distance_[v], end);
  potential_of_end_ += end;
  add_along(last);
  return true;
}

}  // namespace qob
