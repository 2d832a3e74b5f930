#pragma once

#include "appcore/PluginCategories.h"
#include "modules/extensions/ADUninstallControllerView.h"

#include <vector>

namespace sweeply {

class LoginItems;
class Workspace;

/// What is plugged into other programs and into the system, by kind: of the machine, of the user, and what starts at
/// login.
class PluginsUninstaller final : public ADUninstallControllerView {
  public:
    /// All outlive this.
    PluginsUninstaller(const ModuleServices& services, ScanCoordinator& coordinator, Parts parts,
                       const LoginItems& loginItems, const Workspace& workspace);
    ~PluginsUninstaller() override { stopAndJoin(); }

    [[nodiscard]] std::string_view moduleName() const override { return "plugin-uninstaller"; }
    [[nodiscard]] bool isExtensionAtPath(const std::string& path) const override;

  protected:
    void rescan() override;
    void addRecord(const std::string& path) override;

  private:
    [[nodiscard]] std::string className() const override { return "PluginsUninstaller"; }
    /// The kind whose folder the path lies in; nullptr if none.
    [[nodiscard]] const PluginCategory* categoryOfPath(const std::string& path) const;
    [[nodiscard]] bool isPlugin(const PluginCategory& category, const std::string& path) const;
    void scanCategoryFolder(const PluginCategory& category, const std::string& folder);
    void addPlugin(const std::string& path, const PluginCategory& category);
    void scanForLoginItems();
    /// Hangs a child under the category's node, which is made for its first child.
    void addTo(const PluginCategory& category, Node::Pointer child);

    const LoginItems& m_loginItems;
    const Workspace& m_workspace;
    const std::vector<PluginCategory> m_categories;
};

} // namespace sweeply
