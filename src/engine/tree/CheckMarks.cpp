#include "engine/tree/CheckMarks.h"

#include "engine/tree/Node.h"

namespace sweeply::checkmarks {

namespace {

/// Everything below. Sizes follow only where something is checked by itself alone and so stays as it is: then they are
/// no longer those of a group that is checked wholly. True in that case.
bool silentSetChildrenEnabled(Node& node, bool enabled) {
    bool hasExceptions = false;
    for (const auto* children : {&node.children(), &node.invisibleChildren()}) {
        for (const auto& child : *children) {
            if (enabled && child->isCheckedAlone()) {
                hasExceptions = true;
            } else {
                child->setEnabledWithoutRecalc(enabled);
                hasExceptions = silentSetChildrenEnabled(*child, enabled) || hasExceptions;
            }
        }
    }
    if (hasExceptions)
        node.recalcSize();
    return hasExceptions;
}

} // namespace

CheckState state(const Node& node) {
    if (node.hasChildren())
        return stateFromChildrenStates(node);
    return node.ifEnabled() ? CheckState::Checked : CheckState::Unchecked;
}

CheckState stateFromChildrenStates(const Node& node) {
    const std::uint32_t enabled = node.numberOfEnabledObjects();
    if (enabled == node.childrenCount())
        return CheckState::Checked;
    return enabled > 0 ? CheckState::Mixed : CheckState::Unchecked;
}

void setEnabled(Node& node, bool enabled, int direction) {
    Node* parent = node.parentNode();
    if (!parent) {
        node.setEnabledWithoutRecalc(enabled);
        return;
    }
    if (stateFromChildrenStates(*parent) == CheckState::Unchecked)
        parent->changeSize(parent->longSize(), -1);
    node.setEnabledWithoutRecalc(enabled);
    std::uint64_t delta = node.childrenSize();
    if (node.hasChildren()) {
        node.setSize(delta);
        if (stateFromChildrenStates(*parent) != CheckState::Mixed) {
            delta = 0;
            parent->setSize(parent->childrenSize());
        }
    }
    parent->changeSize(delta, direction);
}

void becomeEnabled(Node& node, bool enabled) {
    if (node.hasInvisibleChildren())
        node.setEveryChildEnabled(enabled);
    if (node.hasChildren()) {
        node.setEveryChildEnabled(enabled);
        return;
    }
    if (node.ifEnabled() == enabled)
        return;
    Node* parent = node.parentNode();
    if (!parent || stateFromChildrenStates(*parent) == CheckState::Unchecked) {
        node.zeroParentSizes();
        node.setEnabled(enabled);
        return;
    }
    node.setEnabled(enabled);
    if (stateFromChildrenStates(*parent) == CheckState::Unchecked)
        parent->changeSize(parent->childrenSize(), 1);
}

void setEveryChildEnabled(Node& node, bool enabled) {
    node.setEnabled(enabled);
    silentSetChildrenEnabled(node, enabled);
}

void silentSetEveryChildEnabled(Node& node, bool enabled) {
    node.setEnabledWithoutRecalc(enabled);
    silentSetChildrenEnabled(node, enabled);
}

} // namespace sweeply::checkmarks
