#include "ui/HistoryPage.h"

#include "app/Application.h"
#include "engine/PuttingBack.h"
#include "platform/Alerts.h"
#include "platform/Localization.h"
#include "ui/SectionView.h"
#include "ui/Text.h"

#include <QHeaderView>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QSplitter>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <memory>
#include <utility>

namespace sweeply {

namespace {

enum Column { When, What, Removed, Freed, Kept, Stayed, State, ColumnCount };

QLabel* boldLabel(double scale) {
    auto* label = new QLabel;
    label->setTextFormat(Qt::PlainText);
    auto font = label->font();
    font.setPointSizeF(font.pointSizeF() * scale);
    font.setBold(true);
    label->setFont(font);
    return label;
}

QString countText(std::uint64_t count) { return count == 0 ? QString() : QString::number(count); }

} // namespace

HistoryPage::HistoryPage(Application& application, Alerts& alerts)
    : m_application(application), m_alerts(alerts), m_runs(new QTreeWidget), m_title(boldLabel(1.15)),
      m_summary(new QLabel), m_items(new SectionView(application.units(), localized("What became of each item"))),
      m_putBack(new QPushButton(localizedTitle(translatableButton("Put Back")))),
      m_freeNow(new QPushButton(localizedTitle(translatableButton("Free Now")))) {
    auto* heading = boldLabel(1.6);
    heading->setText(localized("History"));
    m_runs->setAccessibleName(localized("Runs"));
    m_runs->setRootIsDecorated(false);
    m_runs->setUniformRowHeights(true);
    m_runs->setAlternatingRowColors(true);
    m_runs->setHeaderLabels({localized("When"), localized("What was done"), localized("Removed"), localized("Freed"),
                             localized("Kept"), localized("Stayed"), localized("State")});
    m_runs->header()->setStretchLastSection(true);
    m_summary->setWordWrap(true);
    m_summary->setTextFormat(Qt::PlainText);
    m_summary->setAccessibleName(localized("Summary"));
    m_putBack->setToolTip(localized("Puts back what is selected, or everything that this run keeps."));
    m_freeNow->setToolTip(localized("Removes what is selected, or everything that this run keeps, for good."));

    auto* details = new QWidget;
    auto* column = new QVBoxLayout(details);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(m_title);
    column->addWidget(m_summary);
    column->addWidget(m_items, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(m_putBack);
    buttons->addWidget(m_freeNow);
    buttons->addStretch(1);
    column->addLayout(buttons);
    auto* parts = new QSplitter(Qt::Vertical);
    parts->setChildrenCollapsible(false);
    parts->addWidget(m_runs);
    parts->addWidget(details);
    parts->setStretchFactor(0, 1);
    parts->setStretchFactor(1, 2);
    auto* all = new QVBoxLayout(this);
    all->addWidget(heading);
    all->addWidget(parts, 1);

    connect(m_runs, &QTreeWidget::currentItemChanged, this, [this](const QTreeWidgetItem* item) {
        if (item)
            readReport(utf8(item->data(When, Qt::UserRole).toString()));
    });
    connect(m_items->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] { showButtons(); });
    connect(m_putBack, &QPushButton::clicked, this, [this] { putBack(); });
    connect(m_freeNow, &QPushButton::clicked, this, [this] { freeNow(); });
    show(RunReport{localized("Nothing was done yet."), {}, {}});
}

// Reading

void HistoryPage::showNewest() {
    readRuns([](const RunRow&) { return true; });
}

void HistoryPage::showLastRemoval() {
    const auto run = m_application.runs().run();
    if (run) {
        readRuns([run](const RunRow& row) { return row.header.run == *run; });
        return;
    }
    const auto reports = m_application.gate().reports();
    if (reports.empty())
        return;
    std::vector<RecordedItem> items;
    for (const auto& report : reports)
        items.push_back(recordedItem(report));
    m_runs->setCurrentItem(nullptr);
    show(reportOfItems(localizedString("This run changed nothing, and is not in the list"), items,
                       m_application.units()));
    readRuns([](const RunRow&) { return false; });
}

void HistoryPage::readRuns(IsWanted isWanted) {
    m_readingRuns.start([this, isWanted, isRemoving = m_application.scanController().isRemoving(),
                         &runs = std::as_const(m_application.runs())](const std::stop_token& stop) {
        auto rows = runRows(runs, isRemoving, [&stop] { return stop.stop_requested(); });
        return [this, isWanted, rows = std::move(rows)] { showRuns(rows, isWanted); };
    });
}

void HistoryPage::showRuns(const std::vector<RunRow>& rows, const IsWanted& isWanted) {
    const auto units = m_application.units();
    const auto size = [units](std::uint64_t bytes) {
        return bytes == 0 ? QString() : QString::fromStdString(stringSizeFromLong(bytes, units));
    };
    const QSignalBlocker noReading(m_runs);
    m_runs->clear();
    QTreeWidgetItem* current = nullptr;
    for (const auto& row : rows) {
        auto* item = new QTreeWidgetItem(m_runs);
        item->setData(When, Qt::UserRole, QString::fromStdString(row.header.run));
        item->setText(When, shownTime(row.header.started));
        item->setText(What, shown(titleOfCommand(row.header.command)));
        item->setText(Removed, countText(row.sums.removed));
        item->setText(Freed, size(row.sums.freed));
        item->setText(Kept, row.keptNow == 0 ? QString()
                                             : QString::number(row.keptNow) + QStringLiteral(" (") +
                                                   size(row.keptSize) + QLatin1Char(')'));
        item->setText(Stayed, countText(row.sums.failed));
        item->setText(State, QString::fromStdString(titleOfState(row.state)));
        for (const int column : {Removed, Freed, Kept, Stayed})
            item->setTextAlignment(column, Qt::AlignRight | Qt::AlignVCenter);
        if (!current && isWanted(row))
            current = item;
    }
    for (int column = 0; column < State; ++column)
        m_runs->resizeColumnToContents(column);
    if (!current)
        return;
    m_runs->setCurrentItem(current);
    readReport(utf8(current->data(When, Qt::UserRole).toString()));
}

void HistoryPage::readReport(const std::string& run) {
    m_readingReport.start([this, run, units = m_application.units(),
                           isRemoving = m_application.scanController().isRemoving(),
                           &runs = std::as_const(m_application.runs())](const std::stop_token&) {
        auto report = std::make_shared<Result<RunReport>>(reportOfRun(runs, run, isRemoving, units));
        return [this, report] {
            if (*report)
                show(std::move(**report));
            else
                show(RunReport{shown(report->error().message()), {}, {}});
        };
    });
}

void HistoryPage::show(RunReport report) {
    m_report = std::move(report);
    m_title->setText(m_report.title);
    m_summary->setText(m_report.summary);
    m_summary->setVisible(!m_report.summary.isEmpty());
    m_items->setSections(std::exchange(m_report.sections, {}));
    // Short lists are seen whole at once, and what stayed always is.
    constexpr std::size_t kManyItems = 200;
    const auto& sections = m_items->sectionModel().sections();
    for (std::size_t section = 0; section < sections.size(); ++section) {
        if (section == 0 || sections[section].items.size() < kManyItems)
            m_items->expand(m_items->sectionModel().index(static_cast<int>(section), 0));
    }
    showButtons();
}

// Changing

void HistoryPage::showButtons() {
    const bool isAny = !m_isChanging && !chosen().empty();
    m_putBack->setEnabled(isAny);
    m_freeNow->setEnabled(isAny);
}

std::vector<KeptEntry> HistoryPage::chosen() const {
    const auto selected = m_items->selectedItems();
    if (selected.empty())
        return m_report.kept;
    std::vector<KeptEntry> entries;
    for (const auto* item : selected) {
        if (item->number != 0)
            entries.push_back(m_report.kept[item->number - 1]);
    }
    return entries;
}

void HistoryPage::putBack() {
    std::vector<std::string> paths;
    const auto entries = chosen();
    for (const auto& entry : entries)
        paths.push_back(entry.item.path);
    doAlone(localized("Putting back…"),
            [&application = m_application, run = m_report.run, paths, entries](const std::stop_token& stop) {
                const auto undone = sweeply::putBack(application.runs(), application.authorisation(), run, paths,
                                                     [&stop] { return stop.stop_requested(); });
                if (!undone)
                    return RunReport{localized("Nothing was put back"), shown(undone.error().message()), {}};
                return reportOfItems(localizedString("Put back just now"), recordedItems(*undone, entries),
                                     application.units());
            });
}

void HistoryPage::freeNow() {
    const auto entries = chosen();
    std::uint64_t size = 0;
    for (const auto& entry : entries)
        size += entry.item.size;
    Alert alert;
    alert.title = localizedFormat("Remove %i kept items for good?", {entries.size()});
    alert.text = localizedFormat("That frees %@. They cannot be put back any more.",
                                 {stringSizeFromLong(size, m_application.units())});
    alert.buttons = {localizedButton("Cancel"), localizedButton("Free Now")};
    if (m_alerts.runAlert(alert).button != 1)
        return;
    doAlone(localized("Freeing…"), [&application = m_application, entries](const std::stop_token& stop) {
        const auto purged = application.runs().purge(entries, [&stop] { return stop.stop_requested(); });
        if (!purged)
            return RunReport{localized("Nothing was freed"), shown(purged.error().message()), {}};
        return reportOfItems(localizedString("Freed just now"), *purged, application.units());
    });
}

void HistoryPage::doAlone(const QString& activity, std::function<RunReport(const std::stop_token&)> change) {
    auto report = std::make_shared<RunReport>();
    const QPointer<HistoryPage> page(this);
    const bool isBegun = m_application.scanController().doAlone(
        [report, change = std::move(change)](const std::stop_token& stop) { *report = change(stop); },
        [report, page] {
            if (!page)
                return;
            page->m_isChanging = false;
            // What was done is shown until another run is chosen; the list tells what the runs keep now.
            page->m_runs->setCurrentItem(nullptr);
            page->show(std::move(*report));
            page->readRuns([](const RunRow&) { return false; });
        });
    if (!isBegun) {
        show(RunReport{localized("Something else is running"),
                       localized("Nothing was changed. Wait until it has ended, or stop it, and try again."),
                       {}});
        return;
    }
    m_isChanging = true;
    m_readingReport.forget();
    show(RunReport{activity, {}, {}});
}

} // namespace sweeply
