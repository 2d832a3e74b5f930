#pragma once

#include "engine/tree/Node.h"

#include <cstddef>
#include <vector>

namespace sweeply {

/// A module's results shown as a hierarchy. Main thread.
class ContentOutline {
  public:
    virtual ~ContentOutline() = default;

    virtual void reloadData() = 0;
    /// In the order of the rows.
    [[nodiscard]] virtual std::vector<Node::Pointer> selectedItems() const = 0;
};

/// A module's top-level results shown as rows. Main thread.
class ContentTable {
  public:
    virtual ~ContentTable() = default;

    virtual void reloadData() = 0;
    /// Ascending.
    [[nodiscard]] virtual std::vector<std::size_t> selectedRowIndexes() const = 0;
};

} // namespace sweeply
