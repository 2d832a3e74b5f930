#include "ui/MainWindow.h"

#include "app/ModuleCatalog.h"
#include "platform/Localization.h"
#include "ui/DraggedFilesDialog.h"
#include "ui/Drawings.h"
#include "ui/InformationDock.h"
#include "ui/InformationPanel.h"
#include "ui/ManualPage.h"
#include "ui/NewsLine.h"
#include "ui/PageCodes.h"
#include "ui/PreferencesDialog.h"
#include "ui/RunFigures.h"
#include "ui/RunToolBar.h"
#include "ui/StartPage.h"
#include "ui/TargetVolume.h"
#include "ui/Text.h"
#include "ui/UserMenu.h"
#include "ui/TourBar.h"
#include "ui/WorkArea.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QFileInfo>
#include <QMenuBar>
#include <QMessageBox>
#include <QSettings>
#include <QStackedWidget>
#include <QStatusBar>
#include <QVBoxLayout>
#include <sstream>
#include <utility>

namespace sweeply {

namespace {

constexpr int kRefreshInterval = 100; // milliseconds
constexpr int kMessageTime = 8000;    // milliseconds
constexpr const char* kGeometry = "geometry";

void showAbout(QWidget* parent) {
    QMessageBox::about(parent, localized("About Sweeply"),
                       QString::fromStdString(localizedFormat(
                           "<h3>Sweeply %@</h3><p>Finds the files on a Mac OS X system that take space without serving "
                           "anybody, and removes the ones you leave checked.</p><p>Updates come with your system's "
                           "packages.</p>",
                           {SWEEPLY_VERSION})));
}

} // namespace

MainWindow::MainWindow(Desktop& desktop, std::vector<std::string> arguments)
    : m_desktop(desktop), m_arguments(std::move(arguments)), m_central(new QStackedWidget), m_tour(new TourBar),
      m_startPage(new StartPage({[this](const QString& folder) { chooseTarget(folder); },
                                 [this](const QString& folder) {
                                     chooseTarget(folder);
                                     if (m_session)
                                         m_tour->start();
                                 }})),
      m_toolBar(new RunToolBar([this] { refresh(); })), m_figures(new RunFigures),
      m_showsInformation(new QAction(localized("&Information"), this)),
      m_users(new UserMenu(this, [this](const std::string& user) { changeUser(user); })) {
    setWindowTitle(QStringLiteral("Sweeply"));
    setWindowIcon(drawings::application());
    m_desktop.alerts.setParent(this);
    m_central->addWidget(m_startPage);
    auto* middle = new QWidget;
    auto* column = new QVBoxLayout(middle);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(m_tour);
    column->addWidget(m_central, 1);
    setCentralWidget(middle);
    addToolBar(m_toolBar);
    makeMenus();
    statusBar()->addWidget(m_figures, 1);
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

void MainWindow::makeMenus() {
    auto* file = menuBar()->addMenu(localized("&File"));
    m_addFiles = file->addAction(localized("&Add Files…"), QKeySequence::Open, this, [this] {
        if (m_work)
            m_work->addFiles();
    });
    m_addFiles->setEnabled(false);
    file->addAction(localized("Choose Another Mac…"), this, [this] { chooseAnotherTarget(); });
    file->addAction(localized("&Preferences…"), QKeySequence(QStringLiteral("Ctrl+,")), this,
                    [this] { showPreferences(); });
    file->addSeparator();
    file->addAction(localized("&Quit"), QKeySequence::Quit, this, [this] { close(); });
    auto* run = menuBar()->addMenu(localized("&Run"));
    run->addActions(m_toolBar->runActions());
    run->addSeparator();
    run->addAction(localized("&History"), QKeySequence(QStringLiteral("Ctrl+H")), this,
                   [this] { changeViewTo(kHistoryView); });
    run->addAction(localized("&Copy How Much Was Freed"), this, [this] {
        if (m_session)
            QApplication::clipboard()->setText(QString::fromStdString(localizedFormat(
                "Sweeply has cleaned %@ from your Mac!", {m_session->application().statistics().totalSizeSaved()})));
    });
    m_showsInformation->setCheckable(true);
    m_showsInformation->setShortcut(QKeySequence(QStringLiteral("Ctrl+I")));
    menuBar()->addMenu(localized("&View"))->addAction(m_showsInformation);
    menuBar()->addMenu(m_users);
    auto* help = menuBar()->addMenu(localized("&Help"));
    help->addAction(localized("&Manual"), QKeySequence::HelpContents, this, [this] { showManual(); });
    help->addAction(localized("&About Sweeply"), this, [this] { showAbout(this); });
}

// The target

WindowHooks MainWindow::hooks() {
    return {[this] { changeViewTo(kUninstallerView); },
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
            [this] { terminate(); },
            [this] { return m_work && m_work->isShowingOverview(); },
            [this](const std::string& path) { return targetPathOf(QString::fromStdString(path)); }};
}

QString MainWindow::openTargetAt(const TargetOptions& options) {
    std::ostringstream output;
    auto target = openTarget(options, m_desktop.log, output);
    if (!target)
        return QString::fromStdString(target.error().message());
    if (!*target)
        return QString::fromStdString(output.str());
    const auto users = usersOf(*(*target)->files).value_or(std::vector<TargetUser>());
    leaveTarget();
    m_options = options;
    m_session = std::make_unique<TargetSession>(**std::move(target), m_desktop, m_arguments, hooks());
    auto& application = m_session->application();
    application.scanController().setMainView(this);
    showWork();
    m_toolBar->setApplication(&application);
    m_refreshing.start(kRefreshInterval);
    m_startPage->showProblem({});
    const auto root = QString::fromStdString(application.target().files->rootPath());
    StartPage::remember(root);
    m_users->showUsers(users, application.target().folders.userName);
    setWindowTitle(QStringLiteral("Sweeply – ") + nameOfTarget(volumeOf(root), root));
    return {};
}

bool MainWindow::open(const TargetOptions& options, const std::vector<std::string>& files) {
    const auto chosen = withChosenUser(options, this);
    const auto problem = chosen ? openTargetAt(*chosen) : QString();
    if (!m_session) {
        // On a machine that is no Mac this is how most people start; nothing is wrong then.
        m_startPage->showProblem(options.root ? problem : QString());
        m_filesToOpen = files;
        return true;
    }
    return m_session->takeRequests(files);
}

void MainWindow::chooseTarget(const QString& folder) {
    if (const auto options = withChosenUser({utf8(QFileInfo(folder).canonicalFilePath()), {}, {}, {}}, this))
        openChosen(*options);
}

void MainWindow::changeUser(const std::string& user) {
    if (!isAnythingRunning())
        openChosen(forUser(m_options, user));
}

void MainWindow::openChosen(const TargetOptions& options) {
    const auto problem = openTargetAt(options);
    m_startPage->showProblem(problem);
    if (!problem.isEmpty())
        return say(problem);
    // Another Sweeply has the files then; this one goes on with its own Mac.
    if (!m_session->takeRequests(std::exchange(m_filesToOpen, {})))
        say(localized("Sweeply runs already; files that you open go there."));
}

bool MainWindow::isAnythingRunning() {
    if (!m_session)
        return false;
    const auto& controller = m_session->application().scanController();
    const bool isRunning = controller.ifScanRunning() || controller.ifCleanRunning();
    if (isRunning)
        say(localized("Stop what is running first."));
    return isRunning;
}

void MainWindow::chooseAnotherTarget() {
    if (isAnythingRunning())
        return;
    leaveTarget();
    m_central->setCurrentWidget(m_startPage);
}

void MainWindow::showWork() {
    auto& application = m_session->application();
    auto* information = new InformationPanel(*application.target().files, application.treeLock(), application.units());
    m_dock = new InformationDock(*this, information, *m_showsInformation);
    m_work = new WorkArea(*m_session, *information,
                          {m_desktop.log, m_desktop.alerts, [this](const QString& path) { return targetPathOf(path); },
                           [this](const QString& text) { say(text); }});
    m_central->addWidget(m_work);
    m_central->setCurrentWidget(m_work);
    m_dock->findPlace();
}

void MainWindow::leaveTarget() {
    if (!m_session)
        return;
    m_refreshing.stop();
    m_dock->rememberPlace();
    m_toolBar->setApplication(nullptr);
    delete std::exchange(m_work, nullptr);
    delete std::exchange(m_dock, nullptr);
    m_session->application().scanController().setMainView(nullptr);
    m_desktop.mainThread.close();
    m_session.reset();
    m_desktop.mainThread.open();
    m_figures->clear();
    m_users->hideUsers();
    m_tour->hide();
    setWindowTitle(QStringLiteral("Sweeply"));
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
    say(QString::fromStdString(
        localizedFormat("%@ does not lie on the Mac in %@", {utf8(shown(utf8(hostPath))), utf8(root)})));
    return std::nullopt;
}

// The engine's view

void MainWindow::reloadModuleList() {
    if (m_work)
        m_work->refresh();
}

void MainWindow::actionButtonsChanged(const ActionButtons& buttons) { m_toolBar->showButtons(buttons); }

void MainWindow::changeViewTo(std::uint8_t viewCode) {
    if (!m_work)
        return;
    showMac();
    m_work->select(viewCode);
}

void MainWindow::terminate() {
    m_mayClose = true;
    close();
}

void MainWindow::refresh() {
    m_addFiles->setEnabled(m_work && m_work->takesFiles());
    if (!m_work)
        return;
    m_work->refresh();
    m_figures->show(m_session->application());
    showTour();
}

void MainWindow::showTour() {
    auto& application = m_session->application();
    const auto& controller = application.scanController();
    m_tour->see({controller.isScanning() || controller.isRemoving(), controller.totalSize(), controller.foundSize(),
                 application.statistics().currentRemovedAmountOfSpace(), !m_work->isShowingOverview()});
}

void MainWindow::showManual() {
    if (!m_manual) {
        m_manual = new ManualPage([this] { showMac(); });
        m_central->addWidget(m_manual);
    }
    m_central->setCurrentWidget(m_manual);
    m_manual->setFocus();
}

void MainWindow::showMac() { m_central->setCurrentWidget(m_work ? static_cast<QWidget*>(m_work) : m_startPage); }

void MainWindow::say(const QString& text) { statusBar()->showMessage(text, kMessageTime); }

void MainWindow::showPreferences() {
    if (!m_session)
        return;
    PreferencesDialog dialog(*m_session, this);
    dialog.exec();
}

void MainWindow::resizeEvent(QResizeEvent* event) {
    QMainWindow::resizeEvent(event);
    if (m_dock)
        m_dock->findPlace();
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
