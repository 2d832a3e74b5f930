#include "engine/tree/SortKeys.h"

#include "engine/tree/Node.h"

#include <algorithm>
#include <utility>

namespace sweeply {

namespace {

/// The first bytes of a name as a number that is ordered as they are.
std::uint64_t beginningOf(std::string_view name) {
    std::uint64_t value = 0;
    for (std::size_t at = 0; at < sizeof value; ++at)
        value = value << 8U | (at < name.size() ? static_cast<unsigned char>(name[at]) : 0U);
    return value;
}

} // namespace

SortKeys::SortKeys(const Nodes& nodes, const NodeOrder& order) : m_order(order) {
    m_keys.reserve(nodes.size());
    for (const auto& node : nodes) {
        Key key{0, static_cast<std::uint32_t>(m_keys.size())};
        switch (order.key) {
        case NodeKey::Name:
            addName(node->name());
            break;
        case NodeKey::Size:
            key.value = node->longSize();
            break;
        case NodeKey::Number:
            key.value = node->count();
            break;
        }
        m_keys.push_back(key);
    }
    if (order.key == NodeKey::Name)
        compareWhereNamesDiffer();
}

void SortKeys::addName(std::string_view name) {
    m_names += name;
    m_nameEnds.push_back(m_names.size());
}

std::string_view SortKeys::nameAt(std::uint32_t place) const {
    const std::size_t from = place == 0 ? 0 : m_nameEnds[place - 1];
    return std::string_view(m_names).substr(from, m_nameEnds[place] - from);
}

void SortKeys::compareWhereNamesDiffer() {
    std::size_t alike = m_keys.empty() ? 0 : nameAt(0).size();
    for (const auto& key : m_keys) {
        const auto first = nameAt(0).substr(0, alike);
        alike = static_cast<std::size_t>(std::ranges::mismatch(first, nameAt(key.place)).in1 - first.begin());
    }
    for (auto& key : m_keys)
        key.value = beginningOf(nameAt(key.place).substr(alike));
}

bool SortKeys::isBefore(const Key& a, const Key& b) const {
    if (a.value != b.value)
        return (a.value < b.value) != m_order.descending;
    if (m_order.key == NodeKey::Name) {
        if (const int difference = nameAt(a.place).compare(nameAt(b.place)); difference != 0)
            return (difference < 0) != m_order.descending;
    }
    return a.place < b.place;
}

void SortKeys::sort(Nodes& nodes) {
    const auto isBefore = [this](const Key& a, const Key& b) { return this->isBefore(a, b); };
    if (std::ranges::is_sorted(m_keys, isBefore))
        return;
    std::ranges::sort(m_keys, isBefore);
    Nodes sorted;
    sorted.reserve(nodes.size());
    for (const auto& key : m_keys)
        sorted.push_back(std::move(nodes[key.place]));
    nodes = std::move(sorted);
}

} // namespace sweeply
