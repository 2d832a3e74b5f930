#pragma once

#include "ui/Pictures.h"
#include "ui/ResultPage.h"

#include <QSplitter>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

class QStackedWidget;

namespace sweeply {

class Alerts;
class ApplicationsPage;
class HistoryPage;
class InformationPanel;
class ModuleList;
class OverviewPage;
class TargetSession;
class UnreadRow;

/// The window's middle while a Mac is open: the list of modules, and the page of the one that is selected. Main thread.
class WorkArea final : public QSplitter {
  public:
    /// What a page asks of the window.
    struct Window {
        SystemLog& log;
        Alerts& alerts;
        /// As in the pages' services.
        std::function<std::optional<std::string>(const QString&)> targetPath;
        std::function<void(const QString&)> say;
    };

    /// `session`, `information` and what `window` refers to outlive this. Shows the overview.
    WorkArea(TargetSession& session, InformationPanel& information, Window window);
    ~WorkArea() override;

    /// Selects the module with that view code and shows its page; nothing when there is none.
    void select(std::uint8_t viewCode);
    [[nodiscard]] bool isShowingOverview() const;
    /// May files be added where the person is?
    [[nodiscard]] bool takesFiles() const { return pageThatTakesFiles() != nullptr; }
    /// Has the person choose files there.
    void addFiles();
    /// Takes over what has changed in the list, and on the overview while that is shown.
    void refresh();

  private:
    [[nodiscard]] QWidget* pageFor(const ScanObject& row);
    [[nodiscard]] ResultPage* makePage(ADScanControllerView& module, const QString& title, const QString& hint);
    [[nodiscard]] ResultPage* pageThatTakesFiles() const;
    [[nodiscard]] std::vector<std::string> chooseFiles(const QString& title);
    void addPage(std::uint8_t viewCode, QWidget* page);
    void showPage(std::uint8_t viewCode);
    void showRemoval();
    void showInformation(ADScanControllerView& module, const Node::Pointer& node);

    TargetSession& m_session;
    InformationPanel& m_information;
    Pictures m_pictures;
    const ResultPage::Services m_services;
    QStackedWidget* m_pages;
    OverviewPage* m_overview;
    HistoryPage* m_history;
    UnreadRow* m_unread;
    std::map<std::uint8_t, QWidget*> m_pageOfView;
    std::vector<ResultPage*> m_resultPages;
    ApplicationsPage* m_applications = nullptr;
    std::string m_folderToChooseIn = "/";
    ModuleList* m_modules = nullptr;
    NotificationCenter::Subscription m_removalEnded;
};

} // namespace sweeply
