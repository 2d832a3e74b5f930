#pragma once

#include "engine/ADScanControllerView.h"
#include "modules/ModuleServices.h"
#include "modules/uninstaller/UninstallQuestion.h"
#include "modules/uninstaller/UninstallSteps.h"

#include <atomic>
#include <string>
#include <string_view>

namespace sweeply {

class DirectoryEnumerator;

/// The base of the lists of installed extensions: each is filled as soon as it is shown, and removes only after an
/// explicit "Yes".
class ADUninstallControllerView : public ADScanControllerView {
  public:
    struct Parts {
        UninstallSteps& steps;
        UninstallQuestion& question;
    };

    /// `rootName` is a key of the localised texts.
    ADUninstallControllerView(const ModuleServices& services, ScanCoordinator& coordinator, Parts parts,
                              const char* rootName);

    [[nodiscard]] bool removesWhatCannotBeMadeAgain() const override { return true; }
    [[nodiscard]] ChangeRequest changeFor(const Node& node) const override {
        return m_parts.steps.requestFor(node, *this);
    }
    [[nodiscard]] WorkMode workMode() const override { return WorkMode::Uninstaller; }
    /// Has a scan come to its end?
    [[nodiscard]] bool isScanned() const { return m_scanned; }
    /// Scans on a thread of its own. Main thread.
    void scanOnceInThread() { startScan(); }
    /// Is the item at `path` of the kind that this module uninstalls?
    [[nodiscard]] virtual bool isExtensionAtPath(const std::string& path) const = 0;
    /// Adds one extension that the person named, wherever it lies.
    void analyzeFile(const std::string& path) override;
    /// Asks, and removes what is checked. Main thread.
    void startUninstallation() override;

  protected:
    void scanThread() override;
    /// Finds all there are; the list is empty when it begins.
    virtual void rescan() = 0;
    /// Adds one, which is there and of the right kind.
    virtual void addRecord(const std::string& path) = 0;
    void prepareForClean() override;
    ChangeOutcome cleanThisNode(Node& node) override { return m_parts.steps.removeItem(node, *this); }

    /// Adds every item of that extension below a folder, none of which is entered. Nothing where there is no folder.
    void scanFolder(const std::string& folder, std::string_view extension);
    [[nodiscard]] UninstallSteps& steps() const { return m_parts.steps; }
    [[nodiscard]] const ModuleServices& module() const { return m_module; }

  private:
    ModuleServices m_module;
    const Parts m_parts;
    std::atomic<bool> m_scanned{false};
};

} // namespace sweeply
