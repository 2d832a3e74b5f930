#include "engine/ADScanController.h"

#include "engine/CleanWalk.h"
#include "platform/Localization.h"
#include "platform/SystemLog.h"
#include "platform/UserDefaults.h"

#include <exception>
#include <utility>

namespace sweeply {

ADScanController::ADScanController(EngineServices services)
    : ModuleResults(services), ModuleRun(ModuleResults::services()) {
    auto& center = services.notifications;
    m_subscriptions.push_back(center.observe<RunningPaused>([this](const auto&) { pauseRun(); }));
    m_subscriptions.push_back(center.observe<RunningStopped>([this](const auto&) { stopRun(); }));
    m_subscriptions.push_back(center.observe<RunningContinued>([this](const auto&) { continueRun(); }));
}

ADScanController::~ADScanController() = default;

void ADScanController::initUserDefaults() {
    if (!needToSetUserDefalts())
        return;
    auto& defaults = services().defaults;
    if (!defaults.objectForKey(defaultsName()))
        defaults.setBool(defaultsName(), userDefaultsDefaultValue());
    setTakesPartInScan(defaults.boolForKey(defaultsName()));
}

void ADScanController::preffernecesUpdated() {
    if (needToSetUserDefalts())
        setTakesPartInScan(services().defaults.boolForKey(defaultsName()));
}

void ADScanController::setTakesPartInScan(bool takesPart) {
    m_takesPartInScan = takesPart;
    std::lock_guard lock(services().treeLock);
    if (!m_scanRunning && !rootNode()->hasChildren())
        rootNode()->setEnabledWithoutRecalc(takesPart);
}

// Progress

float ADScanController::procentDone() const {
    const std::uint64_t total = totalProcentage();
    return total == 0 ? 1.0F : static_cast<float>(totalProcentageDone()) / static_cast<float>(total);
}

std::uint64_t ADScanController::totalProcentage() const {
    if (m_scanRunning)
        return scanProgress().total;
    return ifAnyCleanRunning() ? cleanProgress().total : 0;
}

std::uint64_t ADScanController::totalProcentageDone() const {
    if (m_scanRunning)
        return scanProgress().done;
    return ifAnyCleanRunning() ? cleanProgress().done : 0;
}

bool ADScanController::ifAnyCleanRunning() const {
    return m_cleanRunning || (m_delegate && m_delegate->ifGlobalCleanRunning());
}

void ADScanController::tellDelegate(void (ScanDelegate::*message)(ADScanController&)) {
    if (m_delegate)
        runOnMainThreadLater([this, message] { (m_delegate->*message)(*this); });
}

// Scanning

void ADScanController::startScan() {
    if (m_scanRunning || !m_takesPartInScan) {
        services().log.log(formatText("Scan hasnt started:  ifScanRunning = %i and rootNode state = %i",
                                      {m_scanRunning ? 1 : 0, m_takesPartInScan ? 1 : 0}));
        finishScan();
        return;
    }
    joinScanThread();
    forgetEverything();
    updateInterfaceAndWaitUntilDone(true);
    startThread([this] {
        logExceptionsOf([this] { scanThread(); });
        m_hasLooked = true;
        finishScan();
        if (m_delegate)
            m_delegate->childControllerStopped();
    });
}

void ADScanController::startThread(std::function<void()> work) {
    // Set here and not by the thread: a stop, a pause or another module's end may come before it gets to run.
    m_scanRunning = true;
    continueRun();
    setStopped(false);
    m_thread = std::jthread(std::move(work));
}

void ADScanController::logExceptionsOf(const std::function<void()>& work) {
    try {
        work();
    } catch (const std::exception& exception) {
        services().log.log(formatText("Handle Exception %@ in main thread = %i", {exception.what(), 0}));
    }
}

void ADScanController::prepareForScan() {
    services().log.log(formatText("%@ scan started", {className()}));
    startProgress();
    m_scanRunning = true;
    tellDelegate(&ScanDelegate::scanIsStarted);
}

void ADScanController::finishScan() {
    services().log.log(formatText("%@ scan finished and found: %@", {className(), rootSizeText()}));
    m_scanRunning = false;
    setStopped(true);
    // Not waited for: the main thread may be waiting for the end of this very thread.
    updateInterfaceAndWaitUntilDone(false);
    tellDelegate(&ScanDelegate::scanIsFinished);
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
    services().notifications.post(PrepareInterfaceForAnaliz{});
    startThread([this, paths] {
        logExceptionsOf([&] { analyzeFiles(paths); });
        if (viewDelegate())
            runOnMainThreadLater([this] { viewDelegate()->refreshInterface(); });
        finishScan();
    });
}

void ADScanController::analyzeFiles(const std::vector<std::string>& paths) {
    prepareForScan();
    incTotalProcentageBy(static_cast<std::uint32_t>(paths.size()));
    for (const auto& path : paths) {
        if (stopped())
            break;
        if (!path.empty() && !ifAlreadyAddedFile(path, *rootNode()))
            analyzeFile(path);
        incProgress();
        waitWhilePaused();
    }
}

// Cleaning

ChangeRequest ADScanController::requestFor(const Node& node, Operation operation) const {
    const std::lock_guard lock(services().treeLock);
    ChangeRequest request{operation, node.path()};
    // A group is no item, but what it stands for is a folder.
    request.kind = node.hasChildren() ? ChangedKind::Folder : changedKindOf(node.seen().kind);
    request.seen = node.seen();
    request.size = node.longSize();
    request.module = moduleName();
    request.why = node.sharedEvidence();
    return request;
}

ChangeOutcome ADScanController::change(const ChangeRequest& request) {
    return m_delegate ? m_delegate->perform(request) : ChangeOutcome();
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
        CleanWalk(services(), *this, *this, *this).cleanChildren();
    } catch (...) {
        finishClean(); // or everybody would wait for its end
        throw;
    }
    updateInterfaceAndWaitUntilDone(true);
    finishClean();
}

void ADScanController::prepareForGlobalClean() { startProgress(totalSize()); }

void ADScanController::prepareForClean() {
    services().log.log(formatText("%@ clean started", {className()}));
    forgetUnits();
    prepareForGlobalClean();
    m_cleanRunning = true;
    setStopped(false);
    tellDelegate(&ScanDelegate::cleanIsStarted);
}

void ADScanController::finishClean() {
    services().log.log(formatText("%@ clean finished, %@ of uncleaned files left", {className(), rootSizeText()}));
    m_cleanRunning = false;
    forgetUnits();
    setStopped(true);
    if (m_delegate)
        m_delegate->childControllerStopped();
    tellDelegate(&ScanDelegate::cleanIsFinished);
}

} // namespace sweeply
