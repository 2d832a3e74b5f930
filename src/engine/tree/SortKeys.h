#pragma once

#include "engine/tree/NodeOrder.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace sweeply {

/// What a list of nodes is sorted by: their names, sizes or numbers as they were when this was made. Making it reads
/// the nodes, under the tree lock where others see them; sorting looks at none of them and needs no lock.
class SortKeys final {
  public:
    using Nodes = std::vector<std::shared_ptr<Node>>;

    SortKeys(const Nodes& nodes, const NodeOrder& order);

    /// Puts the list that this was made of in order, once; equal ones keep theirs.
    void sort(Nodes& nodes);

  private:
    struct Key {
        std::uint64_t value; ///< of a name some bytes from where the names begin to differ
        std::uint32_t place; ///< in the list
    };

    void addName(std::string_view name);
    void compareWhereNamesDiffer();
    [[nodiscard]] std::string_view nameAt(std::uint32_t place) const;
    [[nodiscard]] bool isBefore(const Key& a, const Key& b) const;

    const NodeOrder m_order;
    std::vector<Key> m_keys;
    // One text of all names: as many texts would cost more than the sorting.
    std::string m_names;
    std::vector<std::size_t> m_nameEnds;
};

} // namespace sweeply
