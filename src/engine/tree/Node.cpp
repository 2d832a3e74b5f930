#include "engine/tree/Node.h"

#include "engine/tree/PathOverlap.h"
#include "platform/TargetPath.h"

#include <algorithm>
#include <utility>

namespace sweeply {

Node::Pointer Node::nodeWithName(std::string_view name, Icon icon, std::uint32_t count, std::uint64_t size) {
    return nodeWithName(name, icon, count, size, {}, false);
}

Node::Pointer Node::nodeWithName(std::string_view name, Icon icon, std::uint32_t count, std::uint64_t size,
                                 std::string path, bool enabled, std::int8_t type) {
    auto node = std::make_shared<Node>();
    node->m_path = std::move(path);
    node->setName(name);
    node->m_icon = icon;
    node->m_count = count;
    node->m_size = size;
    node->m_enabled = enabled;
    node->m_type = type;
    return node;
}

Node::~Node() {
    // Children that somebody else still shows must not point to a parent that is gone.
    if (m_family) {
        for (const auto* list : {&m_family->visible, &m_family->invisible}) {
            for (const auto& child : list->all())
                child->m_parent = nullptr;
        }
    }
}

std::string_view Node::name() const { return m_isNamedByPath ? lastPathComponent(m_path) : m_name; }

void Node::setName(std::string_view name) {
    m_isNamedByPath = !m_path.empty() && name == lastPathComponent(m_path);
    m_name = m_isNamedByPath ? std::string_view{} : name;
}

void Node::setPath(std::string path) {
    const std::string oldName(name());
    if (m_parent) {
        m_parent->m_family->visible.forgetPaths();
        m_parent->m_family->invisible.forgetPaths();
    }
    m_path = std::move(path);
    setName(oldName);
}

bool Node::isEqual(const Node& other) const { return this == &other || (!m_path.empty() && m_path == other.m_path); }

// The tree

const std::vector<Node::Pointer>& Node::children() const {
    static const std::vector<Pointer> kNone;
    return m_family ? m_family->visible.all() : kNone;
}

const std::vector<Node::Pointer>& Node::invisibleChildren() const {
    static const std::vector<Pointer> kNone;
    return m_family ? m_family->invisible.all() : kNone;
}

Node::Pointer Node::childAtIndex(std::size_t index) const {
    return index < childrenCount() ? children()[index] : nullptr;
}

Node::Pointer Node::invisibleChildAtIndex(std::size_t index) const {
    return index < invisibleChildrenCount() ? invisibleChildren()[index] : nullptr;
}

Node::Pointer Node::childWithEqualName(std::string_view name) const {
    const auto found = std::ranges::find_if(children(), [&](const Pointer& child) { return child->name() == name; });
    return found == children().end() ? nullptr : *found;
}

Node::Pointer Node::childWithEqualPath(std::string_view path) const {
    const auto found = std::ranges::find_if(children(), [&](const Pointer& child) { return child->path() == path; });
    return found == children().end() ? nullptr : *found;
}

Node::Family& Node::family() {
    if (!m_family)
        m_family = std::make_unique<Family>();
    return *m_family;
}

void Node::attach(ChildList Family::*list, Pointer child) {
    if (!child || child->m_parent)
        return;
    const bool anyEnabledBefore = ifAnyEnabled();
    Family& all = family();
    child->m_parent = this;
    const std::uint64_t size = child->m_size;
    all.size += size;
    all.enabledCount += child->m_enabled;
    if (child->ifAnyEnabled()) {
        all.sizeOfAnyEnabled += size;
        ++all.anyEnabledCount;
    }
    (all.*list).append(std::move(child));
    anyEnabledMayHaveChanged(anyEnabledBefore);
    changeSize(size, 1);
}

void Node::detach(const std::vector<Pointer>& children) {
    for (const auto& child : children) {
        m_family->size -= child->m_size;
        m_family->enabledCount -= child->m_enabled;
        if (child->ifAnyEnabled()) {
            m_family->sizeOfAnyEnabled -= child->m_size;
            --m_family->anyEnabledCount;
        }
        child->m_parent = nullptr;
    }
}

void Node::addChild(Pointer child) { attach(&Family::visible, std::move(child)); }

void Node::addInvisibleChild(Pointer child) { attach(&Family::invisible, std::move(child)); }

void Node::addUniqueChild(Pointer child) {
    if (!child || std::ranges::any_of(children(), [&](const Pointer& present) {
            return holdsUpToComponent(child->path(), present->path());
        }))
        return;
    addChild(std::move(child));
}

void Node::addUniqueChildWithParentSearch(Pointer child) {
    if (!child || holdsText(child->path(), m_path) || std::ranges::any_of(children(), [&](const Pointer& present) {
            return holdsText(child->path(), present->path());
        }))
        return;
    addChild(std::move(child));
}

void Node::removeChild(const Node& child) {
    if (Node* parent = child.m_parent; parent && parent->childrenCount() == 1)
        parent->setSize(0);
    const bool anyEnabledBefore = ifAnyEnabled();
    std::vector<Pointer> taken; // kept until the end: `child` may be one of them
    if (m_family)
        detach(taken = m_family->visible.takeEqual(child));
    anyEnabledMayHaveChanged(anyEnabledBefore);
    recalcSize();
}

void Node::removeChildAtIndex(std::size_t index) {
    if (index >= childrenCount())
        return;
    if (childrenCount() == 1)
        setSize(0);
    const bool anyEnabledBefore = ifAnyEnabled();
    detach({m_family->visible.takeAt(index)});
    anyEnabledMayHaveChanged(anyEnabledBefore);
    recalcSize();
}

void Node::removeInvisibleChild(const Node& child) {
    if (invisibleChildrenCount() == 1 && !hasChildren())
        setSize(0);
    const bool anyEnabledBefore = ifAnyEnabled();
    std::vector<Pointer> taken;
    if (m_family)
        detach(taken = m_family->invisible.takeEqual(child));
    anyEnabledMayHaveChanged(anyEnabledBefore);
    recalcSize();
}

void Node::removeInvisibleChildAtIndex(std::size_t index) {
    if (index >= invisibleChildrenCount())
        return;
    if (invisibleChildrenCount() == 1 && !hasChildren())
        setSize(0);
    const bool anyEnabledBefore = ifAnyEnabled();
    detach({m_family->invisible.takeAt(index)});
    anyEnabledMayHaveChanged(anyEnabledBefore);
    recalcSize();
}

void Node::killChildren() {
    const bool anyEnabledBefore = ifAnyEnabled();
    if (m_family)
        detach(m_family->visible.takeAll());
    anyEnabledMayHaveChanged(anyEnabledBefore);
    recalcSize();
    setSize(0);
}

void Node::killInvisibleChildren() {
    const bool anyEnabledBefore = ifAnyEnabled();
    if (m_family)
        detach(m_family->invisible.takeAll());
    anyEnabledMayHaveChanged(anyEnabledBefore);
    recalcSize();
    if (!hasChildren())
        setSize(0);
}

void Node::sortArrayUsingDescriptors(const std::vector<SortDescriptor>& descriptors) {
    if (!m_family || descriptors.empty())
        return;
    const auto& [key, ascending] = descriptors.front();
    // An ascending name column lists names from Z to A, and only that one.
    if (key == "Name")
        m_family->visible.sort(compareNamesAscending, ascending);
    else if (key == "Size")
        m_family->visible.sort(compareSizesAscending, !ascending);
    else if (key == "Number")
        m_family->visible.sort(compareNumbersAscending, !ascending);
    for (const auto& child : children())
        child->sortArrayUsingDescriptors(descriptors);
}

// Sizes and counts

void Node::setSize(std::uint64_t size) {
    if (m_parent) {
        m_parent->m_family->size += size - m_size; // modulo 2^64, as any sum of sizes
        if (ifAnyEnabled())
            m_parent->m_family->sizeOfAnyEnabled += size - m_size;
    }
    m_size = size;
}

std::uint64_t Node::childrenSize() const { return isLeaf() ? m_size : m_family->size; }

void Node::recalcSize() {
    for (Node* node = this; node; node = node->m_parent) {
        if (!node->isLeaf())
            node->setSize(node->ifAnyEnabled() ? node->m_family->sizeOfAnyEnabled : node->m_family->size);
    }
}

void Node::changeSize(std::uint64_t delta, int direction) {
    if (delta == 0)
        return;
    const std::uint64_t change = delta * static_cast<std::uint64_t>(direction);
    for (Node* node = this; node; node = node->m_parent) {
        const std::uint64_t sum = node->m_size + change;
        node->setSize(static_cast<std::int64_t>(sum) < 0 ? 0 : sum);
    }
}

void Node::zeroParentSizes() {
    for (Node* node = m_parent; node; node = node->m_parent)
        node->setSize(0);
}

std::uint32_t Node::count() const {
    return isLeaf() ? m_count : static_cast<std::uint32_t>(childrenCount() + invisibleChildrenCount());
}

std::string Node::stringCount() const { return count() == 0 ? std::string() : std::to_string(count()); }

// Check marks

void Node::setEnabledWithoutRecalc(bool enabled) {
    if (m_enabled == enabled)
        return;
    const bool anyEnabledBefore = ifAnyEnabled();
    m_enabled = enabled;
    if (m_parent)
        m_parent->m_family->enabledCount += enabled ? 1U : ~0U;
    anyEnabledMayHaveChanged(anyEnabledBefore);
}

void Node::anyEnabledMayHaveChanged(bool before) {
    for (Node* node = this; node->m_parent; node = node->m_parent) {
        const bool now = node->ifAnyEnabled();
        if (now == before)
            return;
        before = node->m_parent->ifAnyEnabled();
        Family& above = *node->m_parent->m_family;
        if (now) {
            above.sizeOfAnyEnabled += node->m_size;
            ++above.anyEnabledCount;
        } else {
            above.sizeOfAnyEnabled -= node->m_size;
            --above.anyEnabledCount;
        }
    }
}

CheckState Node::state() const {
    if (hasChildren())
        return stateFromChildrenStates();
    return m_enabled ? CheckState::Checked : CheckState::Unchecked;
}

CheckState Node::stateFromChildrenStates() const {
    const std::uint32_t enabled = numberOfEnabledObjects();
    if (enabled == childrenCount())
        return CheckState::Checked;
    return enabled > 0 ? CheckState::Mixed : CheckState::Unchecked;
}

std::uint32_t Node::numberOfEnabledObjects() const {
    return isLeaf() ? static_cast<std::uint32_t>(m_enabled) : m_family->enabledCount;
}

bool Node::ifAnyEnabled() const { return isLeaf() ? m_enabled : m_family->anyEnabledCount > 0; }

void Node::setEnabled(bool enabled, int direction) {
    if (!m_parent) {
        setEnabledWithoutRecalc(enabled);
        return;
    }
    if (m_parent->stateFromChildrenStates() == CheckState::Unchecked)
        m_parent->changeSize(m_parent->m_size, -1);
    setEnabledWithoutRecalc(enabled);
    std::uint64_t delta = childrenSize();
    if (hasChildren()) {
        setSize(delta);
        if (m_parent->stateFromChildrenStates() != CheckState::Mixed) {
            delta = 0;
            m_parent->setSize(m_parent->childrenSize());
        }
    }
    m_parent->changeSize(delta, direction);
}

void Node::becomeEnabled(bool enabled) {
    if (hasInvisibleChildren())
        setEveryChildEnabled(enabled);
    if (hasChildren()) {
        setEveryChildEnabled(enabled);
        return;
    }
    if (m_enabled == enabled)
        return;
    if (!m_parent || m_parent->stateFromChildrenStates() == CheckState::Unchecked) {
        zeroParentSizes();
        setEnabled(enabled);
        return;
    }
    setEnabled(enabled);
    if (m_parent->stateFromChildrenStates() == CheckState::Unchecked)
        m_parent->changeSize(m_parent->childrenSize(), 1);
}

void Node::setEveryChildEnabled(bool enabled) {
    setEnabled(enabled);
    for (const auto& child : children())
        child->silentSetEveryChildEnabled(enabled);
    for (const auto& child : invisibleChildren())
        child->silentSetEveryChildEnabled(enabled);
}

void Node::silentSetEveryChildEnabled(bool enabled) {
    setEnabledWithoutRecalc(enabled);
    for (const auto& child : children())
        child->silentSetEveryChildEnabled(enabled);
    for (const auto& child : invisibleChildren())
        child->silentSetEveryChildEnabled(enabled);
}

} // namespace sweeply
