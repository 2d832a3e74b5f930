#include "ui/RunFigures.h"

#include "app/Application.h"
#include "platform/Localization.h"
#include "ui/Text.h"

#include <QHBoxLayout>
#include <QLabel>
#include <algorithm>

namespace sweeply {

namespace {

/// Empty while nothing runs.
std::string itemAtWork(const ScanController& controller) {
    const auto working =
        std::ranges::find_if(controller.rows(), [](const auto& row) { return row->isScanning() || row->isRemoving(); });
    const bool isRunning = controller.isScanning() || controller.isRemoving();
    return isRunning && working != controller.rows().end() ? (*working)->correspondingScanController()->currentItem()
                                                           : std::string();
}

} // namespace

RunFigures::RunFigures() : m_figures(new QLabel), m_currentItem(new QLabel) {
    m_figures->setAccessibleName(localized("Figures"));
    m_figures->setMinimumWidth(1); // a small window stays small
    m_currentItem->setAccessibleName(localized("Current item"));
    m_currentItem->setTextFormat(Qt::PlainText);
    m_currentItem->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    auto* line = new QHBoxLayout(this);
    line->setContentsMargins(0, 0, 0, 0);
    line->addWidget(m_figures);
    line->addWidget(m_currentItem, 1);
}

void RunFigures::show(Application& application) {
    const auto& controller = application.scanController();
    const auto size = [&](std::uint64_t bytes) { return stringSizeFromLong(bytes, application.units()); };
    const bool isKnown = std::ranges::any_of(controller.rows(),
                                             [](const auto& row) { return row->hasLooked() || row->filesFound() > 0; });
    const auto found = [&](std::uint64_t bytes) { return isKnown ? size(bytes) : localizedString("not looked yet"); };
    const QString all = QString::fromStdString(localizedFormat(
        "Found: %@   Checked: %@   Freed now: %@, in all: %@",
        {found(controller.totalSize()), found(controller.foundSize()),
         size(application.statistics().currentRemovedAmountOfSpace()), application.statistics().totalSizeSaved()}));
    const bool isRoomy = m_figures->fontMetrics().horizontalAdvance(all) <= width();
    m_figures->setText(
        isRoomy ? all
                : QString::fromStdString(localizedFormat(
                      "Checked: %@   Freed now: %@",
                      {found(controller.foundSize()), size(application.statistics().currentRemovedAmountOfSpace())})));
    m_figures->setToolTip(isRoomy ? QString() : all);
    m_currentItem->setText(m_currentItem->fontMetrics().elidedText(shown(itemAtWork(controller)), Qt::ElideMiddle,
                                                                   m_currentItem->width()));
}

void RunFigures::clear() {
    m_figures->clear();
    m_currentItem->clear();
}

} // namespace sweeply
