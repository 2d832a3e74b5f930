#include "ui/WorkArea.h"

#include "app/ModuleCatalog.h"
#include "engine/EngineEvents.h"
#include "ui/ApplicationsPage.h"
#include "ui/ExtensionsPage.h"
#include "ui/HistoryPage.h"
#include "ui/InformationPanel.h"
#include "ui/ModuleList.h"
#include "ui/OverviewPage.h"
#include "ui/PageCodes.h"
#include "ui/RebuildRow.h"
#include "ui/Scrolled.h"
#include "ui/SpacePage.h"
#include "ui/TargetChooser.h"
#include "ui/TargetSession.h"
#include "ui/Text.h"
#include "ui/UnreadRow.h"

#include <QScrollArea>
#include <QStackedWidget>
#include <QVBoxLayout>
#include <algorithm>

namespace sweeply {

namespace {

constexpr std::uint8_t kOverview = 0;

QString hintFor(std::uint8_t viewCode) {
    switch (viewCode) {
    case kUninstallerView:
        return localized(
            "Select applications in the list, or drop applications and installer packages here. Everything that "
            "belongs to them is found and shown before anything is removed.");
    case kEraserView:
        return localized("Drop files and folders here. They are removed for good, and overwritten first if that is "
                         "switched on in the preferences.");
    default:
        return localized("Nothing found yet. Press Scan.");
    }
}

} // namespace

WorkArea::WorkArea(TargetSession& session, InformationPanel& information, Window window)
    : m_session(session), m_information(information), m_pictures(*session.application().target().files),
      m_services{session.application().treeLock(),
                 session.application().units(),
                 m_pictures,
                 window.log,
                 [this](ADScanControllerView& module, const Node::Pointer& node) { showInformation(module, node); },
                 [&files = *session.application().target().files](const std::string& path) {
                     return QString::fromStdString(files.hostPath(path).value_or(std::string()));
                 },
                 std::move(window.targetPath),
                 std::move(window.say),
                 [this](const QString& title) { return chooseFiles(title); }},
      m_pages(new QStackedWidget), m_overview(new OverviewPage(session.application())),
      m_history(new HistoryPage(session.application(), window.alerts)), m_unread(new UnreadRow(session.application())) {
    auto& application = session.application();
    addPage(kHistoryView, m_history);
    addPage(kOverview, scrolled(m_overview, localized("My Mac")));
    addPage(kSpaceView, new SpacePage({*application.target().files, application.units(), m_services.targetPath}));
    for (const auto& row : application.scanController().rows())
        addPage(row->viewName(), pageFor(*row));
    m_pictures.setChanged([this] {
        for (auto* page : m_resultPages)
            page->model().reloadData();
        m_applications->model().redraw();
    });
    m_modules = new ModuleList(application.scanController(), application.units(),
                               [this](std::uint8_t view) { showPage(view); });
    auto* right = new QWidget;
    auto* column = new QVBoxLayout(right);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(m_pages, 1);
    column->addWidget(m_unread);
    setHandleWidth(1);
    setChildrenCollapsible(false);
    addWidget(m_modules);
    addWidget(right);
    setStretchFactor(1, 1);
    setSizes({230, 850});
    select(kOverview);
    m_removalEnded = application.notifications().observe<RemovalEnded>([this](const auto&) { showRemoval(); });
}

WorkArea::~WorkArea() {
    // They draw with the pictures and would otherwise outlive them.
    delete m_modules;
    delete m_pages;
}

QWidget* WorkArea::pageFor(const ScanObject& row) {
    if (row.viewName() == kExtensionsView)
        return new ExtensionsPage(m_session.application().extensions(),
                                  [this](auto&... how) { return makePage(how...); });
    const bool isUninstaller = row.viewName() == kUninstallerView;
    auto* page = makePage(*row.correspondingScanController(),
                          isUninstaller ? localized("What Belongs to Them") : QString::fromStdString(row.name()),
                          hintFor(row.viewName()));
    page->setPurpose(QString::fromStdString(row.purpose()));
    if (!isUninstaller)
        return page;
    m_applications = new ApplicationsPage(m_session.application(), m_pictures, *page);
    page->addBelow(new RebuildRow(m_session.launchDatabase()));
    return m_applications;
}

ResultPage* WorkArea::makePage(ADScanControllerView& module, const QString& title, const QString& hint) {
    m_resultPages.push_back(new ResultPage(module, m_services, title, hint));
    return m_resultPages.back();
}

void WorkArea::addPage(std::uint8_t viewCode, QWidget* page) {
    m_pages->addWidget(page);
    m_pageOfView[viewCode] = page;
}

void WorkArea::showPage(std::uint8_t viewCode) {
    m_pages->setCurrentWidget(m_pageOfView.at(viewCode));
    if (viewCode == kHistoryView)
        m_history->showNewest();
    m_information.showNothing();
    if (auto* page = dynamic_cast<ResultPage*>(m_pages->currentWidget()))
        page->showCurrent();
    auto& controller = m_session.application().scanController();
    const auto& rows = controller.rows();
    for (std::size_t row = 0; row < rows.size(); ++row) {
        if (rows[row]->viewName() == viewCode)
            controller.setSelectedRow(row);
    }
    if (auto* module = controller.moduleForViewCode(viewCode))
        module->willSwithToYourView();
    else
        controller.gotoCleanerMode();
    refresh();
}

void WorkArea::showInformation(ADScanControllerView& module, const Node::Pointer& node) {
    if (!node)
        return m_information.showNothing();
    const auto* row = module.scanObject() ? module.scanObject() : m_session.application().extensions().scanObject();
    m_information.show(node, {row->viewName(), QString::fromStdString(row->purpose()), module.pathsBehind(*node)});
}

ResultPage* WorkArea::pageThatTakesFiles() const {
    const auto found =
        std::ranges::find_if(m_resultPages, [](const auto* page) { return page->takesFiles() && page->isVisible(); });
    return found == m_resultPages.end() ? nullptr : *found;
}

void WorkArea::addFiles() {
    if (auto* page = pageThatTakesFiles())
        page->addFiles();
}

std::vector<std::string> WorkArea::chooseFiles(const QString& title) {
    TargetChooser chooser(*m_session.application().target().files, title, m_folderToChooseIn, window());
    chooser.exec();
    m_folderToChooseIn = chooser.folder();
    return chooser.chosen();
}

void WorkArea::showRemoval() {
    // Of a removal that the person called off at once there is nothing to tell.
    if (m_session.application().gate().reports().empty())
        return;
    select(kHistoryView);
    m_history->showLastRemoval();
}

void WorkArea::select(std::uint8_t viewCode) { m_modules->select(viewCode); }

bool WorkArea::isShowingOverview() const { return m_pages->currentWidget() == m_pageOfView.at(kOverview); }

void WorkArea::refresh() {
    m_modules->refresh();
    m_information.refresh();
    m_unread->refresh();
    if (isShowingOverview())
        m_overview->refresh();
}

} // namespace sweeply
