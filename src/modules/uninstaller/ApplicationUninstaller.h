#pragma once

#include "appcore/ResourceFinder.h"
#include "appcore/processes/ProcessControl.h"
#include "engine/ADScanControllerView.h"
#include "modules/ModuleServices.h"

#include <string>
#include <vector>

namespace sweeply {

class ADTaskRunner;
class Alerts;
class LoginItems;
class PackageManager;
class RemovalPrimitives;
class SystemVersion;

/// Removes applications and installer packages that are handed to it, each with everything that belongs to it.
class ApplicationUninstaller final : public ADScanControllerView {
  public:
    struct Parts {
        ResourceFinder& finder;
        ProcessControl& processes;
        LoginItems& loginItems;
        PackageManager& packages;
        const ADTaskRunner& tasks;
        RemovalPrimitives& removals;
        Alerts& alerts;
        const SystemVersion& version;
    };

    /// All outlive this.
    ApplicationUninstaller(const ModuleServices& services, ScanCoordinator& coordinator, Parts parts);
    ~ApplicationUninstaller() override { stopAndJoin(); }

    [[nodiscard]] bool shouldRespondToDragEvents() const override { return true; }
    [[nodiscard]] WorkMode workMode() const override { return WorkMode::Uninstaller; }
    /// Adds an application, a package, or all of them below a folder.
    void analyzeFile(const std::string& path) override;
    /// There is nothing to scan.
    void startScan() override { finishScan(); }
    void startUninstallation() override;
    /// Shows the area to drop applications on, and forgets those that were dropped.
    void showDropImageView() override;
    /// Asks before a system application or the program itself is removed, and has what runs quit.
    bool isRootNodeCleanable(Node& node) override;

  protected:
    bool cleanThisNode(Node& node) override;

  private:
    [[nodiscard]] std::string className() const override { return "ApplicationUninstaller"; }
    void addApplicationAtPath(const std::string& path);
    void addPackageAtPath(const std::string& path);
    /// The application and those nested in its bundle.
    [[nodiscard]] std::vector<std::string> pathesOfApplication(const std::string& path) const;
    [[nodiscard]] bool isListed(const std::string& path) const;
    bool asks(const std::string& title, const std::string& text, const std::string& yes);
    bool confirmsOwnRemoval();
    /// Is there anything in it that the user himself may not remove?
    [[nodiscard]] bool needsRights(const Node& application) const;
    bool keep(const std::string& path, const std::string& reason);
    /// Unloads a launch item before its file goes.
    void removeLaunchDaemon(const std::string& path);

    ModuleServices m_uninstaller;
    const Parts m_parts;
};

} // namespace sweeply
