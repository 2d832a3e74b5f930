#pragma once

#include "appcore/ADTaskRunner.h"
#include "appcore/FolderConstants.h"
#include "appcore/LoginItems.h"
#include "appcore/PrivilegedExecution.h"
#include "appcore/processes/LaunchItems.h"
#include "appcore/receipts/PackageManager.h"
#include "appcore/sizes/DiskSizes.h"
#include "engine/record/ChangeRuns.h"
#include "platform/Alerts.h"
#include "platform/Authorization.h"
#include "platform/NotificationCenter.h"
#include "platform/RunLoop.h"
#include "platform/ToolTable.h"
#include "platform/UserDefaults.h"

namespace helper {

/// A run that removes files of a volume, with a record in the home folder of whoever mounted it. Without rights, and
/// without keeping anything: a volume that is gone tomorrow is no place to put things back.
class VolumeRun final {
  public:
    /// `home` is a folder of `machine`; all outlive this.
    VolumeRun(sweeply::FileManager& volume, sweeply::FileManager& machine, const std::string& home,
              sweeply::SystemLog& log);

    sweeply::Result<void> begin() { return m_runs.begin("clean-volume"); }
    /// Removes an item of the volume as it is now.
    sweeply::ChangeOutcome remove(const std::string& path);
    void finish() { m_runs.finish(); }

  private:
    struct Silence final : sweeply::Alerts {
        sweeply::AlertAnswer runAlert(const sweeply::Alert& alert) override { return {alert.safeButton, false}; }
    };

    const sweeply::FolderConstants m_folders;
    const sweeply::SystemVersion m_version = *sweeply::SystemVersion::fromProductVersion("10.6");
    sweeply::SudoAuthorization m_rights{{}};
    const sweeply::ToolTable m_tools;
    sweeply::PrivilegedExecution m_privileged;
    const sweeply::DiskSizes m_sizes;
    const sweeply::ADTaskRunner m_tasks;
    sweeply::LoginItems m_loginItems;
    const sweeply::LaunchItems m_launchItems;
    Silence m_alerts;
    sweeply::RunLoop m_loop;
    sweeply::PackageManager m_packages;
    sweeply::ChangeGate m_gate;
    sweeply::UserDefaults m_defaults;
    sweeply::NotificationCenter m_notifications;
    sweeply::ChangeRuns m_runs;
};

} // namespace helper
