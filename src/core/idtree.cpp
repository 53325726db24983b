#include "core/idtree.h"

namespace qob {

void IdTree::initialise_tree() { nodes_.assign(1, Node{0, 0, {0, 0}}); }

IdTree::Place IdTree::descend(std::int32_t id) const {
  const auto key = static_cast<std::uint32_t>(id);
  std::uint32_t at = 0;
  for (unsigned bit = 1;; ++bit) {
    const Node& node = nodes_[at];
    if (node.id == id) return {at, 0, true};
    const int side = static_cast<int>((key >> (bit % 32)) & 1U);
    if (node.child[side] == 0) return {at, side, false};
    at = node.child[side];
  }
}

IdTree::Found IdTree::build_tree(std::int32_t id, std::int32_t& counter) {
  const Place place = descend(id);
  if (place.found) return {nodes_[place.node].number, true};
  ++counter;
  nodes_[place.node].child[place.side] = static_cast<std::uint32_t>(nodes_.size());
  nodes_.push_back(Node{id, counter, {0, 0}});
  return {counter, false};
}

IdTree::Found IdTree::find(std::int32_t id) const {
  const Place place = descend(id);
  return place.found ? Found{nodes_[place.node].number, true} : Found{0, false};
}

}  // namespace qob
