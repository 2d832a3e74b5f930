#pragma once

#include <QDockWidget>

class QAction;
class QMainWindow;

namespace sweeply {

class InformationPanel;

/// The place of the information panel in the window: beside the results where there is room, below them in a small
/// window. It takes no room while it has nothing to say, or while the person has switched it off. Main thread.
class InformationDock final : public QDockWidget {
  public:
    /// Owns `panel`. `toggle` is checkable, outlives this and is the person's switch, which is remembered.
    InformationDock(QMainWindow& window, InformationPanel* panel, QAction& toggle);

    /// Takes the place that a window of this size has for it, or the one where it was put by hand. To be called
    /// whenever the size has changed.
    void findPlace();
    /// For the next window of this size.
    void rememberPlace() const;

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    void appear();
    [[nodiscard]] QString settingsKey() const;

    QMainWindow& m_window;
    InformationPanel& m_panel;
    QAction& m_toggle;
    Qt::DockWidgetArea m_place = Qt::NoDockWidgetArea; ///< the one that the window's size last called for
};

} // namespace sweeply
