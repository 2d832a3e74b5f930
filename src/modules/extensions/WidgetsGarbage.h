#pragma once

#include "engine/ADScanControllerView.h"
#include "modules/ModuleServices.h"
#include "modules/uninstaller/UninstallSteps.h"

#include <string>
#include <vector>

namespace sweeply {

class LaunchItems;
class LoginItems;
class TermAutomaton;

/// What widgets and programs that are gone left behind: widgets' preferences, login items, launch items.
class WidgetsGarbage final : public ADScanControllerView {
  public:
    struct Parts {
        const LoginItems& loginItems;
        const LaunchItems& launchItems;
        UninstallSteps& steps;
    };

    /// All outlive this.
    WidgetsGarbage(const ModuleServices& services, ScanCoordinator& coordinator, Parts parts);
    ~WidgetsGarbage() override { stopAndJoin(); }

    [[nodiscard]] bool removesWhatCannotBeMadeAgain() const override { return true; }
    [[nodiscard]] ChangeRequest changeFor(const Node& node) const override {
        return m_parts.steps.requestFor(node, *this);
    }
    [[nodiscard]] std::string_view moduleName() const override { return "widgets"; }
    [[nodiscard]] std::string defaultsName() const override { return "CleanWidgets"; }
    [[nodiscard]] bool needToSetUserDefalts() const override { return true; }

  protected:
    void scanThread() override;
    ChangeOutcome cleanThisNode(Node& node) override { return m_parts.steps.removeItem(node, *this); }

  private:
    [[nodiscard]] std::string className() const override { return "WidgetsGarbage"; }
    void rescan();
    /// Widgets' preferences and login items, which each user has.
    void scanForUsersOwn();
    /// The identifiers of all widgets that are installed.
    [[nodiscard]] std::vector<std::string> scanForWidgetsPlists();
    [[nodiscard]] std::vector<std::string> findPlistsIn(const std::string& folder);
    void findUnnecessaryWidgetsPrefferences(const TermAutomaton& installed);
    void addWidgetGarbageRecordWithPath(const std::string& path);
    void scanForLoginItems();
    void scanForLaunchDeamons();
    /// `program` is what it would start.
    void addStartupItem(const std::string& path, const MeasuredItem& item, std::int8_t type,
                        const std::string& program);
    /// Puts the category under the root first where it is not there yet.
    void addTo(const Node::Pointer& category, Node::Pointer child);
    /// Such things are listed unchecked: they may be there again tomorrow.
    [[nodiscard]] bool isOnAbsentVolume(const std::string& path) const;
    void itemIsDone();

    ModuleServices m_garbage;
    const Parts m_parts;
    const Node::Pointer m_widgetsNode;
    const Node::Pointer m_startupItemsNode;
};

} // namespace sweeply
