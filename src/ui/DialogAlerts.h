#pragma once

#include "platform/Alerts.h"

#include <QPointer>
#include <QWidget>

namespace sweeply {

/// Alerts as dialogs of the main window. Main thread.
class DialogAlerts final : public Alerts {
  public:
    AlertAnswer runAlert(const Alert& alert) override;
    /// Whose dialogs they are; without one they stand alone.
    void setParent(QWidget* parent) { m_parent = parent; }

  private:
    QPointer<QWidget> m_parent;
};

} // namespace sweeply
