#pragma once

#include "appcore/sizes/SizeDisplay.h"

#include <cstdint>
#include <string_view>

namespace sweeply {

class Alerts;
class DesktopNotifications;

/// What a person is asked and told around a run: the sheets that keep one from starting or stopping, and the alert and
/// the desktop notification that close it. Main thread.
class RunReports final {
  public:
    RunReports(Alerts& alerts, DesktopNotifications& notifications, SizeUnits units)
        : m_alerts(alerts), m_notifications(notifications), m_units(units) {}

    void nothingToScan();
    void systemIsClean();
    void nothingToClean();
    void nothingToUninstall();
    /// True when the person wants to stop now.
    [[nodiscard]] bool confirmsStoppingScan();

    /// `foundSize`: bytes that a removal would free.
    void scanIsFinished(std::uint64_t foundSize);
    /// Bytes freed, and whether something stayed.
    void cleanIsFinished(std::uint64_t removedSize, bool couldntRemoveSomething);
    void uninstallationIsFinished(bool couldntRemoveSomething);
    void requestUserAttention();

  private:
    void warn(std::string_view title, std::string_view text);
    [[nodiscard]] bool confirmsStop(std::string_view title, std::string_view text);
    void notify(std::string_view title, std::string_view format, std::uint64_t bytes, const char* name);
    void someFilesStayed();

    Alerts& m_alerts;
    DesktopNotifications& m_notifications;
    SizeUnits m_units;
};

} // namespace sweeply
