#include "cli/Progress.h"

#include "app/Application.h"
#include "cli/Terminal.h"
#include "formats/DisplayEscapes.h"
#include "platform/DisplayWidth.h"
#include "platform/Localization.h"

#include <algorithm>
#include <iostream>
#include <utility>

namespace sweeply {

namespace {

std::string itemAtHand(Application& application) {
    for (const auto& row : application.scanController().rows()) {
        if (const auto* module = row->correspondingScanController(); row->isScanning() || row->isRemoving())
            return module->currentItem();
    }
    return {};
}

} // namespace

Progress::Progress(Application& application, std::string activity, bool isShown)
    : m_application(application), m_activity(std::move(activity)), m_isShown(isShown) {}

Progress::~Progress() {
    if (m_hasDrawn)
        std::cerr << "\r\x1B[K" << std::flush;
}

void Progress::draw() {
    if (!m_isShown)
        return;
    auto& controller = m_application.scanController();
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - m_start).count();
    const bool isRemoving = controller.isRemoving();
    const std::uint64_t bytes =
        isRemoving ? m_application.statistics().currentRemovedAmountOfSpace() : controller.totalSize();
    const auto rate = static_cast<std::uint64_t>(static_cast<double>(bytes) / std::max(seconds, 0.001));
    const std::string line =
        formatText("%@ %i%%  %@ (%@/s)  ", {m_activity, static_cast<int>(controller.totalProcentDone() * 100.0F),
                                            stringSizeFromLong(bytes, m_application.units()),
                                            stringSizeFromLong(rate, m_application.units())}) +
        escapedForDisplay(itemAtHand(m_application));
    std::cerr << "\r" << cutToWidth(line, Terminal::width() - 1) << "\x1B[K" << std::flush;
    m_hasDrawn = true;
}

} // namespace sweeply
