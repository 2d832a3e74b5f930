#pragma once

#include "engine/MainView.h"

namespace sweeply {

/// The mode of the main window and its three buttons, told to the window whenever they change. Main thread.
class WindowState final {
  public:
    /// Null for no window; not owned.
    void setView(MainView* view) { m_view = view ? view : &m_noView; }
    [[nodiscard]] MainView& view() const { return *m_view; }
    [[nodiscard]] WorkMode workMode() const { return m_workMode; }
    [[nodiscard]] const ActionButtons& buttons() const { return m_buttons; }

    void showMode(WorkMode mode);
    void showScanning(bool canPause);
    void showPaused(bool paused);
    void showRemoving();
    void showStopping();
    /// Nothing runs any more.
    void showIdle(bool hasSomethingToRemove);
    /// Offers a scan, whatever the buttons offered before.
    void offerScan(bool hasSomethingToRemove);

  private:
    void show() { m_view->actionButtonsChanged(m_buttons); }

    MainView m_noView;
    MainView* m_view = &m_noView;
    ActionButtons m_buttons;
    WorkMode m_workMode = WorkMode::Cleaner;
};

} // namespace sweeply
