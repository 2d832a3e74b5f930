#pragma once

#include "engine/tree/CheckMarks.h"
#include "engine/tree/ChildList.h"
#include "engine/tree/ChildSums.h"
#include "engine/tree/NodeAttributes.h"
#include "engine/tree/NodeOrder.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace sweeply {

/// One entry of a module's results: an item on disk (a leaf) or a group of entries.
///
/// A leaf's size is its item's. A group's is what removing its checked part would free, or, when nothing below it is
/// checked, all that it holds. The operations keep that so as entries come, go and are checked; each says how.
///
/// A parent owns its children; whoever else shows one may share it. The parent pointer is plain and cleared when the
/// child is taken out. A node stands in one tree at most: adding one that has a parent does nothing.
///
/// No lock of its own: the coordinator's tree lock guards every tree that more than one thread can see.
///
/// Invariant, which makes every question but silentSetEveryChildEnabled and sorting cost the same however many children
/// there are: the family's sums are those of the children's shares. Whatever changes a node's size, check mark or
/// children replaces its share in its parent's sums before it returns.
class Node final : public NodeAttributes {
  public:
    using Pointer = std::shared_ptr<Node>;

    static Pointer nodeWithName(std::string_view name, Icon icon, std::uint32_t count, std::uint64_t size);
    /// Of an item that was just looked at.
    static Pointer nodeWithName(std::string_view name, Icon icon, std::uint32_t count, const MeasuredItem& item,
                                std::string path, bool enabled, std::int8_t type = 0);
    static Pointer nodeWithName(std::string_view name, Icon icon, std::uint32_t count, std::uint64_t size,
                                std::string path, bool enabled, std::int8_t type = 0);

    Node() = default;
    Node(std::string_view name, Icon icon, std::uint32_t count, std::uint64_t size, std::string path, bool enabled,
         std::int8_t type);
    ~Node();
    Node(const Node&) = delete;
    Node& operator=(const Node&) = delete;

    void setPath(std::string path);
    /// The same item: this very node, or one with the same path. Nodes without a path equal only themselves.
    [[nodiscard]] bool isEqual(const Node& other) const;

    // The tree

    [[nodiscard]] Node* parentNode() const { return m_parent; }
    /// Visible children in order. The reference is good until the next change; so is that of invisibleChildren.
    [[nodiscard]] const std::vector<Pointer>& children() const;
    /// Children that count in sizes, counts and check states but are not shown.
    [[nodiscard]] const std::vector<Pointer>& invisibleChildren() const;
    /// nullptr past the end.
    [[nodiscard]] Pointer childAtIndex(std::size_t index) const;
    [[nodiscard]] Pointer invisibleChildAtIndex(std::size_t index) const;
    [[nodiscard]] std::size_t childrenCount() const { return m_family ? m_family->visible.count() : 0; }
    [[nodiscard]] std::size_t invisibleChildrenCount() const { return m_family ? m_family->invisible.count() : 0; }
    [[nodiscard]] bool hasChildren() const { return childrenCount() > 0; }
    [[nodiscard]] bool hasInvisibleChildren() const { return invisibleChildrenCount() > 0; }
    [[nodiscard]] bool expandable() const { return hasChildren(); }
    /// The first visible child of that name or path; nullptr if none is.
    [[nodiscard]] Pointer childWithEqualName(std::string_view name) const;
    [[nodiscard]] Pointer childWithEqualPath(std::string_view path) const;

    /// Appends; this node and all above grow by the child's size, whatever its check mark. Nothing for nullptr.
    void addChild(Pointer child) { attach(&Family::visible, std::move(child)); }
    void addInvisibleChild(Pointer child) { attach(&Family::invisible, std::move(child)); }
    /// Not if the child's path has a visible child's path in it, from anywhere to the end of a component.
    void addUniqueChild(Pointer child);
    /// Not if the child's path has this node's or a visible child's path in it anywhere.
    void addUniqueChildWithParentSearch(Pointer child);
    /// Takes out every visible child that equals `child` and recalculates. May destroy `child`.
    void removeChild(const Node& child);
    void removeChildAtIndex(std::size_t index);
    void removeInvisibleChild(const Node& child);
    void removeInvisibleChildAtIndex(std::size_t index);
    /// Takes out all visible children and recalculates; its own size ends at 0.
    void killChildren();
    void killInvisibleChildren();

    /// Sorts the visible children, and theirs, by the first descriptor alone; equal ones keep their order.
    void sortArrayUsingDescriptors(const std::vector<SortDescriptor>& descriptors);

    // Sizes, in bytes, and counts

    [[nodiscard]] std::uint64_t longSize() const { return m_size; }
    /// Sets the field and nothing else.
    void setSize(std::uint64_t size);
    /// The sum of all children's sizes, or its own size without any.
    [[nodiscard]] std::uint64_t childrenSize() const { return isLeaf() ? m_size : m_family->sums.size(); }
    /// Sets a group's size from its children's, then has the parent do the same, up to the root.
    void recalcSize();
    /// Adds `delta` x `direction` (+1 or -1) to this node and everyone above, each stopping at 0 by itself.
    void changeSize(std::uint64_t delta, int direction);
    /// Sets everyone above to 0.
    void zeroParentSizes();
    /// The number of direct children, or the stored count without any.
    [[nodiscard]] std::uint32_t count() const;
    void setCount(std::uint32_t count) { m_count = count; }
    /// Empty for 0.
    [[nodiscard]] std::string stringCount() const;

    // Check marks

    [[nodiscard]] bool ifEnabled() const { return m_enabled; }
    /// Sets the field and no size.
    void setEnabledWithoutRecalc(bool enabled);
    [[nodiscard]] CheckState state() const { return checkmarks::state(*this); }
    /// Compares the checked children, invisible ones included, with the number of visible ones: a checked invisible
    /// child beside checked visible ones makes it mixed.
    [[nodiscard]] CheckState stateFromChildrenStates() const { return checkmarks::stateFromChildrenStates(*this); }
    /// Direct children that are checked themselves; 1 or 0 for a leaf.
    [[nodiscard]] std::uint32_t numberOfEnabledObjects() const {
        return isLeaf() ? std::uint32_t{m_enabled} : m_family->sums.enabledCount();
    }
    /// Is anything checked at or below the leaves of this node?
    [[nodiscard]] bool ifAnyEnabled() const { return isLeaf() ? m_enabled : m_family->sums.anyEnabledCount() > 0; }
    void setEnabled(bool enabled) { setEnabled(enabled, enabled ? 1 : -1); }
    void setEnabled(bool enabled, int direction) { checkmarks::setEnabled(*this, enabled, direction); }
    /// What a click on the check box does.
    void becomeEnabled(bool enabled) { checkmarks::becomeEnabled(*this, enabled); }
    /// setEnabled here, then the fields of everything below, without sizes. What is checked alone stays as it is when
    /// the rest is checked.
    void setEveryChildEnabled(bool enabled) { checkmarks::setEveryChildEnabled(*this, enabled); }
    /// Sets the fields of this node and everything below. Follow it with recalcSize where sizes matter.
    void silentSetEveryChildEnabled(bool enabled) { checkmarks::silentSetEveryChildEnabled(*this, enabled); }

  private:
    friend class ChildList; // keeps m_slot

    struct Family {
        ChildList visible;
        ChildList invisible;
        ChildSums sums;
    };

    [[nodiscard]] bool isLeaf() const {
        return !m_family || m_family->visible.count() + m_family->invisible.count() == 0;
    }
    [[nodiscard]] ChildShare share() const { return {m_size, m_enabled, ifAnyEnabled()}; }
    /// Replaces this node's share, which was `before`, in its parent's sums, and the parent's in those above.
    void shareHasChanged(ChildShare before);
    void attach(ChildList Family::*list, Pointer child);
    /// Takes out the children that `take` takes from the family, and recalculates.
    template<typename Take>
    void detach(const Take& take);

    bool m_enabled = false; // first, where it fits behind the base's flags
    std::unique_ptr<Family> m_family;
    Node* m_parent = nullptr;
    std::uint64_t m_size = 0;
    std::uint32_t m_count = 0;
    std::uint32_t m_slot = 0; ///< place in the parent's list
};

} // namespace sweeply
