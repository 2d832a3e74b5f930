#pragma once

#include "platform/SessionBus.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace sweeply {

class Alerts;
class SystemLog;
class SystemVersion;
class UserDefaults;

/// Where requests from outside lead; each is called on the main thread.
struct RequestDestinations {
    /// Shows the application uninstaller and hands it these paths.
    std::function<void(const std::vector<std::string>&)> uninstall;
    /// Adds to the list of dropped files.
    std::function<void(const std::string&)> addFileToList;
    /// Shows that list; it calls finishProcessingDraggedFiles() when it goes away.
    std::function<void()> showFileList;
    std::function<void()> quit;
};

/// Files that the system asks the program to open, and requests to uninstall from its own watchers. Main thread.
class SpecialCommands final {
  public:
    /// All but `destinations` outlive this.
    SpecialCommands(UserDefaults& defaults, const SystemVersion& version, Alerts& alerts, SystemLog& log,
                    RequestDestinations destinations);

    /// One file to open. The pseudo-file "uninstall" begins the special-command mode: files after it are applications
    /// to uninstall, until processSpecialCommands().
    void openFile(const std::string& path);
    /// In special-command mode: explains, unless the person did not want that any more, and hands the collected paths
    /// to the uninstaller.
    void processSpecialCommands();
    /// The system-wide notification.
    void uninstallApplications(const std::optional<UninstallNotification>& notification);
    void finishProcessingDraggedFiles() { m_processingDroppedFiles = false; }

    [[nodiscard]] bool processingSpecialCommandFiles() const { return m_processingSpecialCommandFiles; }

  private:
    /// False when the person chose to quit.
    bool explain();

    UserDefaults& m_defaults;
    const SystemVersion& m_version;
    Alerts& m_alerts;
    SystemLog& m_log;
    const RequestDestinations m_destinations;
    bool m_processingSpecialCommandFiles = false;
    bool m_processingDroppedFiles = false;
    std::vector<std::string> m_specialCommandFiles;
};

} // namespace sweeply
