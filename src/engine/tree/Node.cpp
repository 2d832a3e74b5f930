#include "engine/tree/Node.h"

#include "engine/tree/PathOverlap.h"

#include <algorithm>
#include <utility>

namespace sweeply {

Node::Node(std::string_view name, Icon icon, std::uint32_t count, std::uint64_t size, std::string path, bool enabled,
           std::int8_t type)
    : NodeAttributes(name, icon, std::move(path), type), m_enabled(enabled), m_size(size), m_count(count) {}

Node::Pointer Node::nodeWithName(std::string_view name, Icon icon, std::uint32_t count, std::uint64_t size) {
    return nodeWithName(name, icon, count, size, {}, false);
}

Node::Pointer Node::nodeWithName(std::string_view name, Icon icon, std::uint32_t count, std::uint64_t size,
                                 std::string path, bool enabled, std::int8_t type) {
    return std::make_shared<Node>(name, icon, count, size, std::move(path), enabled, type);
}

Node::Pointer Node::nodeWithName(std::string_view name, Icon icon, std::uint32_t count, const MeasuredItem& item,
                                 std::string path, bool enabled, std::int8_t type) {
    auto node = nodeWithName(name, icon, count, item.size, std::move(path), enabled, type);
    node->setSeen(item.identity);
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

void Node::setPath(std::string path) {
    if (m_parent) {
        m_parent->m_family->visible.forgetPaths();
        m_parent->m_family->invisible.forgetPaths();
    }
    replacePath(std::move(path));
}

bool Node::isEqual(const Node& other) const { return this == &other || (!path().empty() && path() == other.path()); }

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

void Node::attach(ChildList Family::*list, Pointer child) {
    if (!child || child->m_parent)
        return;
    const ChildShare before = share();
    if (!m_family)
        m_family = std::make_unique<Family>();
    child->m_parent = this;
    const ChildShare added = child->share();
    m_family->sums.add(added);
    (*m_family.*list).append(std::move(child));
    shareHasChanged(before);
    changeSize(added.size, 1);
}

template<typename Take>
void Node::detach(const Take& take) {
    const ChildShare before = share();
    std::vector<Pointer> taken; // until the end: the caller's node may be one of them
    if (m_family)
        taken = take(*m_family);
    for (const auto& child : taken) {
        m_family->sums.subtract(child->share());
        child->m_parent = nullptr;
    }
    shareHasChanged(before);
    recalcSize();
}

void Node::addUniqueChild(Pointer child) {
    if (!child || std::ranges::any_of(children(), [&](const Pointer& present) {
            return holdsUpToComponent(child->path(), present->path());
        }))
        return;
    addChild(std::move(child));
}

void Node::addUniqueChildWithParentSearch(Pointer child) {
    if (!child || holdsText(child->path(), path()) || std::ranges::any_of(children(), [&](const Pointer& present) {
            return holdsText(child->path(), present->path());
        }))
        return;
    addChild(std::move(child));
}

void Node::removeChild(const Node& child) {
    if (Node* parent = child.m_parent; parent && parent->childrenCount() == 1)
        parent->setSize(0);
    detach([&](Family& all) { return all.visible.takeEqual(child); });
}

void Node::removeChildAtIndex(std::size_t index) {
    if (index >= childrenCount())
        return;
    if (childrenCount() == 1)
        setSize(0);
    detach([&](Family& all) { return std::vector{all.visible.takeAt(index)}; });
}

void Node::removeInvisibleChild(const Node& child) {
    if (invisibleChildrenCount() == 1 && !hasChildren())
        setSize(0);
    detach([&](Family& all) { return all.invisible.takeEqual(child); });
}

void Node::removeInvisibleChildAtIndex(std::size_t index) {
    if (index >= invisibleChildrenCount())
        return;
    if (invisibleChildrenCount() == 1 && !hasChildren())
        setSize(0);
    detach([&](Family& all) { return std::vector{all.invisible.takeAt(index)}; });
}

void Node::killChildren() {
    detach([](Family& all) { return all.visible.takeAll(); });
    setSize(0);
}

void Node::killInvisibleChildren() {
    detach([](Family& all) { return all.invisible.takeAll(); });
    if (!hasChildren())
        setSize(0);
}

void Node::sortArrayUsingDescriptors(const std::vector<SortDescriptor>& descriptors) {
    if (!m_family || descriptors.empty())
        return;
    if (const auto order = orderFor(descriptors.front()))
        m_family->visible.sort(*order);
    for (const auto& child : children())
        child->sortArrayUsingDescriptors(descriptors);
}

// Sizes, counts and check marks

void Node::shareHasChanged(ChildShare before) {
    for (Node* node = this; node->m_parent; node = node->m_parent) {
        const ChildShare now = node->share();
        if (now == before)
            return;
        const ChildShare parentBefore = node->m_parent->share();
        node->m_parent->m_family->sums.replace(before, now);
        before = parentBefore;
    }
}

void Node::setSize(std::uint64_t size) {
    if (m_parent)
        m_parent->m_family->sums.resize(share(), size);
    m_size = size;
}

void Node::recalcSize() {
    for (Node* node = this; node; node = node->m_parent) {
        if (!node->isLeaf())
            node->setSize(node->ifAnyEnabled() ? node->m_family->sums.sizeOfAnyEnabled() : node->m_family->sums.size());
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

void Node::setEnabledWithoutRecalc(bool enabled) {
    if (m_enabled == enabled)
        return;
    const ChildShare before = share();
    m_enabled = enabled;
    shareHasChanged(before);
}

} // namespace sweeply
