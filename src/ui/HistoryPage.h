#pragma once

#include "ui/BackgroundJobs.h"
#include "ui/RunReport.h"

#include <QWidget>

class QLabel;
class QPushButton;
class QTreeWidget;

namespace sweeply {

class Alerts;
class Application;
class SectionView;

/// What the program did on this Mac: its runs, what became of each item, and the way back. After a removal it shows how
/// that went. Main thread; records are read, and items put back and freed, on threads of their own.
class HistoryPage final : public QWidget {
  public:
    /// Both outlive this.
    HistoryPage(Application& application, Alerts& alerts);

    /// Reads the records anew and shows the newest run.
    void showNewest();
    /// Shows how the removal that just ended went: from its record, or, where it could have none, from the outcomes.
    void showLastRemoval();

  private:
    using IsWanted = std::function<bool(const RunRow&)>;
    /// Fills the list again, and shows the first run that is wanted; where none is, what is shown of one stays.
    void readRuns(IsWanted isWanted);
    void showRuns(const std::vector<RunRow>& rows, const IsWanted& isWanted);
    void readReport(const std::string& run);
    void show(RunReport report);
    void showButtons();
    /// The kept items that are selected, or all that the run shown keeps.
    [[nodiscard]] std::vector<KeptEntry> chosen() const;
    void putBack();
    void freeNow();
    /// Does `change` beside which nothing else may run, and shows what it gives.
    void doAlone(const QString& activity, std::function<RunReport(const std::stop_token&)> change);

    Application& m_application;
    Alerts& m_alerts;
    RunReport m_report;
    bool m_isChanging = false;
    QTreeWidget* m_runs;
    QLabel* m_title;
    QLabel* m_summary;
    SectionView* m_items;
    QPushButton* m_putBack;
    QPushButton* m_freeNow;
    BackgroundJobs m_readingRuns; ///< last: their jobs work with the rest
    BackgroundJobs m_readingReport;
};

} // namespace sweeply
