#pragma once

#include "ui/TargetSession.h"

#include <QDialog>

class QListWidget;
class QTabWidget;

namespace sweeply {

/// Languages to keep, which modules take part, applications to leave alone, watchers and erasing. What is changed
/// counts at once. Main thread.
class PreferencesDialog final : public QDialog {
  public:
    /// `session` outlives this.
    PreferencesDialog(TargetSession& session, QWidget* parent);

  private:
    [[nodiscard]] QWidget* languagesPage();
    [[nodiscard]] QWidget* modulesPage();
    [[nodiscard]] QWidget* ignoredPage();
    [[nodiscard]] QWidget* advancedPage();
    void fillIgnored();

    TargetSession& m_session;
    QListWidget* m_ignored = nullptr;
};

} // namespace sweeply
