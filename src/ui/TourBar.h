#pragma once

#include "ui/TourSteps.h"

#include <QFrame>

class QLabel;
class QPushButton;

namespace sweeply {

/// The guided tour as a bar above everything else, which can be closed at any time. Hidden at first. Main thread.
class TourBar final : public QFrame {
  public:
    TourBar();

    void start();
    /// Takes over what the person has done.
    void see(const TourSteps::Seen& seen);

  private:
    void showStep();

    TourSteps m_steps;
    QLabel* m_text;
    QPushButton* m_next;
};

} // namespace sweeply
