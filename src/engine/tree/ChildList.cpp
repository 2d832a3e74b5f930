#include "engine/tree/ChildList.h"

#include "engine/tree/Node.h"
#include "engine/tree/SortKeys.h"

#include <utility>

namespace sweeply {

namespace {
/// Up to here looking at every child costs less than keeping an index.
constexpr std::size_t kShortList = 32;
} // namespace

const std::vector<ChildList::Pointer>& ChildList::all() const {
    squeeze();
    return m_slots;
}

void ChildList::append(Pointer child) {
    child->m_slot = static_cast<std::uint32_t>(m_slots.size());
    if (m_byPath && !child->path().empty())
        m_byPath->add(*child);
    m_slots.push_back(std::move(child));
    ++m_count;
}

bool ChildList::holds(const Node& child) const {
    return child.m_slot < m_slots.size() && m_slots[child.m_slot].get() == &child;
}

std::vector<ChildList::Pointer> ChildList::takeEqual(const Node& child) {
    std::vector<Pointer> taken;
    if (child.path().empty()) {
        if (holds(child))
            taken.push_back(takeSlot(child.m_slot));
        return taken;
    }
    if (m_count <= kShortList) {
        m_byPath.reset();
        for (std::size_t slot = m_slots.size(); slot-- > 0;) {
            if (slot < m_slots.size() && m_slots[slot] && m_slots[slot]->isEqual(child))
                taken.push_back(takeSlot(slot));
        }
        return taken;
    }
    if (!m_byPath) {
        m_byPath = std::make_unique<PathIndex>(m_count);
        for (const auto& present : m_slots) {
            if (present && !present->path().empty())
                m_byPath->add(*present);
        }
    }
    while (const Node* equal = m_byPath->takeOne(child.path()))
        taken.push_back(takeSlot(equal->m_slot));
    return taken;
}

ChildList::Pointer ChildList::takeAt(std::size_t index) {
    squeeze();
    if (index >= m_slots.size())
        return nullptr;
    if (m_byPath)
        m_byPath->remove(*m_slots[index]);
    return takeSlot(index);
}

std::vector<ChildList::Pointer> ChildList::takeAll() {
    squeeze();
    m_count = 0;
    m_byPath.reset();
    return std::exchange(m_slots, {});
}

ChildList::Pointer ChildList::takeSlot(std::size_t slot) {
    Pointer child = std::move(m_slots[slot]);
    --m_count;
    while (!m_slots.empty() && !m_slots.back())
        m_slots.pop_back();
    if (m_slots.size() > 2 * m_count + kShortList)
        squeeze();
    return child;
}

void ChildList::sort(const NodeOrder& order) {
    squeeze();
    SortKeys(m_slots, order).sort(m_slots);
    for (std::size_t slot = 0; slot < m_slots.size(); ++slot)
        m_slots[slot]->m_slot = static_cast<std::uint32_t>(slot);
}

void ChildList::squeeze() const {
    if (m_slots.size() == m_count)
        return;
    std::erase(m_slots, nullptr);
    for (std::size_t slot = 0; slot < m_slots.size(); ++slot)
        m_slots[slot]->m_slot = static_cast<std::uint32_t>(slot);
}

} // namespace sweeply
