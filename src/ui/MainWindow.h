#pragma once

#include "engine/ScanController.h"
#include "ui/Pictures.h"
#include "ui/TargetSession.h"

#include <QMainWindow>
#include <QTimer>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class QAction;
class QDockWidget;
class QLabel;
class QStackedWidget;
class QToolButton;

namespace sweeply {

class InformationPanel;
class ModuleList;
class OverviewPage;
class ResultPage;
class StartPage;

/// The window: first where to choose a target, then everything about the one that was chosen. Main thread.
class MainWindow final : public QMainWindow, private MainView {
  public:
    /// `desktop` outlives this. `arguments` are the process's own.
    MainWindow(Desktop& desktop, std::vector<std::string> arguments);
    ~MainWindow() override;

    /// Opens the target that the command line names, or shows where to choose one. False when another Sweeply took the
    /// files over and this one should end.
    bool open(const TargetOptions& options, const std::vector<std::string>& files);
    [[nodiscard]] TargetSession* session() { return m_session.get(); }
    void showView(std::uint8_t viewCode) { changeViewTo(viewCode); }

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    void reloadModuleList() override;
    void actionButtonsChanged(const ActionButtons& buttons) override;
    void changeViewTo(std::uint8_t viewCode) override;
    void terminate() override;

    void makeActions();
    void makeMenus();
    [[nodiscard]] WindowHooks hooks();
    [[nodiscard]] QString openTargetAt(const TargetOptions& options);
    void chooseTarget(const QString& folder);
    void leaveTarget();
    void makePages();
    [[nodiscard]] QWidget* rebuildRow();
    [[nodiscard]] QWidget* extensionsPage();
    ResultPage* makePage(ADScanControllerView& module, const QString& title, const QString& hint);
    void showPage(std::uint8_t viewCode);
    void showInformation(ADScanControllerView& module, const Node::Pointer& node);
    [[nodiscard]] std::optional<std::string> targetPathOf(const QString& hostPath);
    void run(Action action);
    void refresh();
    void refreshLock();
    void showPreferences();
    void about();

    Desktop& m_desktop;
    const std::vector<std::string> m_arguments;
    std::vector<std::string> m_filesToOpen; ///< as soon as a target is chosen
    std::unique_ptr<TargetSession> m_session;
    std::unique_ptr<Pictures> m_pictures;

    QStackedWidget* m_central;
    StartPage* m_startPage;
    QToolBar* m_toolBar;
    QAction* m_scan;
    QAction* m_pause;
    QAction* m_remove;
    QAction* m_lock;
    QLabel* m_figures;
    QLabel* m_currentItem;
    ActionButtons m_buttons;

    // Of the session; gone with it
    QWidget* m_workPage = nullptr;
    ModuleList* m_modules = nullptr;
    QStackedWidget* m_pages = nullptr;
    OverviewPage* m_overview = nullptr;
    QDockWidget* m_dock = nullptr;
    InformationPanel* m_information = nullptr;
    std::map<std::uint8_t, QWidget*> m_pageOfView;
    std::vector<ResultPage*> m_resultPages;
    std::uint8_t m_view = 0;
    QTimer m_refreshing;
    bool m_mayClose = false;
};

} // namespace sweeply
