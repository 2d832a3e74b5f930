#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace sweeply {

class Node;

/// Finds nodes by path: a table with open addressing that holds nothing but pointers, since the first touch of each
/// page of memory costs more than the look-ups themselves.
///
/// The nodes are not owned; while one is in here its path must not change.
class PathIndex final {
  public:
    /// Room for `count` nodes; it grows when there are more.
    explicit PathIndex(std::size_t count);

    void add(Node& node);
    /// Takes out any node with that path; nullptr if there is none.
    Node* takeOne(std::string_view path);
    /// Nothing happens if it is not in here.
    void remove(const Node& node);

  private:
    /// The first entry at or after the path's own place that `matches`, or that is free.
    template<typename Matches>
    [[nodiscard]] std::size_t placeOf(std::string_view path, const Matches& matches) const;
    Node* take(std::size_t place);
    void resize(std::size_t count);

    std::vector<Node*> m_entries; ///< a power of two of them; removed ones stay as marks until the next resize
    std::size_t m_used = 0;       ///< entries that are not free, marks included
    std::size_t m_count = 0;
};

} // namespace sweeply
