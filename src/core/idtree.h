// A binary digital search tree that gives each identifier of the data file a running number
// 1, 2, 3, ... in the order in which the identifiers first appear.
//
//   build_tree(7) -> 1, build_tree(3) -> 2, build_tree(7) -> 1 again
//
// The path of a key is given by its bits, from bit 1 upwards and round again after bit 31 to
// bit 0, so no path is longer than 32 links. Nodes live in one arena.
#pragma once

#include <cstdint>
#include <vector>

namespace qob {

class IdTree {
 public:
  struct Found {
    std::int32_t number;  // the identifier's running number
    bool in_tree;         // false: it was not there
  };

  IdTree() { initialise_tree(); }

  // Leaves the root alone: identifier 0, the unknown parent, with number 0.
  void initialise_tree();

  // Looks `id` up. An unknown one is inserted with number `counter` + 1, and `counter` grows by 1.
  Found build_tree(std::int32_t id, std::int32_t& counter);

  // Looks `id` up and leaves the tree as it is.
  Found find(std::int32_t id) const;

 private:
  struct Node {
    std::int32_t id;
    std::int32_t number;
    std::uint32_t child[2];  // 0: none (the root is nobody's child)
  };
  // The node that holds `id`, or the one that it would hang on at `side`.
  struct Place {
    std::uint32_t node;
    int side;
    bool found;
  };
  Place descend(std::int32_t id) const;

  std::vector<Node> nodes_;
};

}  // namespace qob
