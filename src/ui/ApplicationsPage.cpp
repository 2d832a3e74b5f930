#include "ui/ApplicationsPage.h"

#include "app/Application.h"
#include "engine/EngineEvents.h"
#include "platform/Localization.h"
#include "ui/ResultPage.h"
#include "ui/Text.h"
#include "ui/WeakMatchesBox.h"

#include <QCoreApplication>
#include <QDragEnterEvent>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QShortcut>
#include <QSplitter>
#include <QToolButton>
#include <QTreeView>
#include <QVBoxLayout>
#include <utility>

namespace sweeply {

namespace {

constexpr int kKeepUpInterval = 100; // milliseconds
/// From this width on, the list and what belongs to the selected stand side by side.
constexpr int kWide = 900;
constexpr int kFewRows = 3;

} // namespace

ApplicationsPage::ApplicationsPage(Application& application, Pictures& pictures, ResultPage& results)
    : m_application(application), m_results(results), m_applications(application.units(), pictures),
      m_shown(m_applications), m_chosen(results.module(), application.treeLock()),
      m_halves(new QSplitter(Qt::Vertical)), m_list(new QTreeView), m_search(new QLineEdit), m_filters(new QToolButton),
      m_figures(new QLabel), m_weakMatches(new WeakMatchesBox(application)),
      m_uninstall(new QPushButton(localizedTitle("Uninstall"))),
      m_survey(application.applications(), application.target().files->rootPath(), application.target().version,
               {[this](std::vector<SurveyedApplication> all) {
                    QMetaObject::invokeMethod(&m_keepingUp, [this, listed = std::move(all)] {
                        m_isListed = true;
                        m_applications.list(listed);
                        showFigures();
                    });
                },
                [this](std::vector<SurveyedApplication> some) {
                    QMetaObject::invokeMethod(&m_keepingUp, [this, learned = std::move(some)] {
                        m_applications.learn(learned);
                        showFigures();
                    });
                }}) {
    setAcceptDrops(true);
    m_results.showReasons();
    m_results.addBelow(makeUninstallRow());
    m_halves->addWidget(makeList());
    m_halves->addWidget(&m_results);
    m_halves->setChildrenCollapsible(false);
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(0, 0, 0, 0);
    all->addWidget(m_halves);
    // A removal may be shorter than the time between two looks.
    m_runs = application.notifications().observe<RunningContinued>(
        [this](const auto&) { m_wasRemoving |= m_application.scanController().isRemoving(); });
    connect(&m_keepingUp, &QTimer::timeout, this, [this] { keepUp(); });
    showFigures();
}

ApplicationsPage::~ApplicationsPage() {
    m_list->setModel(nullptr); // which goes before it
}

QWidget* ApplicationsPage::makeList() {
    m_search->setPlaceholderText(localized("Search"));
    m_search->setAccessibleName(localized("Search"));
    m_search->setClearButtonEnabled(true);
    auto* find = new QShortcut(QKeySequence::Find, this);
    find->setContext(Qt::WidgetWithChildrenShortcut);
    connect(find, &QShortcut::activated, m_search, [this] { m_search->setFocus(); });
    connect(m_search, &QLineEdit::textChanged, this, [this](const QString& text) {
        m_query.text = text;
        showMatching();
    });
    m_filters->setPopupMode(QToolButton::InstantPopup);
    m_filters->setFocusPolicy(Qt::StrongFocus);
    m_filters->setMenu(new QMenu(m_filters));
    addFilter(QString::fromStdString(localizedFormat("Large (%@ and more)",
                                                     {stringSizeFromLong(kLargeApplication, m_application.units())})),
              &ApplicationsQuery::isLarge);
    addFilter(localized("Not Changed for a Year"), &ApplicationsQuery::isUnchangedForAYear);
    addFilter(localized("Not Apple's"), &ApplicationsQuery::isNotApples);

    auto* heading = new QLabel(localized("Applications"));
    auto font = heading->font();
    font.setPointSizeF(font.pointSizeF() * 1.4);
    font.setBold(true);
    heading->setFont(font);
    auto* top = new QHBoxLayout;
    top->addWidget(heading, 1);
    top->addWidget(m_search, 2);
    top->addWidget(m_filters);

    m_list->setAccessibleName(localized("Applications"));
    m_list->setModel(&m_shown);
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setAlternatingRowColors(true);
    m_list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_list->setAllColumnsShowFocus(true);
    m_list->setIconSize({20, 20});
    m_list->setFrameShape(QFrame::NoFrame);
    m_list->setMinimumHeight(kFewRows * fontMetrics().height()); // in a low window
    m_list->setSortingEnabled(true);
    m_list->sortByColumn(ApplicationsModel::Name, Qt::AscendingOrder);
    auto* header = m_list->header();
    header->setStretchLastSection(false);
    header->setSectionResizeMode(ApplicationsModel::Name, QHeaderView::Stretch);
    header->setMinimumSectionSize(60);
    const int letter = fontMetrics().averageCharWidth();
    header->resizeSection(ApplicationsModel::Version, 11 * letter);
    header->resizeSection(ApplicationsModel::Size, 15 * letter);
    header->resizeSection(ApplicationsModel::Place, 20 * letter);
    header->resizeSection(ApplicationsModel::Changed, 16 * letter);
    connect(m_list->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] { chooseSelected(); });
    connect(&m_applications, &QAbstractItemModel::rowsAboutToBeRemoved, this,
            [this](const QModelIndex&, int first, int last) {
                for (int row = first; row <= last; ++row)
                    m_chosen.forget(m_applications.at(row).path);
            });

    auto* half = new QWidget;
    auto* column = new QVBoxLayout(half);
    auto margins = column->contentsMargins();
    margins.setBottom(0);
    column->setContentsMargins(margins);
    column->addLayout(top);
    column->addWidget(m_list, 1);
    column->addWidget(m_figures);
    return half;
}

QWidget* ApplicationsPage::makeUninstallRow() {
    auto* row = new QWidget;
    auto* line = new QHBoxLayout(row);
    line->setContentsMargins(0, 0, 0, 0);
    line->addWidget(m_weakMatches, 1);
    line->addWidget(m_uninstall);
    m_uninstall->setEnabled(false);
    m_uninstall->setToolTip(localized("Remove what is checked above. You are asked first."));
    connect(m_uninstall, &QPushButton::clicked, this, [this] { m_application.scanController().uninstall(); });
    return row;
}

void ApplicationsPage::addFilter(const QString& text, bool ApplicationsQuery::*condition) {
    auto* action = m_filters->menu()->addAction(text);
    action->setCheckable(true);
    connect(action, &QAction::toggled, this, [this, condition](bool isOn) {
        m_query.*condition = isOn;
        showMatching();
    });
}

void ApplicationsPage::showMatching() {
    m_shown.setQuery(m_query);
    showFigures();
}

void ApplicationsPage::showFigures() {
    const int filters = m_query.isLarge + m_query.isUnchangedForAYear + m_query.isNotApples;
    m_filters->setText(filters == 0 ? localized("Show Only")
                                    : QString::fromStdString(localizedFormat("Show Only (%i)", {filters})));
    const int all = m_applications.rowCount();
    const int matching = m_shown.rowCount();
    if (!m_isListed)
        return m_figures->setText(localized("Looking for applications…"));
    auto text = matching == all ? localizedFormat("Applications: %i", {all})
                                : localizedFormat("Applications: %i of %i", {matching, all});
    if (const auto unmeasured = m_applications.countUnmeasured(); unmeasured > 0)
        text += "  –  " + localizedFormat("taking sizes, %i to go", {unmeasured});
    m_figures->setText(QString::fromStdString(text));
}

void ApplicationsPage::chooseSelected() {
    ChosenApplications::Paths paths;
    for (const auto& index : m_list->selectionModel()->selectedRows())
        paths.insert(m_shown.at(index).path);
    m_chosen.choose(std::move(paths));
}

void ApplicationsPage::keepUp() {
    const auto& controller = m_application.scanController();
    const bool isRemoving = controller.isRemoving();
    m_survey.setHeld(controller.isScanning() || isRemoving);
    if (!isRemoving && std::exchange(m_wasRemoving, false))
        m_survey.start();
    m_chosen.catchUp();
    m_weakMatches->refresh();
    m_uninstall->setEnabled(m_results.module().ifAnyEnabled() && m_results.module().childrenCount() > 0 &&
                            !controller.isScanning() && !isRemoving);
}

void ApplicationsPage::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (m_keepingUp.isActive())
        return;
    m_keepingUp.start(kKeepUpInterval);
    m_survey.start();
}

void ApplicationsPage::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    m_halves->setOrientation(width() >= kWide ? Qt::Horizontal : Qt::Vertical);
}

void ApplicationsPage::dragEnterEvent(QDragEnterEvent* event) { QCoreApplication::sendEvent(&m_results, event); }

void ApplicationsPage::dragLeaveEvent(QDragLeaveEvent* event) { QCoreApplication::sendEvent(&m_results, event); }

void ApplicationsPage::dropEvent(QDropEvent* event) { QCoreApplication::sendEvent(&m_results, event); }

} // namespace sweeply
