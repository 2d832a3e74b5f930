#include "ui/OverviewPage.h"

#include "app/ModuleCatalog.h"
#include "platform/Localization.h"
#include "ui/TargetVolume.h"
#include "ui/Text.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QStyle>
#include <QVBoxLayout>
#include <algorithm>
#include <optional>
#include <utility>

namespace sweeply {

namespace {

/// Of what may not have been looked at.
using Size = std::optional<std::uint64_t>;

QString sizeText(const Size& bytes, SizeUnits units) {
    return bytes ? QString::fromStdString(stringSizeFromLong(*bytes, units)) : localized("not looked yet");
}

QLabel* titled(const QString& text, double scale, bool isBold) {
    auto* label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    auto font = label->font();
    font.setPointSizeF(font.pointSizeF() * scale);
    font.setBold(isBold);
    label->setFont(font);
    return label;
}

const QColor kUsed(0x3f, 0x7a, 0xd8);
const QColor kFound(0xd2, 0x62, 0x2f);

} // namespace

/// A ring: what is used of the disk, what of that could be freed, and what is free.
class OverviewPage::DiskChart final : public QWidget {
  public:
    DiskChart() {
        setMinimumSize(180, 180);
        setAccessibleName(localized("Disk"));
    }
    void setFigures(std::uint64_t total, std::uint64_t used, std::uint64_t found, SizeUnits units) {
        m_total = total;
        m_used = used;
        m_found = std::min(found, used);
        m_text = total == 0
                     ? QString()
                     : QString::fromStdString(localizedFormat(
                           "%@ of %@ used", {stringSizeFromLong(used, units), stringSizeFromLong(total, units)}));
        setAccessibleDescription(m_text);
        update();
    }

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const int side = std::min(width(), height()) - 40;
        const QRectF ring((width() - side) / 2.0, (height() - side) / 2.0, side, side);
        QColor free = palette().color(QPalette::Text);
        free.setAlphaF(0.12F);
        constexpr int kWholeTurn = 360 * 16;
        const auto arc = [&](const QColor& colour, double from, double share) {
            painter.setPen(QPen(colour, side * 0.13, Qt::SolidLine, Qt::FlatCap));
            painter.drawArc(ring, 90 * 16 - static_cast<int>(from * kWholeTurn), -static_cast<int>(share * kWholeTurn));
        };
        arc(free, 0, 1);
        if (m_total > 0) {
            const double total = static_cast<double>(m_total);
            const double found = static_cast<double>(m_found) / total;
            const double used = static_cast<double>(m_used) / total;
            arc(kFound, 0, found);
            arc(kUsed, found, used - found);
            painter.setPen(palette().color(QPalette::Text));
            auto font = painter.font();
            font.setPointSizeF(font.pointSizeF() * 1.9);
            font.setBold(true);
            painter.setFont(font);
            painter.drawText(ring.adjusted(0, -16, 0, -16), Qt::AlignCenter,
                             QStringLiteral("%1 %").arg(static_cast<int>(used * 100 + 0.5)));
            font.setPointSizeF(font.pointSizeF() / 2.1);
            font.setBold(false);
            painter.setFont(font);
            painter.drawText(ring.adjusted(34, 24, -34, 24), Qt::AlignCenter | Qt::TextWordWrap, m_text);
        }
    }

  private:
    std::uint64_t m_total = 0;
    std::uint64_t m_used = 0;
    std::uint64_t m_found = 0;
    QString m_text;
};

/// A bar for each module.
class OverviewPage::FindingsChart final : public QWidget {
  public:
    FindingsChart() { setAccessibleName(localized("What could be freed")); }
    void setParts(std::vector<std::pair<QString, Size>> parts, SizeUnits units) {
        m_parts = std::move(parts);
        m_units = units;
        QStringList texts;
        for (const auto& [name, bytes] : m_parts)
            texts << name + QStringLiteral(": ") + sizeText(bytes, units);
        setAccessibleDescription(texts.join(QStringLiteral(", ")));
        int names = 0;
        int figures = 0;
        for (const auto& [name, bytes] : m_parts) {
            names = std::max(names, fontMetrics().horizontalAdvance(name));
            figures = std::max(figures, fontMetrics().horizontalAdvance(sizeText(bytes, units)));
        }
        setMinimumSize(names + figures + 3 * fontMetrics().averageCharWidth(),
                       static_cast<int>(m_parts.size()) * rowHeight());
        update();
    }

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        std::uint64_t most = 1;
        for (const auto& part : m_parts)
            most = std::max(most, part.second.value_or(0));
        int top = 0;
        for (const auto& [name, bytes] : m_parts) {
            const QRect row(0, top, width(), rowHeight());
            painter.setPen(palette().color(QPalette::Text));
            const auto drawAt = [&](Qt::Alignment side, const QString& text) {
                const auto alignment = QStyle::visualAlignment(layoutDirection(), side | Qt::AlignVCenter);
                painter.drawText(row.adjusted(0, 2, 0, -16), static_cast<int>(alignment), text);
            };
            drawAt(Qt::AlignLeft, name);
            drawAt(Qt::AlignRight, sizeText(bytes, m_units));
            QRectF bar(0, top + rowHeight() - 15, width(), 7);
            QColor track = palette().color(QPalette::Text);
            track.setAlphaF(0.10F);
            painter.setPen(Qt::NoPen);
            painter.setBrush(track);
            painter.drawRoundedRect(bar, 3.5, 3.5);
            const double length = bar.width() * static_cast<double>(bytes.value_or(0)) / static_cast<double>(most);
            if (layoutDirection() == Qt::RightToLeft)
                bar.setLeft(bar.right() - length);
            else
                bar.setWidth(length);
            painter.setBrush(kFound);
            painter.drawRoundedRect(bar, 3.5, 3.5);
            top += rowHeight();
        }
    }

  private:
    [[nodiscard]] int rowHeight() const { return fontMetrics().height() + 24; }

    std::vector<std::pair<QString, Size>> m_parts;
    SizeUnits m_units = SizeUnits::Decimal;
};

OverviewPage::OverviewPage(Application& application)
    : m_application(application), m_lastScan(new QLabel), m_freed(new QLabel), m_disk(new DiskChart),
      m_volume(titled({}, 0.9, false)), m_readOnly(titled({}, 1.0, true)), m_findings(new FindingsChart) {
    const auto& target = application.target();
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(28, 20, 28, 20);
    all->addWidget(titled(localized("My Mac"), 1.7, true));
    all->addWidget(titled(QString::fromStdString(localizedFormat(
                              "Mac OS X %@, %@'s files in %@",
                              {target.version.productVersion(), target.folders.userName, target.files->rootPath()})),
                          1.0, false));
    m_readOnly->setWordWrap(true);
    m_readOnly->setFrameShape(QFrame::StyledPanel);
    m_readOnly->setMargin(8);
    m_readOnly->setText(
        localized("This volume is read-only: you can look at everything, but nothing can be removed. Linux mounts a "
                  "Mac's volume so when it has a journal or was not unmounted cleanly."));
    all->addWidget(m_readOnly);
    auto* charts = new QHBoxLayout;
    charts->setSpacing(36);
    auto* disk = new QVBoxLayout;
    disk->addWidget(m_disk, 1);
    m_volume->setWordWrap(true);
    m_lastScan->setWordWrap(true);
    m_volume->setAlignment(Qt::AlignCenter);
    m_volume->setAccessibleName(localized("What the ring shows"));
    disk->addWidget(m_volume);
    charts->addLayout(disk, 2);
    auto* findings = new QVBoxLayout;
    findings->addWidget(titled(localized("What could be freed"), 1.15, true));
    findings->addWidget(m_findings);
    findings->addStretch(1);
    charts->addLayout(findings, 3);
    all->addSpacing(16);
    all->addLayout(charts);
    all->addStretch(1);
    all->addWidget(m_lastScan);
    all->addWidget(m_freed);
    refresh();
}

void OverviewPage::refresh() {
    const auto& controller = m_application.scanController();
    const auto units = m_application.units();
    std::vector<std::pair<QString, Size>> parts;
    for (const auto& row : controller.rows()) {
        if (row->correspondingScanController()->workMode() == WorkMode::Cleaner && row->viewName() <= kExtensionsView)
            parts.emplace_back(QString::fromStdString(row->name()),
                               row->hasLooked() || row->filesFound() > 0 ? Size(row->size()) : std::nullopt);
    }
    m_findings->setParts(std::move(parts), units);
    const auto root = QString::fromStdString(m_application.target().files->rootPath());
    const auto volume = volumeOf(root);
    m_disk->setFigures(volume.total, volume.used, controller.foundSize(), units);
    m_volume->setText(captionOf(volume, root));
    m_readOnly->setVisible(volume.isReadOnly);
    const auto lastScan = controller.lastScannedOn();
    m_lastScan->setText(lastScan.empty() ? localized("Nothing was scanned yet. Press Scan to see what could be freed.")
                                         : QString::fromStdString(localizedFormat("Last scan: %@", {lastScan})));
    m_freed->setText(
        QString::fromStdString(localizedFormat("Freed so far: %@", {m_application.statistics().totalSizeSaved()})));
}

} // namespace sweeply
