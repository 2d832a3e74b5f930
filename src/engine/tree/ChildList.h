#pragma once

#include "engine/tree/PathIndex.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace sweeply {

class Node;
struct NodeOrder;

/// The ordered children of one node, from which any child can be taken out at constant cost.
///
/// A child taken out leaves an empty slot that is squeezed out later, when someone looks at the list or when half of it
/// is empty. Equal paths are found through an index that is built when a long list first needs it.
class ChildList final {
  public:
    using Pointer = std::shared_ptr<Node>;

    [[nodiscard]] std::size_t count() const { return m_count; }
    /// In order, without gaps.
    [[nodiscard]] const std::vector<Pointer>& all() const;

    void append(Pointer child);
    /// Takes out and returns `child` and every other child with its path; nothing if there is none.
    std::vector<Pointer> takeEqual(const Node& child);
    Pointer takeAt(std::size_t index);
    std::vector<Pointer> takeAll();

    /// Equal children keep their order.
    void sort(const NodeOrder& order);
    /// A child's path is about to change.
    void forgetPaths() { m_byPath.reset(); }

  private:
    /// Leaves the index as it is.
    Pointer takeSlot(std::size_t slot);
    void squeeze() const;
    [[nodiscard]] bool holds(const Node& child) const;

    // The list is the same with its empty slots and without, so looking at it may squeeze them out.
    mutable std::vector<Pointer> m_slots;
    std::size_t m_count = 0;
    std::unique_ptr<PathIndex> m_byPath;
};

} // namespace sweeply
