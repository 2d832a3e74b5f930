#pragma once

#include "engine/tree/ChildList.h"
#include "engine/tree/Icon.h"
#include "engine/tree/NodeOrder.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace sweeply {

/// How a check box looks.
enum class CheckState : int { Unchecked = 0, Checked = 1, Mixed = -1 };

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
/// Invariants, which make every question but silentSetEveryChildEnabled and sorting cost the same however many children
/// there are:
///  - m_family holds, over visible and invisible children together, the sum of their sizes, the sum over those whose
///    ifAnyEnabled is true, and how many are checked themselves or have something checked below;
///  - whatever changes a child's size, check mark or children updates its parent's sums before it returns.
class Node final {
  public:
    using Pointer = std::shared_ptr<Node>;

    static Pointer nodeWithName(std::string_view name, Icon icon, std::uint32_t count, std::uint64_t size);
    /// A node named like its path's last component does not store the name twice.
    static Pointer nodeWithName(std::string_view name, Icon icon, std::uint32_t count, std::uint64_t size,
                                std::string path, bool enabled, std::int8_t type = 0);

    Node() = default;
    ~Node();
    Node(const Node&) = delete;
    Node& operator=(const Node&) = delete;

    // What it is

    [[nodiscard]] std::string_view name() const;
    void setName(std::string_view name);
    /// Absolute target path; empty for a group that is no item itself.
    [[nodiscard]] const std::string& path() const { return m_path; }
    void setPath(std::string path);
    [[nodiscard]] Icon icon() const { return m_icon; }
    void setIcon(Icon icon) { m_icon = icon; }
    [[nodiscard]] std::int8_t type() const { return m_type; }
    void setType(std::int8_t type) { m_type = type; }
    [[nodiscard]] bool isRootNode() const { return m_isRootNode; }
    void setAsRootNode() { m_isRootNode = true; }
    /// Should a removal pause before this group?
    [[nodiscard]] bool shouldWait() const { return m_shouldWait; }
    void setShouldWait(bool shouldWait) { m_shouldWait = shouldWait; }
    /// Should an outline show it expanded?
    [[nodiscard]] bool needExpand() const { return m_needExpand; }
    void setNeedExpand(bool needExpand) { m_needExpand = needExpand; }
    /// Is its check mark remembered in the ignore list?
    [[nodiscard]] bool storeState() const { return m_storeState; }
    void setStoreState(bool storeState) { m_storeState = storeState; }
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
    void addChild(Pointer child);
    void addInvisibleChild(Pointer child);
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
    [[nodiscard]] std::uint64_t childrenSize() const;
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
    [[nodiscard]] CheckState state() const;
    /// Compares the checked children, invisible ones included, with the number of visible ones: a checked invisible
    /// child beside checked visible ones makes it mixed.
    [[nodiscard]] CheckState stateFromChildrenStates() const;
    /// Direct children that are checked themselves; 1 or 0 for a leaf.
    [[nodiscard]] std::uint32_t numberOfEnabledObjects() const;
    /// Is anything checked at or below the leaves of this node?
    [[nodiscard]] bool ifAnyEnabled() const;
    void setEnabled(bool enabled) { setEnabled(enabled, enabled ? 1 : -1); }
    void setEnabled(bool enabled, int direction);
    /// What a click on the check box does.
    void becomeEnabled(bool enabled);
    /// setEnabled here, then the fields of everything below, without sizes.
    void setEveryChildEnabled(bool enabled);
    /// Sets the fields of this node and everything below. Follow it with recalcSize where sizes matter.
    void silentSetEveryChildEnabled(bool enabled);

  private:
    friend class ChildList; // keeps m_slot

    struct Family {
        ChildList visible;
        ChildList invisible;
        std::uint64_t size = 0;             ///< of all children
        std::uint64_t sizeOfAnyEnabled = 0; ///< of those whose ifAnyEnabled is true
        std::uint32_t enabledCount = 0;     ///< children checked themselves
        std::uint32_t anyEnabledCount = 0;  ///< children whose ifAnyEnabled is true
    };

    [[nodiscard]] bool isLeaf() const {
        return !m_family || m_family->visible.count() + m_family->invisible.count() == 0;
    }
    Family& family();
    void attach(ChildList Family::*list, Pointer child);
    void detach(const std::vector<Pointer>& children);
    /// Tells the parent when ifAnyEnabled is no longer what it was.
    void anyEnabledMayHaveChanged(bool before);

    std::string m_path;
    std::string m_name; ///< empty when it is the last component of m_path
    std::unique_ptr<Family> m_family;
    Node* m_parent = nullptr;
    std::uint64_t m_size = 0;
    std::uint32_t m_count = 0;
    std::uint32_t m_slot = 0; ///< place in the parent's list
    Icon m_icon = Icon::None;
    std::int8_t m_type = 0;
    bool m_enabled : 1 = false;
    bool m_isRootNode : 1 = false;
    bool m_shouldWait : 1 = true;
    bool m_needExpand : 1 = false;
    bool m_storeState : 1 = false;
    bool m_isNamedByPath : 1 = false;
};

} // namespace sweeply
