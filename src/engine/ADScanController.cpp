#include "engine/ADScanController.h"

#include "platform/Localization.h"
#include "platform/MainThread.h"
#include "platform/Pace.h"
#include "platform/SystemLog.h"
#include "platform/UserDefaults.h"

#include <algorithm>
#include <exception>
#include <functional>
#include <utility>

namespace sweeply {

ADScanController::ADScanController(EngineServices services)
    : m_services(services), m_rootNode(std::make_shared<Node>()) {
    m_rootNode->setAsRootNode();
    auto& center = m_services.notifications;
    m_subscriptions.push_back(center.observe<RunningPaused>([this](const auto&) { pauseRun(); }));
    m_subscriptions.push_back(center.observe<RunningStopped>([this](const auto&) { stopRun(); }));
    m_subscriptions.push_back(center.observe<RunningContinued>([this](const auto&) { continueRun(); }));
}

ADScanController::~ADScanController() = default;

void ADScanController::initUserDefaults() {
    if (!needToSetUserDefalts())
        return;
    auto& defaults = m_services.defaults;
    if (!defaults.objectForKey(defaultsName()))
        defaults.setBool(defaultsName(), userDefaultsDefaultValue());
    m_rootNode->setEnabledWithoutRecalc(defaults.boolForKey(defaultsName()));
}

void ADScanController::preffernecesUpdated() {
    std::lock_guard lock(m_services.treeLock);
    if (!needToSetUserDefalts() || m_scanRunning || m_rootNode->hasChildren())
        return;
    m_rootNode->setEnabledWithoutRecalc(m_services.defaults.boolForKey(defaultsName()));
}

// The tree

void ADScanController::addChildNode(Node::Pointer node) {
    std::lock_guard lock(m_services.treeLock);
    m_rootNode->addChild(std::move(node));
}

std::size_t ADScanController::childrenCount() const {
    std::lock_guard lock(m_services.treeLock);
    return m_rootNode->childrenCount();
}

Node::Pointer ADScanController::objectAtIndex(std::size_t index) const {
    std::lock_guard lock(m_services.treeLock);
    return m_rootNode->childAtIndex(index);
}

bool ADScanController::ifAnyEnabled() const {
    std::lock_guard lock(m_services.treeLock);
    return m_rootNode->ifAnyEnabled();
}

std::size_t ADScanController::filesFoundInEnabled() const { return ifAnyEnabled() ? filesFound() : 0; }

std::uint32_t ADScanController::numberOfEnabledObjects() const {
    std::lock_guard lock(m_services.treeLock);
    return m_rootNode->numberOfEnabledObjects();
}

void ADScanController::setEveryObjectEnabled(bool enabled) {
    {
        std::lock_guard lock(m_services.treeLock);
        m_rootNode->becomeEnabled(enabled);
        m_rootNode->recalcSize();
    }
    rootNodeChanged();
}

bool ADScanController::ifAlreadyAddedFile(const std::string& path, const Node& node) const {
    std::lock_guard lock(m_services.treeLock);
    return std::ranges::any_of(node.children(), [&](const Node::Pointer& child) {
        return child->hasChildren() ? ifAlreadyAddedFile(path, *child) : child->path() == path;
    });
}

void ADScanController::rootNodeChanged() {
    m_services.notifications.post(DataUpdated{});
    if (!m_viewDelegate || !m_viewDelegate->showsResults() || m_viewUpdatePending.exchange(true))
        return;
    runOnMainThreadLater([this] {
        m_viewUpdatePending = false;
        m_viewDelegate->updatedNode(*m_rootNode);
    });
}

void ADScanController::updateInterfaceAndWaitUntilDone(bool wait) {
    if (m_viewDelegate && m_viewDelegate->showsResults()) {
        const auto update = [this] { m_viewDelegate->updateView(); };
        if (wait)
            m_services.mainThread.runAndWait(update);
        else
            runOnMainThreadLater(update);
    }
    m_services.notifications.post(DataUpdated{});
}

void ADScanController::removeNodeOnMainThread(Node& node) {
    std::lock_guard lock(m_services.treeLock);
    Node* parent = node.parentNode();
    if (!parent)
        return;
    if (parent->hasInvisibleChildren())
        parent->removeInvisibleChild(node);
    else
        parent->removeChild(node);
}

void ADScanController::removeNode(Node& node, bool andWaitUntilDone) {
    m_services.mainThread.runAndWait([&] { removeNodeOnMainThread(node); });
    if (andWaitUntilDone)
        updateInterfaceAndWaitUntilDone(true);
}

// Figures

std::uint64_t ADScanController::totalSize() const {
    std::lock_guard lock(m_services.treeLock);
    return m_rootNode->longSize();
}

std::size_t ADScanController::filesFound() const { return childrenCount(); }

std::string ADScanController::rootSizeText() const { return stringSizeFromLong(totalSize(), m_services.units); }

std::string ADScanController::statusText() const {
    return localizedFormat("Found: %@", {stringSizeFromLong(totalSize(), m_services.units)});
}

float ADScanController::procentDone() const {
    const std::uint64_t total = totalProcentage();
    return total == 0 ? 1.0F : static_cast<float>(totalProcentageDone()) / static_cast<float>(total);
}

std::uint64_t ADScanController::totalProcentage() const {
    if (m_scanRunning)
        return m_totalProcentage;
    return ifAnyCleanRunning() ? m_totalSizeAtCleanStart.load() : 0;
}

std::uint64_t ADScanController::totalProcentageDone() const {
    if (m_scanRunning)
        return m_totalProcentDone;
    return ifAnyCleanRunning() ? m_totalSizeDone.load() : 0;
}

bool ADScanController::ifAnyCleanRunning() const {
    return m_cleanRunning || (m_delegate && m_delegate->ifGlobalCleanRunning());
}

void ADScanController::incProgressBy(std::uint32_t units) {
    m_totalProcentDone += units;
    m_services.notifications.post(DataUpdated{});
}

void ADScanController::incTotalSizeDoneWithInt(std::uint64_t bytes) {
    m_totalSizeDone += bytes;
    m_services.notifications.post(DataUpdated{});
}

// Runs

void ADScanController::continueRun() {
    m_flags.setStopRequested(false);
    setPaused(false);
}

void ADScanController::stopRun() {
    m_flags.setStopRequested(true);
    setPaused(false);
    setStopped(true);
    m_totalProcentage = 0;
}

void ADScanController::sleepAfterItem() { m_flags.sleepFor(m_services.pace.threadSleep); }

void ADScanController::reportProblem(const Error& error) { m_services.reportProblem(error); }

void ADScanController::setCurrentItem(std::string_view path) {
    std::lock_guard lock(m_currentItemMutex);
    m_currentItem = path;
}

std::string ADScanController::currentItem() const {
    std::lock_guard lock(m_currentItemMutex);
    return m_currentItem;
}

void ADScanController::runOnMainThreadLater(std::function<void()> call) {
    m_services.mainThread.runLater([isAlive = std::weak_ptr<const bool>(m_isAlive), call = std::move(call)] {
        if (!isAlive.expired())
            call();
    });
}

void ADScanController::tellDelegate(void (ScanDelegate::*message)(ADScanController&)) {
    if (m_delegate)
        runOnMainThreadLater([this, message] { (m_delegate->*message)(*this); });
}

void ADScanController::prepareForScan() {
    m_services.log.log(formatText("%@ scan started", {className()}));
    m_totalProcentDone = 0;
    m_totalProcentage = 0;
    m_countOfFilesFound = 0;
    m_totalSizeAtCleanStart = 0;
    m_totalSizeDone = 0;
    m_scanRunning = true;
    tellDelegate(&ScanDelegate::scanIsStarted);
}

void ADScanController::finishScan() {
    m_services.log.log(formatText("%@ scan finished and found: %@", {className(), rootSizeText()}));
    m_scanRunning = false;
    setStopped(true);
    // Not waited for: the main thread may be waiting for the end of this very thread.
    updateInterfaceAndWaitUntilDone(false);
    tellDelegate(&ScanDelegate::scanIsFinished);
}

void ADScanController::startScan() {
    bool isChecked = false;
    {
        std::lock_guard lock(m_services.treeLock);
        isChecked = m_rootNode->state() != CheckState::Unchecked;
    }
    if (m_scanRunning || !isChecked) {
        m_services.log.log(formatText("Scan hasnt started:  ifScanRunning = %i and rootNode state = %i",
                                      {m_scanRunning ? 1 : 0, isChecked ? 1 : 0}));
        finishScan();
        return;
    }
    joinScanThread();
    {
        std::lock_guard lock(m_services.treeLock);
        m_rootNode->killChildren();
        // The nodes above counted what was found last time; without this a group would show it once more.
        m_rootNode->recalcSize();
    }
    updateInterfaceAndWaitUntilDone(true);
    // Set here and not by the thread: a stop, a pause or another module's end may come before it gets to run.
    m_scanRunning = true;
    continueRun();
    setStopped(false);
    m_thread = std::jthread([this] { scanThreadProtected(); });
}

void ADScanController::scanThreadProtected() {
    try {
        scanThread();
    } catch (const std::exception& exception) {
        m_services.log.log(formatText("Handle Exception %@ in main thread = %i", {exception.what(), 0}));
    }
    finishScan();
    if (m_delegate)
        m_delegate->childControllerStopped();
}

void ADScanController::joinScanThread() {
    if (m_thread.joinable())
        m_thread.join();
}

void ADScanController::stopAndJoin() {
    stopRun();
    joinScanThread();
    m_subscriptions.clear();
}

void ADScanController::receiveDragData(const std::vector<std::string>& paths) {
    if (m_scanRunning || ifAnyCleanRunning())
        return;
    joinScanThread();
    m_services.notifications.post(PrepareInterfaceForAnaliz{});
    m_scanRunning = true;
    continueRun();
    setStopped(false);
    m_thread = std::jthread([this, paths] { receiveDragDataThread(paths); });
}

void ADScanController::receiveDragDataThread(const std::vector<std::string>& paths) {
    try {
        prepareForScan();
        incTotalProcentageBy(static_cast<std::uint32_t>(paths.size()));
        for (const auto& path : paths) {
            if (stopped())
                break;
            if (!path.empty() && !ifAlreadyAddedFile(path, *m_rootNode))
                analyzeFile(path);
            incProgress();
            waitWhilePaused();
        }
    } catch (const std::exception& exception) {
        m_services.log.log(formatText("Handle Exception %@ in main thread = %i", {exception.what(), 0}));
    }
    if (m_viewDelegate)
        runOnMainThreadLater([this] { m_viewDelegate->refreshInterface(); });
    finishScan();
}

bool ADScanController::tryToRemoveFileAtPath(const std::string& path) {
    return m_delegate && m_delegate->tryToRemoveFileAtPath(path);
}

bool ADScanController::tryToSecurelyRemoveFileAtPath(const std::string& path) {
    return m_delegate && m_delegate->tryToSecurelyRemoveFileAtPath(path);
}

void ADScanController::prepareForGlobalClean() {
    m_totalSizeAtCleanStart = totalSize();
    m_totalSizeDone = 0;
}

void ADScanController::prepareForClean() {
    m_services.log.log(formatText("%@ clean started", {className()}));
    m_totalProcentDone = 0;
    m_totalProcentage = 0;
    prepareForGlobalClean();
    m_cleanRunning = true;
    setStopped(false);
    tellDelegate(&ScanDelegate::cleanIsStarted);
}

void ADScanController::finishClean() {
    m_services.log.log(formatText("%@ clean finished, %@ of uncleaned files left", {className(), rootSizeText()}));
    m_cleanRunning = false;
    m_totalProcentDone = 0;
    m_totalProcentage = 0;
    setStopped(true);
    if (m_delegate)
        m_delegate->childControllerStopped();
    tellDelegate(&ScanDelegate::cleanIsFinished);
}

void ADScanController::startClean() {
    joinScanThread();
    if (m_cleanRunning || filesFound() == 0 || !ifAnyEnabled()) {
        finishClean();
        return;
    }
    if (priviligesNeededToClean()) {
        const auto authorised = m_delegate ? m_delegate->authorisationDemanded() : std::nullopt;
        if (!authorised)
            return;
        if (!*authorised) {
            m_delegate->staysWithoutRights(*this);
            finishClean();
            return;
        }
    }
    cleanThread();
}

void ADScanController::cleanThread() {
    prepareForClean();
    try {
        cleanChildren();
    } catch (...) {
        finishClean(); // or everybody would wait for its end
        throw;
    }
    updateInterfaceAndWaitUntilDone(true);
    finishClean();
}

void ADScanController::cleanChildren() {
    incTotalProcentageBy(numberOfEnabledObjects());
    std::vector<Node::Pointer> children; // the live list changes as nodes go
    {
        std::lock_guard lock(m_services.treeLock);
        children = m_rootNode->children();
    }
    for (const auto& child : children) {
        if (stopped())
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
                removeNode(*child, true);
        } else if (isChecked) {
            cleanLeaf(*child);
        }
        waitWhilePaused();
    }
}

void ADScanController::recursivlyCleanNode(Node& node) {
    if (!isRootNodeCleanable(node))
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
        m_flags.sleepFor(m_services.pace.removeThreadSleep);
    for (const auto& child : children) {
        if (stopped())
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
                incTotalSizeDoneWithInt(size);
                removeNode(*child, true);
            }
        }
        waitWhilePaused();
    }
}

void ADScanController::cleanLeaf(Node& node) {
    const std::uint64_t size = [&] {
        std::lock_guard lock(m_services.treeLock);
        return node.longSize();
    }();
    setCurrentItem(node.path());
    const bool isRemoved = cleanThisNode(node);
    if (isRemoved)
        m_services.notifications.post(RemovedAmountOfSpace{size});
    incTotalSizeDoneWithInt(size);
    if (isRemoved)
        removeNode(node, true);
}

} // namespace sweeply
