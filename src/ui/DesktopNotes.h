#pragma once

#include "platform/Alerts.h"

namespace sweeply {

/// Notes by the desktop's own service on the session bus; without one nothing is shown. Main thread.
class DesktopNotes final : public DesktopNotifications {
  public:
    void show(const DesktopNotification& notification) override;
    [[nodiscard]] bool isApplicationActive() const override;
    void requestUserAttention() override;
};

} // namespace sweeply
