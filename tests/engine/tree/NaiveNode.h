#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace sweeply {

/// The rules of Node written down one by one, with nothing remembered: every question walks the children. What Node
/// remembers must give the same answers.
struct NaiveNode {
    using Pointer = std::shared_ptr<NaiveNode>;
    using List = std::vector<Pointer>;

    List visible;
    List invisible;
    std::string name;
    std::string path;
    std::uint32_t storedCount = 0;
    std::uint64_t size = 0;
    bool enabled = false;
    NaiveNode* parent = nullptr;

    bool isLeaf() const { return visible.empty() && invisible.empty(); }
    List all() const {
        List both = visible;
        both.insert(both.end(), invisible.begin(), invisible.end());
        return both;
    }
    bool isEqual(const NaiveNode& other) const { return this == &other || (!path.empty() && path == other.path); }

    // Questions

    std::uint64_t childrenSize() const {
        if (isLeaf())
            return size;
        std::uint64_t sum = 0;
        for (const auto& child : all())
            sum += child->size;
        return sum;
    }
    std::uint32_t count() const { return isLeaf() ? storedCount : static_cast<std::uint32_t>(all().size()); }
    std::uint32_t numberOfEnabledObjects() const {
        if (isLeaf())
            return enabled ? 1 : 0;
        std::uint32_t number = 0;
        for (const auto& child : all())
            number += child->enabled ? 1 : 0;
        return number;
    }
    int stateFromChildrenStates() const {
        if (numberOfEnabledObjects() == visible.size())
            return 1;
        return numberOfEnabledObjects() > 0 ? -1 : 0;
    }
    int state() const { return visible.empty() ? (enabled ? 1 : 0) : stateFromChildrenStates(); }
    bool ifAnyEnabled() const {
        if (isLeaf())
            return enabled;
        for (const auto& child : all()) {
            if (child->ifAnyEnabled())
                return true;
        }
        return false;
    }
    /// What an absent parent answers is 0.
    int parentState() const { return parent ? parent->stateFromChildrenStates() : 0; }

    // Sizes

    void recalcSize() {
        if (!isLeaf()) {
            const bool anyEnabled = ifAnyEnabled();
            std::uint64_t sum = 0;
            for (const auto& child : all())
                sum += !anyEnabled || child->ifAnyEnabled() ? child->size : 0;
            size = sum;
        }
        if (parent)
            parent->recalcSize();
    }
    void changeSize(std::uint64_t delta, int direction) {
        if (delta == 0)
            return;
        const auto sum = static_cast<std::int64_t>(size + delta * static_cast<std::uint64_t>(direction));
        size = sum < 0 ? 0 : static_cast<std::uint64_t>(sum);
        if (parent)
            parent->changeSize(delta, direction);
    }
    void zeroParentSizes() {
        if (!parent)
            return;
        parent->size = 0;
        parent->zeroParentSizes();
    }

    // Check marks

    void setEnabled(bool flag) { setEnabled(flag, flag ? 1 : -1); }
    void setEnabled(bool flag, int direction) {
        if (!parent) {
            enabled = flag;
            return;
        }
        if (parent->stateFromChildrenStates() == 0)
            parent->changeSize(parent->size, -1);
        enabled = flag;
        std::uint64_t delta = childrenSize();
        if (!visible.empty()) {
            size = delta;
            if (parent->stateFromChildrenStates() != -1) {
                delta = 0;
                parent->size = parent->childrenSize();
            }
        }
        parent->changeSize(delta, direction);
    }
    void becomeEnabled(bool flag) {
        if (!invisible.empty())
            setEveryChildEnabled(flag);
        if (visible.empty()) {
            if (enabled == flag)
                return;
            if (parentState() == 0) {
                zeroParentSizes();
                setEnabled(flag);
                return;
            }
            setEnabled(flag);
            if (parentState() == 0)
                parent->changeSize(parent->childrenSize(), 1);
        } else {
            setEveryChildEnabled(flag);
        }
    }
    void setEveryChildEnabled(bool flag) {
        setEnabled(flag);
        for (const auto& child : all())
            child->silentSetEveryChildEnabled(flag);
    }
    void silentSetEveryChildEnabled(bool flag) {
        enabled = flag;
        for (const auto& child : all())
            child->silentSetEveryChildEnabled(flag);
    }

    // The tree

    void add(List NaiveNode::*list, const Pointer& child) {
        if (child->parent)
            return;
        child->parent = this;
        (this->*list).push_back(child);
        changeSize(child->size, 1);
    }
    void addUniqueChild(const Pointer& child) {
        for (const auto& present : visible) {
            if (!present->path.empty() && (child->path + "/").find(present->path + "/") != std::string::npos)
                return;
        }
        add(&NaiveNode::visible, child);
    }
    void addUniqueChildWithParentSearch(const Pointer& child) {
        if (!path.empty() && child->path.find(path) != std::string::npos)
            return;
        for (const auto& present : visible) {
            if (!present->path.empty() && child->path.find(present->path) != std::string::npos)
                return;
        }
        add(&NaiveNode::visible, child);
    }
    void take(List NaiveNode::*list, const NaiveNode& child) {
        List kept;
        for (const auto& present : std::exchange(this->*list, {})) {
            if (present->isEqual(child))
                present->parent = nullptr;
            else
                kept.push_back(present);
        }
        this->*list = kept;
    }
    void takeAt(List NaiveNode::*list, std::size_t index) {
        auto& items = this->*list;
        items[index]->parent = nullptr;
        items.erase(items.begin() + static_cast<std::ptrdiff_t>(index));
    }
    void removeChild(const Pointer& child) {
        if (child->parent && child->parent->visible.size() == 1)
            child->parent->size = 0;
        take(&NaiveNode::visible, *child);
        recalcSize();
    }
    void removeChildAtIndex(std::size_t index) {
        if (index >= visible.size())
            return;
        if (visible.size() == 1)
            size = 0;
        takeAt(&NaiveNode::visible, index);
        recalcSize();
    }
    void removeInvisibleChild(const Pointer& child) {
        if (invisible.size() == 1 && visible.empty())
            size = 0;
        take(&NaiveNode::invisible, *child);
        recalcSize();
    }
    void removeInvisibleChildAtIndex(std::size_t index) {
        if (index >= invisible.size())
            return;
        if (invisible.size() == 1 && visible.empty())
            size = 0;
        takeAt(&NaiveNode::invisible, index);
        recalcSize();
    }
    void kill(List NaiveNode::*list) {
        for (const auto& child : std::exchange(this->*list, {}))
            child->parent = nullptr;
        recalcSize();
        if (list == &NaiveNode::visible || visible.empty())
            size = 0;
    }

    template<typename Less>
    void sort(const Less& less) {
        std::ranges::stable_sort(visible, less);
        for (const auto& child : visible)
            child->sort(less);
    }
};

} // namespace sweeply
