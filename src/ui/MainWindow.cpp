#include "ui/MainWindow.h"

#include "platform/Localization.h"
#include "ui/DraggedFilesDialog.h"
#include "ui/Drawings.h"
#include "ui/InformationPanel.h"
#include "ui/ModuleList.h"
#include "ui/NewsLine.h"
#include "ui/OverviewPage.h"
#include "ui/PreferencesDialog.h"
#include "ui/ResultPage.h"
#include "ui/StartPage.h"
#include "ui/Text.h"

#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QDockWidget>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QSettings>
#include <QSplitter>
#include <QStackedWidget>
#include <QStatusBar>
#include <QTabWidget>
#include <QToolBar>
#include <algorithm>
#include <sstream>
#include <utility>

namespace sweeply {

namespace {

constexpr int kRefreshInterval = 100; // milliseconds
constexpr int kMessageTime = 8000;    // milliseconds
constexpr std::uint8_t kOverview = 0;
constexpr std::uint8_t kExtensions = 6;
constexpr std::uint8_t kUninstaller = 7;
constexpr std::uint8_t kEraser = 8;
constexpr const char* kGeometry = "geometry";
constexpr const char* kState = "state";

QString hintFor(std::uint8_t viewCode) {
    switch (viewCode) {
    case kUninstaller:
        return localized(
            "Drop applications or installer packages here. Everything that belongs to them is found and shown "
            "before anything is removed.");
    case kEraser:
        return localized("Drop files and folders here. They are removed for good, and overwritten first if that is "
                         "switched on in the preferences.");
    default:
        return localized("Nothing found yet. Press Scan.");
    }
}

} // namespace

MainWindow::MainWindow(Desktop& desktop, std::vector<std::string> arguments)
    : m_desktop(desktop), m_arguments(std::move(arguments)), m_central(new QStackedWidget),
      m_startPage(new StartPage([this](const QString& folder) { chooseTarget(folder); })), m_toolBar(new QToolBar),
      m_scan(new QAction(this)), m_pause(new QAction(this)), m_remove(new QAction(this)), m_lock(new QAction(this)),
      m_figures(new QLabel), m_currentItem(new QLabel) {
    setWindowTitle(QStringLiteral("Sweeply"));
    setWindowIcon(drawings::application());
    m_desktop.alerts.setParent(this);
    m_central->addWidget(m_startPage);
    setCentralWidget(m_central);
    makeActions();
    makeMenus();
    m_figures->setAccessibleName(localized("Figures"));
    m_currentItem->setAccessibleName(localized("Current item"));
    m_currentItem->setTextFormat(Qt::PlainText);
    m_currentItem->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    statusBar()->addWidget(m_figures);
    statusBar()->addWidget(m_currentItem, 1);
    auto* news = new NewsLine;
    statusBar()->addPermanentWidget(news);
    news->start();
    connect(&m_refreshing, &QTimer::timeout, this, [this] { refresh(); });
    resize(1080, 720);
    const QSettings settings;
    restoreGeometry(settings.value(QLatin1String(kGeometry)).toByteArray());
}

MainWindow::~MainWindow() {
    leaveTarget();
    m_desktop.alerts.setParent(nullptr);
}

void MainWindow::makeActions() {
    m_toolBar->setObjectName(QStringLiteral("toolBar"));
    m_toolBar->setWindowTitle(localized("Tools"));
    m_toolBar->setMovable(false);
    m_toolBar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_scan->setIcon(style()->standardIcon(QStyle::SP_BrowserReload));
    m_pause->setIcon(style()->standardIcon(QStyle::SP_MediaPause));
    m_remove->setIcon(style()->standardIcon(QStyle::SP_TrashIcon));
    m_scan->setShortcut(QKeySequence(QStringLiteral("Ctrl+R")));
    m_pause->setShortcut(QKeySequence(QStringLiteral("Ctrl+P")));
    m_remove->setShortcut(QKeySequence(QStringLiteral("Ctrl+D")));
    for (auto* action : {m_scan, m_pause, m_remove})
        m_toolBar->addAction(action);
    auto* space = new QWidget;
    space->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    m_toolBar->addWidget(space);
    m_toolBar->addAction(m_lock);
    addToolBar(m_toolBar);
    m_toolBar->hide();
    connect(m_scan, &QAction::triggered, this, [this] { run(m_buttons.scan.action); });
    connect(m_pause, &QAction::triggered, this, [this] { run(m_buttons.pause.action); });
    connect(m_remove, &QAction::triggered, this, [this] { run(m_buttons.remove.action); });
    connect(m_lock, &QAction::triggered, this, [this] {
        m_session->application().scanController().authentificate();
        refreshLock();
    });
}

void MainWindow::makeMenus() {
    auto* file = menuBar()->addMenu(localized("&File"));
    file->addAction(localized("Choose Another Mac…"), this, [this] {
        const auto* controller = m_session ? &m_session->application().scanController() : nullptr;
        if (controller && (controller->ifScanRunning() || controller->ifCleanRunning())) {
            statusBar()->showMessage(localized("Stop what is running first."), kMessageTime);
            return;
        }
        leaveTarget();
        m_central->setCurrentWidget(m_startPage);
    });
    file->addAction(localized("&Preferences…"), QKeySequence(QStringLiteral("Ctrl+,")), this,
                    [this] { showPreferences(); });
    file->addSeparator();
    file->addAction(localized("&Quit"), QKeySequence::Quit, this, [this] { close(); });
    auto* run = menuBar()->addMenu(localized("&Run"));
    run->addActions({m_scan, m_pause, m_remove, m_lock});
    run->addSeparator();
    run->addAction(localized("&Copy How Much Was Freed"), this, [this] {
        if (m_session)
            QApplication::clipboard()->setText(QString::fromStdString(localizedFormat(
                "Sweeply has cleaned %@ from your Mac!", {m_session->application().statistics().totalSizeSaved()})));
    });
    auto* help = menuBar()->addMenu(localized("&Help"));
    help->addAction(localized("&About Sweeply"), this, [this] { about(); });
}

// The target

WindowHooks MainWindow::hooks() {
    return {[this] { changeViewTo(kUninstaller); },
            [this] {
                DraggedFilesDialog dialog(m_session->application().draggedFiles(), this);
                dialog.exec();
            },
            [this] { showPreferences(); },
            [this] {
                showNormal();
                raise();
                activateWindow();
            },
            [this] {
                m_mayClose = true;
                close();
            },
            [this] { return m_view == kOverview; },
            [this](const std::string& path) { return targetPathOf(QString::fromStdString(path)); }};
}

QString MainWindow::openTargetAt(const TargetOptions& options) {
    std::ostringstream output;
    auto target = openTarget(options, m_desktop.log, output);
    if (!target)
        return QString::fromStdString(target.error().message());
    if (!*target)
        return QString::fromStdString(output.str());
    leaveTarget();
    m_session = std::make_unique<TargetSession>(**std::move(target), m_desktop, m_arguments, hooks());
    auto& application = m_session->application();
    m_pictures = std::make_unique<Pictures>(*application.target().files);
    application.scanController().setMainView(this);
    makePages();
    actionButtonsChanged(application.scanController().actionButtons());
    m_toolBar->show();
    m_refreshing.start(kRefreshInterval);
    m_startPage->showProblem({});
    const auto root = QString::fromStdString(application.target().files->rootPath());
    StartPage::remember(root);
    setWindowTitle(QStringLiteral("Sweeply – ") + root);
    return {};
}

bool MainWindow::open(const TargetOptions& options, const std::vector<std::string>& files) {
    const auto problem = openTargetAt(options);
    if (!problem.isEmpty()) {
        // On a machine that is no Mac this is how most people start; nothing is wrong then.
        m_startPage->showProblem(options.root ? problem : QString());
        m_filesToOpen = files;
        return true;
    }
    return m_session->takeRequests(files);
}

void MainWindow::chooseTarget(const QString& folder) {
    const auto problem = openTargetAt({utf8(QFileInfo(folder).canonicalFilePath()), {}, {}, {}});
    m_startPage->showProblem(problem);
    // Another Sweeply has the files then; this one goes on with its own Mac.
    if (problem.isEmpty() && !m_session->takeRequests(std::exchange(m_filesToOpen, {})))
        statusBar()->showMessage(localized("Sweeply runs already; files that you open go there."), kMessageTime);
}

void MainWindow::leaveTarget() {
    if (!m_session)
        return;
    m_refreshing.stop();
    m_toolBar->hide();
    if (m_dock) {
        QSettings().setValue(QLatin1String(kState), saveState());
        removeDockWidget(m_dock);
        delete m_dock;
    }
    delete m_workPage;
    m_workPage = nullptr;
    m_modules = nullptr;
    m_pages = nullptr;
    m_overview = nullptr;
    m_dock = nullptr;
    m_information = nullptr;
    m_pageOfView.clear();
    m_resultPages.clear();
    m_session->application().scanController().setMainView(nullptr);
    m_desktop.mainThread.close();
    m_session.reset();
    m_desktop.mainThread.open();
    m_pictures.reset();
    m_figures->clear();
    m_currentItem->clear();
    setWindowTitle(QStringLiteral("Sweeply"));
}

// Pages

void MainWindow::makePages() {
    auto& application = m_session->application();
    auto& controller = application.scanController();
    m_pages = new QStackedWidget;
    m_overview = new OverviewPage(application);
    m_pages->addWidget(m_overview);
    m_pageOfView[kOverview] = m_overview;

    m_dock = new QDockWidget(localized("Information"), this);
    m_dock->setObjectName(QStringLiteral("information"));
    m_information = new InformationPanel(*application.target().files, application.treeLock(), application.units());
    m_dock->setWidget(m_information);
    addDockWidget(Qt::RightDockWidgetArea, m_dock);

    for (const auto& row : controller.rows()) {
        const auto code = row->viewName();
        auto* page = code == kExtensions ? extensionsPage()
                                         : makePage(*row->correspondingScanController(),
                                                    QString::fromStdString(row->name()), hintFor(code));
        m_pages->addWidget(page);
        m_pageOfView[code] = page;
    }
    m_pictures->setChanged([this] {
        for (auto* page : m_resultPages)
            page->model().reloadData();
    });
    m_modules = new ModuleList(controller, application.units(), [this](std::uint8_t view) { showPage(view); });
    auto* splitter = new QSplitter;
    splitter->setHandleWidth(1);
    splitter->addWidget(m_modules);
    splitter->addWidget(m_pages);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({230, 850});
    m_workPage = splitter;
    m_central->addWidget(m_workPage);
    m_central->setCurrentWidget(m_workPage);
    restoreState(QSettings().value(QLatin1String(kState)).toByteArray());
    showPage(kOverview);
}

ResultPage* MainWindow::makePage(ADScanControllerView& module, const QString& title, const QString& hint) {
    auto& application = m_session->application();
    auto* page = new ResultPage(module,
                                {application.treeLock(), application.units(), *m_pictures, m_desktop.log,
                                 [this, &module](const Node::Pointer& node) { showInformation(module, node); },
                                 [&files = *application.target().files](const std::string& path) {
                                     return QString::fromStdString(files.hostPath(path).value_or(std::string()));
                                 },
                                 [this](const QString& path) { return targetPathOf(path); },
                                 [this](const QString& text) { statusBar()->showMessage(text, kMessageTime); }},
                                title, hint);
    m_resultPages.push_back(page);
    if (&module == application.scanController().moduleForViewCode(kUninstaller))
        page->addBelow(rebuildRow());
    return page;
}

QWidget* MainWindow::rebuildRow() {
    auto* row = new QWidget;
    auto* line = new QHBoxLayout(row);
    line->setContentsMargins(0, 0, 0, 0);
    line->addWidget(new QLabel(localized("The system's list of applications may still name what is gone:")), 1);
    auto* button = new QPushButton(localizedTitle("Rebuild"));
    line->addWidget(button);
    connect(button, &QPushButton::clicked, this, [this, button] {
        button->setEnabled(false);
        button->setText(localizedTitle("Rebuilding..."));
        m_session->launchDatabase().rebuildLaunchDB([guarded = QPointer<QPushButton>(button)] {
            if (!guarded)
                return;
            guarded->setText(localizedTitle("Rebuild"));
            guarded->setEnabled(true);
        });
    });
    return row;
}

QWidget* MainWindow::extensionsPage() {
    auto& extensions = m_session->application().extensions();
    auto* tabs = new QTabWidget;
    tabs->setAccessibleName(localized("Extensions"));
    const auto& uninstallers = extensions.uninstallControllers();
    tabs->addTab(makePage(extensions.cleanerController(), localized("Leftovers"), hintFor(kExtensions)),
                 localized("Leftovers"));
    tabs->addTab(makePage(*uninstallers[0], localized("Widgets"), localized("No widgets are installed.")),
                 localized("Widgets"));
    tabs->addTab(
        makePage(*uninstallers[1], localized("Preference Panes"), localized("No preference panes are installed.")),
        localized("Preference Panes"));
    tabs->addTab(makePage(*uninstallers[2], localized("Plug-ins"), localized("No plug-ins are installed.")),
                 localized("Plug-ins"));
    connect(tabs, &QTabWidget::currentChanged, this, [&extensions](int tab) {
        constexpr std::string_view kTabs[] = {"", ExtensionsScanController::kWidgetsTab,
                                              ExtensionsScanController::kPreferencesTab,
                                              ExtensionsScanController::kPluginsTab};
        extensions.didSelectTabViewItem(kTabs[tab]);
    });
    return tabs;
}

void MainWindow::showPage(std::uint8_t viewCode) {
    const auto page = m_pageOfView.find(viewCode);
    if (page == m_pageOfView.end())
        return;
    m_view = viewCode;
    m_pages->setCurrentWidget(page->second);
    m_information->show(nullptr, {});
    auto& controller = m_session->application().scanController();
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

void MainWindow::showInformation(ADScanControllerView& module, const Node::Pointer& node) {
    const auto* row = module.scanObject() ? module.scanObject() : m_session->application().extensions().scanObject();
    m_information->show(node, QString::fromStdString(row->purpose()));
}

std::optional<std::string> MainWindow::targetPathOf(const QString& hostPath) {
    const QString root = QString::fromStdString(m_session->application().target().files->rootPath());
    // Of the item itself, not of what a link leads to: only its folder is resolved.
    const QFileInfo item(hostPath);
    const QString path = QFileInfo(item.absolutePath()).canonicalFilePath() + QLatin1Char('/') + item.fileName();
    if (root == QLatin1String("/"))
        return utf8(path);
    if (path.startsWith(root + QLatin1Char('/')))
        return utf8(path.mid(root.size()));
    statusBar()->showMessage(QString::fromStdString(localizedFormat("%@ does not lie on the Mac in %@",
                                                                    {utf8(shown(utf8(hostPath))), utf8(root)})),
                             kMessageTime);
    return std::nullopt;
}

// The engine's view

void MainWindow::reloadModuleList() {
    if (m_modules)
        m_modules->refresh();
}

void MainWindow::actionButtonsChanged(const ActionButtons& buttons) {
    m_buttons = buttons;
    const auto set = [](QAction* action, const ActionButton& button) {
        action->setText(localizedTitle(button.title));
        action->setEnabled(button.isEnabled);
    };
    set(m_scan, buttons.scan);
    set(m_pause, buttons.pause);
    set(m_remove, buttons.remove);
    refreshLock();
}

void MainWindow::changeViewTo(std::uint8_t viewCode) {
    if (m_modules)
        m_modules->select(viewCode);
}

void MainWindow::terminate() {
    m_mayClose = true;
    close();
}

void MainWindow::run(Action action) {
    auto& controller = m_session->application().scanController();
    switch (action) {
    case Action::StartScan:
        controller.startScan();
        break;
    case Action::StopScan:
        controller.stopScan();
        break;
    case Action::PauseScan:
        controller.pauseScan();
        break;
    case Action::Remove:
        controller.remove();
        break;
    case Action::Uninstall:
        controller.uninstall();
        break;
    case Action::StopRemoval:
        controller.stopRemoval();
        break;
    }
    refresh();
}

void MainWindow::refresh() {
    if (!m_session || !m_modules)
        return;
    auto& application = m_session->application();
    const auto& controller = application.scanController();
    m_modules->refresh();
    if (m_view == kOverview)
        m_overview->refresh();
    const auto size = [&](std::uint64_t bytes) { return stringSizeFromLong(bytes, application.units()); };
    m_figures->setText(QString::fromStdString(localizedFormat(
        "Found: %@   Checked: %@   Freed now: %@, in all: %@",
        {size(controller.totalSize()), size(controller.foundSize()),
         size(application.statistics().currentRemovedAmountOfSpace()), application.statistics().totalSizeSaved()})));
    std::string item;
    if (controller.isScanning() || controller.isRemoving()) {
        const auto working = std::ranges::find_if(
            controller.rows(), [](const auto& row) { return row->isScanning() || row->isRemoving(); });
        if (working != controller.rows().end())
            item = (*working)->correspondingScanController()->currentItem();
    }
    m_currentItem->setText(
        m_currentItem->fontMetrics().elidedText(shown(item), Qt::ElideMiddle, m_currentItem->width()));
}

void MainWindow::refreshLock() {
    if (!m_session)
        return;
    const auto& authorisation = m_session->application().authorisation();
    m_lock->setText(QString::fromStdString(authorisation.menuItemTitle()));
    m_lock->setIcon(drawings::lock(authorisation.isAuthorised()));
    m_lock->setToolTip(QString::fromStdString(authorisation.lockText()).trimmed());
}

// Windows of its own

void MainWindow::showPreferences() {
    if (!m_session)
        return;
    PreferencesDialog dialog(*m_session, this);
    dialog.exec();
}

void MainWindow::about() {
    QMessageBox::about(this, localized("About Sweeply"),
                       QString::fromStdString(localizedFormat(
                           "<h3>Sweeply %@</h3><p>Finds the files on a Mac OS X system that take space without serving "
                           "anybody, and removes the ones you leave checked.</p><p>Updates come with your system's "
                           "packages.</p>",
                           {SWEEPLY_VERSION})));
}

void MainWindow::closeEvent(QCloseEvent* event) {
    QSettings settings;
    settings.setValue(QLatin1String(kGeometry), saveGeometry());
    if (m_session && !m_mayClose && !m_session->quitController().applicationShouldTerminate()) {
        event->ignore();
        return;
    }
    event->accept();
    QApplication::quit();
}

} // namespace sweeply
