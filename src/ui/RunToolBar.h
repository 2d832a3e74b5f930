#pragma once

#include "engine/ActionButtons.h"

#include <QList>
#include <QToolBar>
#include <functional>

namespace sweeply {

class Application;

/// The buttons that run the program, as its coordinator wants them shown, and the administrator's lock. Main thread.
class RunToolBar final : public QToolBar {
  public:
    /// `acted` is called after each button's action.
    explicit RunToolBar(std::function<void()> acted);

    /// What the buttons run from now on, which outlives this or is replaced before it goes. Hidden while there is none.
    void setApplication(Application* application);
    void showButtons(const ActionButtons& buttons);
    /// The same actions, for a menu.
    [[nodiscard]] QList<QAction*> runActions() const { return {m_scan, m_pause, m_remove, m_lock}; }

  private:
    void run(Action action);
    void refreshLock();

    const std::function<void()> m_acted;
    Application* m_application = nullptr;
    ActionButtons m_buttons;
    QAction* m_scan;
    QAction* m_pause;
    QAction* m_remove;
    QAction* m_lock;
};

} // namespace sweeply
