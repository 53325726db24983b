#include "pedigree/idtree.h"

namespace qob {
namespace {

constexpr unsigned kFirstRootBits = 10;
constexpr unsigned kMoreRootBits = 2;  // at most four links for an identifier

}  // namespace

void IdTree::initialise_tree() {
  nodes_.assign(1, Node{0, 0, {0, 0}});
  root_bits_ = kFirstRootBits;
  root_.assign(std::size_t{1} << root_bits_, 0);
}

IdTree::Place IdTree::descend(std::int32_t id) const {
  if (id == 0) return {0, 0, true};
  const auto key = static_cast<std::uint32_t>(id);
  Place place{0, (key >> 1) & static_cast<std::uint32_t>(root_.size() - 1), false};
  std::uint32_t at = root_[place.side];
  for (unsigned bit = root_bits_ + 1; at != 0; ++bit) {
    const Node& node = nodes_[at];
    if (node.id == id) return {at, 0, true};
    place = {at, (key >> (bit % 32)) & 1U, false};
    at = node.child[place.side];
  }
  return place;
}

void IdTree::hang(Place place, std::uint32_t node) {
  (place.node == 0 ? root_[place.side] : nodes_[place.node].child[place.side]) = node;
}

// Gives the root more links and hangs every node on again.
void IdTree::widen_root() {
  root_bits_ += kMoreRootBits;
  root_.assign(std::size_t{1} << root_bits_, 0);
  for (Node& node : nodes_) node.child[0] = node.child[1] = 0;
  for (std::uint32_t n = 1; n < nodes_.size(); ++n) hang(descend(nodes_[n].id), n);
}

IdTree::Found IdTree::build_tree(std::int32_t id, std::int32_t& counter) {
  const Place place = descend(id);
  if (place.found) return {nodes_[place.node].number, true};
  ++counter;
  hang(place, static_cast<std::uint32_t>(nodes_.size()));
  nodes_.push_back(Node{id, counter, {0, 0}});
  if (nodes_.size() > root_.size()) widen_root();
  return {counter, false};
}

IdTree::Found IdTree::find(std::int32_t id, std::int32_t guess) const {
  const auto guessed = static_cast<std::uint32_t>(guess);
  if (guessed < nodes_.size() && nodes_[guessed].id == id) return {nodes_[guessed].number, true};
  const Place place = descend(id);
  return place.found ? Found{nodes_[place.node].number, true} : Found{0, false};
}

}  // namespace qob
