#include "ui/RemovalSheet.h"

#include "app/Application.h"
#include "platform/Localization.h"
#include "ui/SectionView.h"
#include "ui/Text.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QSettings>
#include <QVBoxLayout>
#include <memory>
#include <utility>

namespace sweeply {

RemovalSheet::RemovalSheet(Application& application, RemovalSummary summary, bool isShownAgain, QWidget* parent)
    : QDialog(parent), m_application(application), m_summary(std::move(summary)), m_remarks(new QLabel),
      m_list(new SectionView(application.units(), localized("What would be removed"))) {
    setWindowTitle(localized("Remove"));
    setWindowModality(Qt::WindowModal);
    auto* heading = new QLabel(QString::fromStdString(localizedFormat(
        "Remove %i items, %@?", {m_summary.count(), stringSizeFromLong(m_summary.size(), application.units())})));
    auto font = heading->font();
    font.setPointSizeF(font.pointSizeF() * 1.25);
    font.setBold(true);
    heading->setFont(font);
    m_remarks->setWordWrap(true);
    m_remarks->setTextFormat(Qt::PlainText);
    m_remarks->setAccessibleName(localized("What removing it means"));
    auto* all = new QVBoxLayout(this);
    all->addWidget(heading);
    if (isShownAgain) {
        auto* note = new QLabel(localized("What is checked has changed meanwhile. This is how it is now."));
        note->setWordWrap(true);
        all->addWidget(note);
    }
    all->addWidget(m_remarks);
    all->addWidget(m_list, 1);
    if (m_summary.hasWhatCanBeKept()) {
        const auto box = application.uninstallQuestion().keepingBox();
        m_keep = new QCheckBox(QString::fromStdString(box.text));
        m_keep->setChecked(box.isChecked);
        connect(m_keep, &QCheckBox::toggled, this, [this] { showSummary(); });
        all->addWidget(m_keep);
    }
    if (m_summary.isOfCachesAndLogsAlone()) {
        m_dontAsk = new QCheckBox(localized("Do not show this again for caches and logs"));
        all->addWidget(m_dontAsk);
    }
    auto* buttons = new QDialogButtonBox;
    m_remove = buttons->addButton(localizedTitle("Remove"), QDialogButtonBox::AcceptRole);
    m_cancel = buttons->addButton(localizedTitle("Cancel"), QDialogButtonBox::RejectRole);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    all->addWidget(buttons);
    (m_summary.hasWhatCannotBeMadeAgain() ? m_cancel : m_remove)->setDefault(true);
    m_list->setFocus();
    resize(640, 440);
    showSummary();
    findDetails();
}

void RemovalSheet::showSummary() {
    const bool isKept = m_keep && m_keep->isChecked();
    QStringList remarks;
    for (const auto& remark : m_summary.remarks(isKept, m_application.runs().daysOfKeeping()))
        remarks << QString::fromStdString(remark);
    m_remarks->setText(remarks.join(QLatin1Char(' ')));
    m_list->setSections(m_summary.sections(isKept));
    m_remove->setEnabled(m_hasDetails);
}

void RemovalSheet::findDetails() {
    m_jobs.start([this, preview = m_summary.preview(), &files = *m_application.target().files,
                  &steps = m_application.uninstallSteps()](const std::stop_token& stop) {
        auto details = std::make_shared<RemovalDetails>(
            RemovalDetails::of(preview, files, steps, [&stop] { return stop.stop_requested(); }));
        return [this, details] {
            m_summary.setDetails(std::move(*details));
            m_hasDetails = true;
            showSummary();
        };
    });
}

void RemovalSheet::settle() {
    if (m_keep)
        m_application.uninstallQuestion().settleKeeping(m_keep->isChecked(), m_summary.obstaclesToKeeping());
    if (m_dontAsk && m_dontAsk->isChecked())
        QSettings().setValue(QLatin1String(kRemovesCachesAndLogsUnasked), true);
}

bool confirmsRemoval(Application& application, QWidget* parent) {
    auto& controller = application.scanController();
    for (bool isShownAgain = false;; isShownAgain = true) {
        const auto preview = previewOfRemoval(controller.rows(), application.treeLock());
        RemovalSummary summary(preview);
        if (preview.empty() || (summary.isOfCachesAndLogsAlone() &&
                                QSettings().value(QLatin1String(kRemovesCachesAndLogsUnasked)).toBool()))
            return true;
        RemovalSheet sheet(application, std::move(summary), isShownAgain, parent);
        if (sheet.exec() != QDialog::Accepted)
            return false;
        // Files may have been handed over by another program while the sheet stood there.
        if (!controller.ifScanRunning() && previewOfRemoval(controller.rows(), application.treeLock()) == preview) {
            sheet.settle();
            return true;
        }
    }
}

} // namespace sweeply
