#include "engine/CleanWalk.h"

#include "engine/EngineEvents.h"
#include "engine/ModuleHooks.h"
#include "engine/ModuleResults.h"
#include "engine/ModuleRun.h"
#include "platform/NotificationCenter.h"

#include <cstdint>
#include <mutex>

namespace sweeply {

namespace {

void addLeavesBelow(const Node& group, std::vector<Node::Pointer>& leaves) {
    for (const auto* children : {&group.children(), &group.invisibleChildren()}) {
        for (const auto& child : *children) {
            if (!child->ifEnabled())
                continue; // a group whose own mark is off is not entered, even when something below it is checked
            if (child->hasChildren() || child->hasInvisibleChildren())
                addLeavesBelow(*child, leaves);
            else
                leaves.push_back(child);
        }
    }
}

} // namespace

std::vector<Node::Pointer> CleanWalk::leavesToClean(const Node& root) {
    std::vector<Node::Pointer> leaves;
    for (const auto& child : root.children()) {
        if (child->hasChildren())
            addLeavesBelow(*child, leaves);
        else if (child->ifEnabled())
            leaves.push_back(child);
    }
    return leaves;
}

void CleanWalk::cleanChildren() {
    m_run.incTotalProcentageBy(m_results.numberOfEnabledObjects());
    std::vector<Node::Pointer> children; // the live list changes as nodes go
    {
        std::lock_guard lock(m_services.treeLock);
        children = m_results.rootNode()->children();
    }
    for (const auto& child : children) {
        if (m_run.stopped())
            break;
        bool isGroup = false;
        bool isChecked = false;
        {
            std::lock_guard lock(m_services.treeLock);
            isGroup = child->hasChildren();
            isChecked = isGroup ? child->ifAnyEnabled() : child->ifEnabled();
        }
        if (isGroup && isChecked) {
            recursivlyCleanNode(*child);
            bool isEmpty = false;
            {
                std::lock_guard lock(m_services.treeLock);
                isEmpty = !child->hasChildren();
            }
            if (isEmpty)
                m_results.removeNode(*child, true);
        } else if (isChecked) {
            cleanLeaf(*child);
        }
        m_run.waitWhilePaused();
    }
}

void CleanWalk::recursivlyCleanNode(Node& node) {
    if (!m_hooks.isRootNodeCleanable(node))
        return;
    std::vector<Node::Pointer> children;
    bool waitsFirst = false;
    {
        std::lock_guard lock(m_services.treeLock);
        waitsFirst = node.shouldWait();
        children = node.children();
        const auto& invisible = node.invisibleChildren();
        children.insert(children.end(), invisible.begin(), invisible.end());
    }
    if (waitsFirst)
        m_run.sleepBeforeRemoval();
    for (const auto& child : children) {
        if (m_run.stopped())
            break;
        bool isLeaf = false;
        bool isChecked = false;
        bool hasAnyChecked = false;
        {
            std::lock_guard lock(m_services.treeLock);
            isLeaf = !child->hasChildren() && !child->hasInvisibleChildren();
            isChecked = child->ifEnabled();
            hasAnyChecked = child->ifAnyEnabled();
        }
        if (isLeaf) {
            if (isChecked)
                cleanLeaf(*child);
        } else {
            // A group whose own mark is off is not entered, even when something below it is checked.
            if (isChecked && hasAnyChecked)
                recursivlyCleanNode(*child);
            std::uint64_t size = 0;
            bool isDone = false;
            {
                std::lock_guard lock(m_services.treeLock);
                isDone = !child->hasChildren() && child->ifEnabled() && !child->hasInvisibleChildren();
                size = child->longSize();
            }
            if (isDone) {
                m_run.incTotalSizeDoneWithInt(size);
                m_results.removeNode(*child, true);
            }
        }
        m_run.waitWhilePaused();
    }
}

void CleanWalk::cleanLeaf(Node& node) {
    const std::uint64_t size = [&] {
        std::lock_guard lock(m_services.treeLock);
        return node.longSize();
    }();
    m_run.setCurrentItem(node.path());
    const auto outcome = m_hooks.cleanThisNode(node);
    if (outcome.frees())
        m_services.notifications.post(RemovedAmountOfSpace{size});
    m_run.incTotalSizeDoneWithInt(size);
    if (outcome.isDone())
        m_results.removeNode(node, true);
}

} // namespace sweeply
