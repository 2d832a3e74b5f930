#pragma once

#include "appcore/ResourceFinder.h"
#include "engine/ADScanControllerView.h"
#include "modules/ModuleServices.h"
#include "modules/uninstaller/Ownership.h"
#include "modules/uninstaller/UninstallQuestion.h"
#include "modules/uninstaller/UninstallSteps.h"

#include <string>
#include <vector>

namespace sweeply {

class PackageManager;

/// Removes applications and installer packages that are handed to it, each with everything that belongs to it.
class ApplicationUninstaller final : public ADScanControllerView {
  public:
    struct Parts {
        ResourceFinder& finder;
        PackageManager& packages;
        UninstallSteps& steps;
        UninstallQuestion& question;
        const Ownership& ownership;
    };

    /// All outlive this.
    ApplicationUninstaller(const ModuleServices& services, ScanCoordinator& coordinator, Parts parts);
    ~ApplicationUninstaller() override { stopAndJoin(); }

    [[nodiscard]] bool removesWhatCannotBeMadeAgain() const override { return true; }
    [[nodiscard]] ChangeRequest changeFor(const Node& node) const override {
        return m_parts.steps.requestFor(node, *this);
    }
    [[nodiscard]] std::string_view moduleName() const override { return "uninstaller"; }
    [[nodiscard]] bool shouldRespondToDragEvents() const override { return true; }
    [[nodiscard]] WorkMode workMode() const override { return WorkMode::Uninstaller; }
    /// Adds an application, a package, or all of them below a folder.
    void analyzeFile(const std::string& path) override;
    /// There is nothing to scan.
    void startScan() override { finishScan(); }
    /// Asks, and removes what is checked. Main thread.
    void startUninstallation() override;
    /// Shows the area to drop applications on, and forgets those that were dropped.
    void showDropImageView() override;
    /// Asks before a system application or the program itself is removed, and has what runs quit.
    bool isRootNodeCleanable(Node& node) override;
    /// Looks again who claims what is listed: what goes and what stays of the list may have changed, and so may the
    /// preference. Only what is judged otherwise than before changes its check mark.
    void reconsiderClaims();

  protected:
    void analyzeFiles(const std::vector<std::string>& paths) override;
    ChangeOutcome cleanThisNode(Node& node) override { return m_parts.steps.removeItem(node, *this); }
    void checkMarksChanged() override { reconsiderClaims(); }

  private:
    [[nodiscard]] std::string className() const override { return "ApplicationUninstaller"; }
    void addApplicationAtPath(const std::string& path);
    void addPackageAtPath(const std::string& path);
    void addEntry(const Node::Pointer& entry);
    /// The listed entry at `path`, as what others may claim things of.
    [[nodiscard]] Claims::Subject subjectAt(const std::string& path) const;
    void reconsiderClaimsOn(Node& entry);
    [[nodiscard]] bool isListed(const std::string& path) const;
    bool confirmsOwnRemoval();

    ModuleServices m_uninstaller;
    const Parts m_parts;
};

} // namespace sweeply
