#include "ui/UnreadRow.h"

#include "app/Application.h"
#include "engine/EngineEvents.h"
#include "platform/Localization.h"
#include "ui/Glyphs.h"
#include "ui/Text.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace sweeply {

namespace {

class UnreadDialog final : public QDialog {
  public:
    UnreadDialog(const std::vector<Error>& problems, QWidget* parent) : QDialog(parent) {
        setWindowTitle(localized("What Could Not Be Read"));
        auto* text = new QLabel(localized("What lies there was not looked at, and is not listed as found."));
        text->setWordWrap(true);
        auto* list = new QTreeWidget;
        list->setAccessibleName(windowTitle());
        list->setRootIsDecorated(false);
        list->setUniformRowHeights(true);
        list->setHeaderLabels({localized("Where"), localized("Why")});
        list->header()->setSectionResizeMode(0, QHeaderView::Stretch);
        list->header()->setStretchLastSection(false);
        QList<QTreeWidgetItem*> rows;
        for (const auto& problem : problems) {
            auto* row = new QTreeWidgetItem({shown(problem.path), shown(problem.reason)});
            row->setToolTip(0, row->text(0));
            rows << row;
        }
        list->addTopLevelItems(rows);
        list->resizeColumnToContents(1);
        auto* buttons = new QDialogButtonBox;
        buttons->addButton(localizedTitle("Close"), QDialogButtonBox::RejectRole);
        connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
        auto* all = new QVBoxLayout(this);
        all->addWidget(text);
        all->addWidget(list, 1);
        all->addWidget(buttons);
        resize(640, 360);
    }
};

} // namespace

UnreadRow::UnreadRow(Application& application)
    : m_application(application), m_count(new QLabel),
      m_subscription(application.notifications().observe<ProblemFound>(
          [isStale = m_isStale](const ProblemFound&) { *isStale = true; })) {
    auto* line = new QHBoxLayout(this);
    line->setContentsMargins(9, 4, 9, 4);
    auto* picture = new QLabel;
    picture->setPixmap(glyph(Glyph::Warning).pixmap(16, 16));
    m_count->setWordWrap(true);
    auto* button = new QPushButton(localizedTitle("Show…"));
    button->setAccessibleDescription(localized("What Could Not Be Read"));
    line->addWidget(picture);
    line->addWidget(m_count, 1);
    line->addWidget(button);
    connect(button, &QPushButton::clicked, this, [this] { showList(); });
    hide();
}

void UnreadRow::refresh() {
    const auto& controller = m_application.scanController();
    if (controller.isScanning() || controller.ifScanRunning()) {
        *m_isStale = true;
        hide();
        return;
    }
    if (!m_isStale->exchange(false))
        return;
    m_problems = m_application.target().files->problems().all();
    m_count->setText(m_problems.size() == 1
                         ? localized("1 folder or file could not be read; more may be there than is listed.")
                         : QString::fromStdString(localizedFormat(
                               "%@ folders and files could not be read; more may be there than is listed.",
                               {std::to_string(m_problems.size())})));
    setVisible(!m_problems.empty());
}

void UnreadRow::showList() { UnreadDialog(m_problems, this).exec(); }

} // namespace sweeply
