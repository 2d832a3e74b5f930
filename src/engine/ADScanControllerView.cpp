#include "engine/ADScanControllerView.h"

#include "appcore/changes/ChangeGate.h"
#include "engine/IgnoreList.h"
#include "engine/ScanCoordinator.h"
#include "engine/ScanObject.h"
#include "platform/SystemLog.h"

#include <algorithm>
#include <ranges>

namespace sweeply {

ADScanControllerView::ADScanControllerView(EngineServices services, ScanCoordinator& globalScanController)
    : ADScanController(services), m_globalScanController(globalScanController) {
    setDelegate(this);
    setViewDelegate(this);
}

void ADScanControllerView::activate() {
    if (m_scanObject)
        m_globalScanController.changeViewTo(m_scanObject->viewName());
}

void ADScanControllerView::willSwithToYourView() {
    if (workMode() == WorkMode::Cleaner)
        m_globalScanController.gotoCleanerMode();
    else
        m_globalScanController.gotoUninstallerMode();
}

bool ADScanControllerView::isBusy() const { return ifScanRunning() || m_globalScanController.ifCleanRunning(); }

void ADScanControllerView::updateViews() {
    if (m_contentOutline)
        contentOutline()->reloadData();
    if (m_contentTable)
        contentTable()->reloadData();
}

void ADScanControllerView::quickScan() {
    if (isBusy())
        return;
    const auto modules = parts();
    if (std::ranges::none_of(modules, &ADScanController::takesPartInScan)) {
        for (auto* module : modules)
            module->setTakesPartInScan(true);
        refreshInterface();
    }
    m_globalScanController.prepareInterfaceForScan();
    startScan();
}

void ADScanControllerView::quickClean() {
    if (isBusy())
        return;
    continueRun();
    startClean();
}

void ADScanControllerView::checkEverything(bool enabled) {
    if (isBusy())
        return;
    setEveryObjectEnabled(enabled);
    checkMarksChanged();
    updateInterfaceAndWaitUntilDone(false);
    refreshInterface();
}

void ADScanControllerView::toggleOutlineItem(Node& node) {
    {
        std::lock_guard lock(services().treeLock);
        const bool wasChecked = node.ifEnabled();
        if (node.storeState()) {
            auto& ignored = m_globalScanController.ignoreListController();
            if (wasChecked)
                ignored.addToIgnoreListPath(node, defaultsName());
            else
                ignored.removeFromIgnoreListPath(node, defaultsName());
        }
        node.becomeEnabled(!wasChecked);
        takeSwitchFrom(node);
    }
    checkMarksChanged();
    rootNodeChanged();
    if (m_contentOutline)
        contentOutline()->reloadData();
    refreshInterface();
}

void ADScanControllerView::takeSwitchFrom(const Node& node) {
    for (auto* part : parts()) {
        if (part->rootNode().get() == &node && !node.hasChildren())
            part->setTakesPartInScan(node.ifEnabled());
    }
}

void ADScanControllerView::toggleTableRow(std::size_t row) {
    {
        std::lock_guard lock(services().treeLock);
        const auto node = rootNode()->childAtIndex(row);
        if (!node)
            return;
        node->becomeEnabled(!node->ifEnabled());
        rootNode()->setEnabledWithoutRecalc(rootNode()->stateFromChildrenStates() != CheckState::Unchecked);
    }
    checkMarksChanged();
    rootNodeChanged();
    refreshInterface();
}

void ADScanControllerView::checkSelectedItems(const std::vector<Node::Pointer>& items) {
    if (!stopped() || items.empty())
        return;
    bool wasChecked = false;
    std::vector<const Node*> remembered;
    {
        std::lock_guard lock(services().treeLock);
        wasChecked = items.front()->ifEnabled();
        for (const auto& item : items) {
            item->becomeEnabled(!wasChecked);
            takeSwitchFrom(*item);
            if (item->storeState())
                remembered.push_back(item.get());
        }
    }
    checkMarksChanged();
    refreshInterface();
    {
        std::lock_guard lock(services().treeLock);
        auto& ignored = m_globalScanController.ignoreListController();
        if (wasChecked)
            ignored.addToIgnoreListNodes(remembered, defaultsName());
        else
            ignored.removeFromIgnoreListNodes(remembered, defaultsName());
    }
    updateInterfaceAndWaitUntilDone(true);
}

void ADScanControllerView::checkSelectedRows(const std::vector<std::size_t>& rows) {
    if (!stopped() || rows.empty())
        return;
    {
        std::lock_guard lock(services().treeLock);
        const auto first = rootNode()->childAtIndex(rows.front());
        if (!first)
            return;
        const bool wasChecked = first->ifEnabled();
        for (const std::size_t row : std::views::reverse(rows)) {
            if (const auto node = rootNode()->childAtIndex(row))
                node->becomeEnabled(!wasChecked);
        }
    }
    checkMarksChanged();
    updateInterfaceAndWaitUntilDone(true);
}

bool ADScanControllerView::refusesRemovalFromList() {
    if (!ifScanRunning() && !ifCleanRunning())
        return false;
    services().log.log("Forbided to remove during scan/clean");
    return true;
}

void ADScanControllerView::showAfterRemovalFromList() {
    checkMarksChanged();
    if (childrenCount() == 0)
        showDropImageView();
    updateInterfaceAndWaitUntilDone(true);
}

void ADScanControllerView::removeSelectedItems(const std::vector<Node::Pointer>& items) {
    if (refusesRemovalFromList())
        return;
    {
        std::lock_guard lock(services().treeLock);
        for (const auto& item : items) {
            Node* parent = item->parentNode();
            if (item->isRootNode()) {
                item->killChildren();
                item->recalcSize(); // those above counted what it held
            } else if (parent) {    // gone already when an item above it was selected too
                parent->removeChild(*item);
                if (!parent->hasChildren() && !parent->isRootNode() && parent->parentNode())
                    parent->parentNode()->removeChild(*parent);
            }
        }
    }
    showAfterRemovalFromList();
}

void ADScanControllerView::removeSelectedRows(const std::vector<std::size_t>& rows) {
    if (refusesRemovalFromList())
        return;
    {
        std::lock_guard lock(services().treeLock);
        for (const std::size_t row : std::views::reverse(rows))
            rootNode()->removeChildAtIndex(row);
    }
    showAfterRemovalFromList();
}

void ADScanControllerView::sortDescriptorsDidChange(const std::vector<SortDescriptor>& descriptors) {
    {
        std::lock_guard lock(services().treeLock);
        rootNode()->sortArrayUsingDescriptors(descriptors);
    }
    if (m_contentOutline)
        contentOutline()->reloadData();
}

bool ADScanControllerView::validateDrop() const { return shouldRespondToDragEvents() && !isBusy(); }

std::vector<std::string> ADScanControllerView::pathsOfRows(const std::vector<std::size_t>& rows) const {
    std::vector<std::string> paths;
    std::lock_guard lock(services().treeLock);
    for (const std::size_t row : rows) {
        if (const auto node = rootNode()->childAtIndex(row))
            paths.push_back(node->path());
    }
    return paths;
}

std::vector<std::string> ADScanControllerView::pathsBehind(const Node& node) const {
    std::vector<std::string> paths;
    std::lock_guard lock(services().treeLock);
    for (const auto& child : node.invisibleChildren())
        paths.push_back(child->path());
    return paths;
}

void ADScanControllerView::removedAmoutOfSpace(std::uint64_t bytes) {
    services().notifications.post(RemovedAmountOfSpace{bytes});
}

void ADScanControllerView::scanIsFinished(ADScanController&) { m_globalScanController.finishScan(); }

bool ADScanControllerView::ifGlobalCleanRunning() const { return m_globalScanController.ifCleanRunning(); }

std::optional<bool> ADScanControllerView::authorisationDemanded() {
    return m_globalScanController.authorisationDemanded();
}

void ADScanControllerView::staysWithoutRights(ADScanController& controller) {
    std::vector<ChangeRequest> requests;
    {
        std::lock_guard lock(services().treeLock);
        for (const auto& node : controller.rootNode()->children()) {
            if (node->ifAnyEnabled())
                requests.push_back(controller.requestFor(*node, Operation::Remove));
        }
    }
    for (const auto& request : requests)
        m_globalScanController.couldntRemove(request, "only an administrator may remove it",
                                             ErrorKind::PermissionDenied);
}

ChangeOutcome ADScanControllerView::perform(const ChangeRequest& request) {
    return m_globalScanController.gate().perform(request);
}

void ADScanControllerView::refreshInterface() { m_globalScanController.refreshInterface(); }

} // namespace sweeply
