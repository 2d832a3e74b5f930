#pragma once

#include "engine/ScanController.h"
#include "ui/TargetSession.h"

#include <QMainWindow>
#include <QTimer>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class QAction;
class QStackedWidget;

namespace sweeply {

class InformationDock;
class RunFigures;
class RunToolBar;
class ManualPage;
class StartPage;
class UserMenu;
class TourBar;
class WorkArea;

/// The window: first where to choose a target, then everything about the one that was chosen. It opens and leaves
/// targets, and closes when the session lets it. Main thread.
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
    void resizeEvent(QResizeEvent* event) override;

  private:
    // As the engine's view
    void reloadModuleList() override;
    void actionButtonsChanged(const ActionButtons& buttons) override;
    void changeViewTo(std::uint8_t viewCode) override;
    void terminate() override;

    void makeMenus();
    [[nodiscard]] WindowHooks hooks();
    [[nodiscard]] QString openTargetAt(const TargetOptions& options);
    /// The same, and says what is wrong or waits for files.
    void openChosen(const TargetOptions& options);
    void changeUser(const std::string& user);
    void chooseTarget(const QString& folder);
    void chooseAnotherTarget();
    /// Says so, when anything does.
    [[nodiscard]] bool isAnythingRunning();
    void showWork();
    void leaveTarget();
    [[nodiscard]] std::optional<std::string> targetPathOf(const QString& hostPath);
    void refresh();
    void say(const QString& text);
    void showPreferences();
    void showManual();
    /// The start page or the work on the target.
    void showMac();
    void showTour();

    Desktop& m_desktop;
    const std::vector<std::string> m_arguments;
    std::vector<std::string> m_filesToOpen; ///< as soon as a target is chosen
    TargetOptions m_options;                ///< of the open target
    std::unique_ptr<TargetSession> m_session;

    QStackedWidget* m_central;
    TourBar* m_tour;
    StartPage* m_startPage;
    ManualPage* m_manual = nullptr; ///< made when it is asked for
    RunToolBar* m_toolBar;
    RunFigures* m_figures;
    QAction* m_showsInformation;
    UserMenu* m_users;
    QAction* m_addFiles = nullptr; ///< in the menu
    // Of the session; gone with it
    WorkArea* m_work = nullptr;
    InformationDock* m_dock = nullptr;
    QTimer m_refreshing;
    bool m_mayClose = false;
};

} // namespace sweeply
