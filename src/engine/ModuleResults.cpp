#include "engine/ModuleResults.h"

#include "engine/EngineEvents.h"
#include "platform/Localization.h"
#include "platform/MainThread.h"
#include "platform/NotificationCenter.h"

#include <algorithm>
#include <mutex>
#include <utility>

namespace sweeply {

ModuleResults::ModuleResults(EngineServices services) : m_services(services), m_rootNode(std::make_shared<Node>()) {
    m_rootNode->setAsRootNode();
}

void ModuleResults::addChildNode(Node::Pointer node) {
    std::lock_guard lock(m_services.treeLock);
    m_rootNode->addChild(std::move(node));
}

void ModuleResults::removeNode(Node& node, bool andWaitUntilDone) {
    m_services.mainThread.runAndWait([&] { removeNodeOnMainThread(node); });
    if (andWaitUntilDone)
        updateInterfaceAndWaitUntilDone(true);
}

void ModuleResults::removeNodeOnMainThread(Node& node) {
    std::lock_guard lock(m_services.treeLock);
    Node* parent = node.parentNode();
    if (!parent)
        return;
    if (parent->hasInvisibleChildren())
        parent->removeInvisibleChild(node);
    else
        parent->removeChild(node);
}

void ModuleResults::setEveryObjectEnabled(bool enabled) {
    {
        std::lock_guard lock(m_services.treeLock);
        m_rootNode->becomeEnabled(enabled);
        m_rootNode->recalcSize();
    }
    rootNodeChanged();
}

void ModuleResults::forgetEverything() {
    std::lock_guard lock(m_services.treeLock);
    m_rootNode->killChildren();
    m_rootNode->setEnabledWithoutRecalc(true);
    // The nodes above counted what was found last time; without this a group would show it once more.
    m_rootNode->recalcSize();
}

std::size_t ModuleResults::childrenCount() const {
    std::lock_guard lock(m_services.treeLock);
    return m_rootNode->childrenCount();
}

Node::Pointer ModuleResults::objectAtIndex(std::size_t index) const {
    std::lock_guard lock(m_services.treeLock);
    return m_rootNode->childAtIndex(index);
}

bool ModuleResults::ifAnyEnabled() const {
    std::lock_guard lock(m_services.treeLock);
    return m_rootNode->ifAnyEnabled();
}

std::size_t ModuleResults::filesFoundInEnabled() const { return ifAnyEnabled() ? filesFound() : 0; }

std::uint32_t ModuleResults::numberOfEnabledObjects() const {
    std::lock_guard lock(m_services.treeLock);
    return m_rootNode->numberOfEnabledObjects();
}

std::uint64_t ModuleResults::totalSize() const {
    std::lock_guard lock(m_services.treeLock);
    return m_rootNode->longSize();
}

std::string ModuleResults::rootSizeText() const { return stringSizeFromLong(totalSize(), m_services.units); }

std::string ModuleResults::statusText() const { return localizedFormat("Found: %@", {rootSizeText()}); }

bool ModuleResults::ifAlreadyAddedFile(const std::string& path, const Node& node) const {
    std::lock_guard lock(m_services.treeLock);
    return std::ranges::any_of(node.children(), [&](const Node::Pointer& child) {
        return child->hasChildren() ? ifAlreadyAddedFile(path, *child) : child->path() == path;
    });
}

void ModuleResults::rootNodeChanged() {
    m_services.notifications.post(DataUpdated{});
    if (!m_viewDelegate || !m_viewDelegate->showsResults() || m_viewUpdatePending.exchange(true))
        return;
    runOnMainThreadLater([this] {
        m_viewUpdatePending = false;
        m_viewDelegate->updatedNode(*m_rootNode);
    });
}

void ModuleResults::updateInterfaceAndWaitUntilDone(bool wait) {
    if (m_viewDelegate && m_viewDelegate->showsResults()) {
        const auto update = [this] { m_viewDelegate->updateView(); };
        if (wait)
            m_services.mainThread.runAndWait(update);
        else
            runOnMainThreadLater(update);
    }
    m_services.notifications.post(DataUpdated{});
}

void ModuleResults::runOnMainThreadLater(std::function<void()> call) {
    m_services.mainThread.runLater([isAlive = std::weak_ptr<const bool>(m_isAlive), call = std::move(call)] {
        if (!isAlive.expired())
            call();
    });
}

} // namespace sweeply
