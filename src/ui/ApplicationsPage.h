#pragma once

#include "platform/NotificationCenter.h"
#include "ui/ApplicationsModel.h"
#include "ui/ApplicationsQuery.h"
#include "ui/ChosenApplications.h"

#include <QTimer>
#include <QWidget>

class QLabel;
class QLineEdit;
class QPushButton;
class QSplitter;
class QToolButton;
class QTreeView;

namespace sweeply {

class Application;
class ResultPage;
class WeakMatchesBox;

/// The uninstaller's page: the target's applications, to search, sort and filter, and beside them what belongs to those
/// that are selected, in the uninstaller's own results. Looks at the applications from when it is shown first, and
/// again after each removal. Main thread.
class ApplicationsPage final : public QWidget {
  public:
    /// `application` and `pictures` outlive this; `results` are the uninstaller's, and become part of this.
    ApplicationsPage(Application& application, Pictures& pictures, ResultPage& results);
    ~ApplicationsPage() override;

    [[nodiscard]] ApplicationsModel& model() { return m_applications; }
    [[nodiscard]] QTreeView& list() const { return *m_list; }

  protected:
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

  private:
    [[nodiscard]] QWidget* makeList();
    [[nodiscard]] QWidget* makeUninstallRow();
    void addFilter(const QString& text, bool ApplicationsQuery::*condition);
    void showMatching();
    void chooseSelected();
    /// Takes over what has changed elsewhere.
    void keepUp();
    void showFigures();

    Application& m_application;
    ResultPage& m_results;
    ApplicationsModel m_applications;
    ApplicationsFilter m_shown;
    ApplicationsQuery m_query;
    ChosenApplications m_chosen;
    bool m_isListed = false;
    bool m_wasRemoving = false; ///< since the survey began
    NotificationCenter::Subscription m_runs;

    QSplitter* m_halves;
    QTreeView* m_list;
    QLineEdit* m_search;
    QToolButton* m_filters;
    QLabel* m_figures;
    WeakMatchesBox* m_weakMatches;
    QPushButton* m_uninstall;
    QTimer m_keepingUp;
    ApplicationSurvey m_survey; ///< last: ends before what it tells
};

} // namespace sweeply
