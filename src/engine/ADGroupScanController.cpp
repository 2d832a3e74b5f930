#include "engine/ADGroupScanController.h"

#include <algorithm>

namespace sweeply {

namespace {

template<typename Figure>
std::uint64_t sumOf(const std::vector<std::unique_ptr<ADScanController>>& controllers, Figure figure) {
    std::uint64_t sum = 0;
    for (const auto& controller : controllers)
        sum += figure(*controller);
    return sum;
}

} // namespace

ADGroupScanController::~ADGroupScanController() {
    for (const auto& controller : m_scanControllers)
        controller->stopAndJoin();
}

void ADGroupScanController::addScanController(std::unique_ptr<ADScanController> controller) {
    controller->setDelegate(this);
    controller->setViewDelegate(this);
    addChildNode(controller->rootNode());
    m_scanControllers.push_back(std::move(controller));
}

std::vector<ADScanController*> ADGroupScanController::parts() {
    std::vector<ADScanController*> controllers;
    for (const auto& controller : m_scanControllers)
        controllers.push_back(controller.get());
    return controllers;
}

void ADGroupScanController::preffernecesUpdated() {
    for (const auto& controller : m_scanControllers)
        controller->preffernecesUpdated();
}

bool ADGroupScanController::ifScanRunning() const {
    return std::ranges::any_of(m_scanControllers, [](const auto& controller) { return controller->ifScanRunning(); });
}

bool ADGroupScanController::ifCleanRunning() const {
    return std::ranges::any_of(m_scanControllers, [](const auto& controller) { return controller->ifCleanRunning(); });
}

bool ADGroupScanController::ifAnyEnabled() const {
    return std::ranges::any_of(m_scanControllers, [](const auto& controller) { return controller->ifAnyEnabled(); });
}

std::size_t ADGroupScanController::filesFound() const {
    return sumOf(m_scanControllers, [](const auto& controller) { return controller.childrenCount(); });
}

std::size_t ADGroupScanController::filesFoundInEnabled() const {
    std::lock_guard lock(services().treeLock);
    return sumOf(m_scanControllers, [](const auto& controller) {
        return controller.rootNode()->state() == CheckState::Unchecked ? 0 : controller.childrenCount();
    });
}

std::uint64_t ADGroupScanController::totalProcentage() const {
    return sumOf(m_scanControllers, [](const auto& controller) { return controller.totalProcentage(); });
}

std::uint64_t ADGroupScanController::totalProcentageDone() const {
    return sumOf(m_scanControllers, [](const auto& controller) { return controller.totalProcentageDone(); });
}

std::string ADGroupScanController::currentItem() const {
    const auto working = std::ranges::find_if(m_scanControllers, [](const auto& controller) {
        return controller->ifScanRunning() || controller->ifCleanRunning();
    });
    return working == m_scanControllers.end() ? std::string() : (*working)->currentItem();
}

void ADGroupScanController::setEveryObjectEnabled(bool enabled) {
    for (const auto& controller : m_scanControllers)
        controller->setEveryObjectEnabled(enabled);
}

void ADGroupScanController::setPaused(bool paused) {
    for (const auto& controller : m_scanControllers)
        controller->setPaused(paused);
    ADScanControllerView::setPaused(paused);
}

void ADGroupScanController::setStopped(bool stopped) {
    ADScanControllerView::setStopped(stopped);
    for (const auto& controller : m_scanControllers)
        controller->setStopped(stopped);
}

void ADGroupScanController::prepareForGlobalClean() {
    for (const auto& controller : m_scanControllers)
        controller->prepareForGlobalClean();
}

void ADGroupScanController::startScan() {
    joinScanThread();
    // Held until all have started: one that ends at once must not find the next one idle and mark it stopped.
    std::lock_guard lock(m_stopMutex);
    continueRun();
    setStopped(false);
    for (const auto& controller : m_scanControllers)
        controller->startScan();
}

void ADGroupScanController::joinScanThread() {
    ADScanControllerView::joinScanThread();
    for (const auto& controller : m_scanControllers)
        controller->joinScanThread();
}

void ADGroupScanController::startClean() {
    // The last scan's threads may still be telling that they stopped, which must not stop this clean.
    joinScanThread();
    setStopped(false);
    prepareForGlobalClean();
    const auto needsRights = std::ranges::any_of(m_scanControllers, [](const auto& controller) {
        return controller->filesFound() > 0 && controller->priviligesNeededToClean() && controller->ifAnyEnabled();
    });
    // Asked before any sub-module starts, so that nobody waits for a password in the middle of the run.
    if (needsRights && delegate())
        delegate()->authorisationDemanded();
    for (const auto& controller : m_scanControllers)
        controller->startClean();
}

void ADGroupScanController::childControllerStopped() {
    std::lock_guard lock(m_stopMutex);
    const bool isAnyRunning = std::ranges::any_of(
        m_scanControllers, [](const auto& controller) { return !controller->stopped() && controller->ifAnyEnabled(); });
    if (isAnyRunning)
        return;
    ADScanControllerView::setStopped(true);
    // A sub-module in the middle of its scan may have found only unchecked items so far. Stopping it here would
    // silently leave the rest unseen.
    for (const auto& controller : m_scanControllers) {
        if (!controller->ifScanRunning())
            controller->setStopped(true);
    }
}

} // namespace sweeply
