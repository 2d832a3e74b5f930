#include "engine/tree/PathIndex.h"

#include "engine/tree/Node.h"

#include <bit>
#include <functional>
#include <utility>

namespace sweeply {

namespace {

/// Stands where a node was removed: looking goes on behind it.
Node* removedMark() {
    static Node mark;
    return &mark;
}

} // namespace

PathIndex::PathIndex(std::size_t count) { resize(count); }

template<typename Matches>
std::size_t PathIndex::placeOf(std::string_view path, const Matches& matches) const {
    const std::size_t mask = m_entries.size() - 1;
    std::size_t place = std::hash<std::string_view>()(path) & mask;
    while (m_entries[place] && !matches(m_entries[place]))
        place = (place + 1) & mask;
    return place;
}

void PathIndex::add(Node& node) {
    if (2 * (m_used + 1) > m_entries.size())
        resize(2 * (m_count + 1));
    m_entries[placeOf(node.path(), [](const Node*) { return false; })] = &node;
    ++m_used;
    ++m_count;
}

Node* PathIndex::takeOne(std::string_view path) {
    return take(
        placeOf(path, [&](const Node* present) { return present != removedMark() && present->path() == path; }));
}

void PathIndex::remove(const Node& node) {
    take(placeOf(node.path(), [&](const Node* present) { return present == &node; }));
}

Node* PathIndex::take(std::size_t place) {
    if (!m_entries[place])
        return nullptr;
    --m_count;
    return std::exchange(m_entries[place], removedMark());
}

void PathIndex::resize(std::size_t count) {
    const auto old = std::exchange(m_entries, std::vector<Node*>(std::bit_ceil(2 * count + 2)));
    m_used = m_count = 0;
    for (Node* node : old) {
        if (node && node != removedMark())
            add(*node);
    }
}

} // namespace sweeply
