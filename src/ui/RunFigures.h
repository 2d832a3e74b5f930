#pragma once

#include <QWidget>

class QLabel;

namespace sweeply {

class Application;

/// The line at the window's foot: what was found, checked and freed, and the item at work. Main thread.
class RunFigures final : public QWidget {
  public:
    RunFigures();

    void show(Application& application);
    void clear();

  private:
    QLabel* m_figures;
    QLabel* m_currentItem;
};

} // namespace sweeply
