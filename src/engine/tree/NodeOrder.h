#pragma once

#include <string>

namespace sweeply {

class Node;

/// What an outline sorts by: a column's identifier and the direction of its arrow.
struct SortDescriptor {
    std::string key;
    bool ascending = true;
};

/// The plain three-way comparisons (-1, 0, 1)...
[[nodiscard]] int compareNamesAscending(const Node& receiver, const Node& other);
[[nodiscard]] int compareSizesAscending(const Node& receiver, const Node& other);
[[nodiscard]] int compareNumbersAscending(const Node& receiver, const Node& other);
/// ...and their opposites, which say 1 when the receiver is smaller and -1 in every other case, equal values included.
[[nodiscard]] int compareNamesDescending(const Node& receiver, const Node& other);
[[nodiscard]] int compareSizesDescending(const Node& receiver, const Node& other);
[[nodiscard]] int compareNumbersDescending(const Node& receiver, const Node& other);

} // namespace sweeply
