#pragma once

#include "ui/BackgroundJobs.h"
#include "ui/RemovalSummary.h"

#include <QDialog>

class QCheckBox;
class QLabel;
class QPushButton;

namespace sweeply {

class Application;
class SectionView;

/// Among the window's settings: are caches and logs removed without a question?
inline constexpr const char* kRemovesCachesAndLogsUnasked = "removesCachesAndLogsUnasked";

/// Shows what a removal of all that is checked would take, and lets the person go on or not. Main thread.
class RemovalSheet final : public QDialog {
  public:
    /// `application` outlives this. `isShownAgain`: what was shown before has changed meanwhile.
    RemovalSheet(Application& application, RemovalSummary summary, bool isShownAgain, QWidget* parent);

    /// After it was accepted: has the run keep what was promised, and remembers what was chosen.
    void settle();

  private:
    void showSummary();
    void findDetails();

    Application& m_application;
    RemovalSummary m_summary;
    bool m_hasDetails = false;
    QLabel* m_remarks;
    SectionView* m_list;
    QCheckBox* m_keep = nullptr;    ///< none where nothing can be kept
    QCheckBox* m_dontAsk = nullptr; ///< none but for caches and logs
    QPushButton* m_remove;
    QPushButton* m_cancel;
    BackgroundJobs m_jobs; ///< last: its job works with the rest
};

/// Asks before a removal of all that is checked, unless the person does not want that or nothing is checked. True when
/// it may begin: then it takes exactly what was shown.
[[nodiscard]] bool confirmsRemoval(Application& application, QWidget* parent);

} // namespace sweeply
