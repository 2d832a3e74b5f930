#pragma once

#include <optional>
#include <string>

namespace sweeply {

class Node;

/// What an outline sorts by: a column's identifier and the direction of its arrow.
struct SortDescriptor {
    std::string key;
    bool ascending = true;
};

enum class NodeKey { Name, Size, Number };

/// What a list is sorted by, and whether the largest comes first.
struct NodeOrder {
    NodeKey key;
    bool descending;
};

/// The order that a column stands for; nothing for a column that orders nothing.
[[nodiscard]] std::optional<NodeOrder> orderFor(const SortDescriptor& descriptor);

/// The plain three-way comparisons (-1, 0, 1)...
[[nodiscard]] int compareNamesAscending(const Node& receiver, const Node& other);
[[nodiscard]] int compareSizesAscending(const Node& receiver, const Node& other);
[[nodiscard]] int compareNumbersAscending(const Node& receiver, const Node& other);
/// ...and their opposites, which say 1 when the receiver is smaller and -1 in every other case, equal values included.
[[nodiscard]] int compareNamesDescending(const Node& receiver, const Node& other);
[[nodiscard]] int compareSizesDescending(const Node& receiver, const Node& other);
[[nodiscard]] int compareNumbersDescending(const Node& receiver, const Node& other);

} // namespace sweeply
