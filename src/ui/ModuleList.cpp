#include "ui/ModuleList.h"

#include "app/ModuleCatalog.h"
#include "appcore/sizes/SizeDisplay.h"
#include "platform/Localization.h"
#include "ui/Drawings.h"
#include "ui/PageCodes.h"
#include "ui/Text.h"

#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <algorithm>

namespace sweeply {

namespace {

enum Role { ViewCode = Qt::UserRole, Progress };
constexpr int kBarHeight = 3;
constexpr int kRoomyPadding = 18; ///< above and below the two lines of a module
constexpr int kTightPadding = 6;
constexpr int kLongestName = 30; ///< in characters; longer ones are cut

} // namespace

/// Draws how far a module is under its name.
class ModuleList::ModuleDelegate final : public QStyledItemDelegate {
  public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void setPadding(int padding) { m_padding = padding; }

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        QStyledItemDelegate::paint(painter, option, index);
        const double progress = index.data(Progress).toDouble();
        if (progress < 0)
            return;
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(Qt::NoPen);
        QRectF bar(option.rect.left() + 8, option.rect.bottom() - kBarHeight - 2, option.rect.width() - 16, kBarHeight);
        QColor track = option.palette.color(QPalette::Text);
        track.setAlphaF(0.15F);
        painter->setBrush(track);
        painter->drawRoundedRect(bar, 1.5, 1.5);
        const double done = bar.width() * std::clamp(progress, 0.0, 1.0);
        if (option.direction == Qt::RightToLeft)
            bar.setLeft(bar.right() - done);
        else
            bar.setWidth(done);
        painter->setBrush(QColor(0x1d, 0x7f, 0x8c));
        painter->drawRoundedRect(bar, 1.5, 1.5);
        painter->restore();
    }
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        const int line = option.fontMetrics.height();
        return {QStyledItemDelegate::sizeHint(option, index).width(),
                index.data(ViewCode).isValid() ? 2 * line + m_padding : line + m_padding};
    }

  private:
    int m_padding = kRoomyPadding;
};

ModuleList::ModuleList(ScanController& controller, SizeUnits units, std::function<void(std::uint8_t)> show)
    : m_controller(controller), m_units(units), m_show(std::move(show)), m_delegate(new ModuleDelegate(this)) {
    setAccessibleName(localized("Modules"));
    setIconSize({32, 32});
    setItemDelegate(m_delegate);
    setUniformItemSizes(false);
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    addRow(0, localized("My Mac"));
    addRow(kSpaceView, localized("What takes the space?"));
    addRow(kHistoryView, localized("History"));
    addHeading(translatable("Cleaner"));
    bool isUninstallerReached = false;
    for (const auto& row : controller.rows()) {
        if (row->viewName() >= kUninstallerView && !isUninstallerReached) {
            addHeading(translatable("Uninstaller"));
            isUninstallerReached = true;
        }
        addRow(row->viewName(), QString::fromStdString(row->name()));
    }
    connect(this, &QListWidget::currentItemChanged, this, [this](QListWidgetItem* item) {
        if (item && item->data(ViewCode).isValid())
            m_show(static_cast<std::uint8_t>(item->data(ViewCode).toUInt()));
    });
    connect(this, &QListWidget::itemChanged, this, [this](QListWidgetItem* item) {
        if (m_isRefreshing)
            return;
        if (auto* row = rowOf(*item))
            row->setChecked(item->checkState() == Qt::Checked);
        refresh();
    });
    refresh();
    // Never so narrow that only pictures are left.
    const int borders = 2 * frameWidth() + verticalScrollBar()->sizeHint().width();
    setMinimumWidth(borders + std::min(sizeHintForColumn(0), kLongestName * fontMetrics().averageCharWidth()));
}

void ModuleList::resizeEvent(QResizeEvent* event) {
    // What all rows need at least; the rest is shared among them.
    const int line = fontMetrics().height();
    int needed = 0;
    for (int index = 0; index < count(); ++index)
        needed += item(index)->data(ViewCode).isValid() ? 2 * line : line;
    m_delegate->setPadding(std::clamp((viewport()->height() - needed) / count(), kTightPadding, kRoomyPadding));
    scheduleDelayedItemsLayout();
    QListWidget::resizeEvent(event);
}

void ModuleList::addHeading(const char* title) {
    auto* item = new QListWidgetItem(localized(title).toUpper(), this);
    item->setFlags(Qt::NoItemFlags);
    item->setForeground(QColor(128, 128, 128)); // seen on any ground, which what is disabled is not with every desktop
    item->setData(Progress, -1.0);
    auto font = item->font();
    font.setPointSizeF(font.pointSizeF() * 0.8);
    font.setBold(true);
    item->setFont(font);
}

QListWidgetItem* ModuleList::addRow(std::uint8_t viewCode, const QString& name) {
    auto* item = new QListWidgetItem(drawings::module(viewCode), name, this);
    item->setData(ViewCode, viewCode);
    item->setData(Progress, -1.0);
    auto flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    if (viewCode > 0 && viewCode < kUninstallerView) {
        flags |= Qt::ItemIsUserCheckable;
        item->setCheckState(Qt::Unchecked);
    }
    item->setFlags(flags);
    return item;
}

ScanObject* ModuleList::rowOf(const QListWidgetItem& item) const {
    const auto code = item.data(ViewCode);
    const auto found = std::ranges::find_if(m_controller.rows(), [&](const auto& row) {
        return code.isValid() && row->viewName() == static_cast<std::uint8_t>(code.toUInt());
    });
    return found == m_controller.rows().end() ? nullptr : found->get();
}

void ModuleList::refresh() {
    m_isRefreshing = true;
    for (int index = 0; index < count(); ++index) {
        auto& entry = *item(index);
        const auto* row = rowOf(entry);
        if (!row)
            continue;
        const bool isWorking = row->isScanning() || row->isRemoving();
        entry.setData(Progress, isWorking ? static_cast<double>(row->progress()) : -1.0);
        if (entry.flags().testFlag(Qt::ItemIsUserCheckable))
            entry.setCheckState(row->checked() ? Qt::Checked : Qt::Unchecked);
        const auto name = QString::fromStdString(row->name());
        QString status;
        if (row->filesFound() > 0)
            status = QString::fromStdString(stringSizeFromLong(row->size(), m_units));
        else if (isWorking)
            status = localized("Working…");
        else if (row->viewName() < kUninstallerView)
            status = row->hasLooked() ? localized("nothing to remove") : localized("not looked yet");
        entry.setText(status.isEmpty() ? name : name + QLatin1Char('\n') + status);
    }
    m_isRefreshing = false;
}

void ModuleList::select(std::uint8_t viewCode) {
    for (int index = 0; index < count(); ++index) {
        const auto code = item(index)->data(ViewCode);
        if (code.isValid() && code.toUInt() == viewCode)
            setCurrentRow(index);
    }
}

} // namespace sweeply
