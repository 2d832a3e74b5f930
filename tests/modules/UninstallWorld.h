#pragma once

#include "appcore/ADTaskRunner.h"
#include "appcore/LoginItems.h"
#include "appcore/ResourceFinder.h"
#include "appcore/processes/LaunchItems.h"
#include "appcore/receipts/PackageManager.h"
#include "formats/BillOfMaterials.h"
#include "modules/ModuleWorld.h"
#include "modules/extensions/ExtensionsScanController.h"
#include "modules/uninstaller/Ownership.h"
#include "modules/uninstaller/UninstallQuestion.h"
#include "modules/uninstaller/UninstallSteps.h"
#include "platform/Workspace.h"

#include <utility>

namespace sweeply {

/// What uninstallers need besides.
class UninstallWorldTest : public ModuleTest {
  protected:
    explicit UninstallWorldTest(const char* version = "10.6.8") : ModuleTest(version) {
        m_world.privileged.authorize();
        m_world.alerts.boxAnswer = false; // what goes is gone
    }
    ~UninstallWorldTest() override { m_world.end(); }

    /// Once the applications there are by then are known.
    void drop(ADScanController& module, const std::vector<std::string>& paths) {
        knowApplications();
        ModuleTest::drop(module, paths);
    }
    void knowApplications() {
        if (!std::exchange(m_knowsApplications, true))
            findApplications();
    }
    /// Asks first, and the scripted answers say whether anything happens.
    void uninstall() {
        m_world.coordinator->setSelectedRow(0);
        m_world.coordinator->uninstall();
        m_world.waitUntil([this] { return !m_world.coordinator->isRemoving(); });
    }
    /// In the system's database, of a package that installed these paths below `prefix`.
    void addReceipt(const std::string& identifier, const std::vector<std::string>& paths,
                    const std::string& prefix = "/") {
        std::vector<bom::Entry> entries;
        for (const auto& path : paths) {
            bom::Entry entry;
            entry.path = path;
            entries.push_back(entry);
        }
        const std::string receipt = "/private/var/db/receipts/" + identifier;
        write(receipt + ".bom", bom::write(entries));
        write(receipt + ".plist", plist::writeBinary(plist::Dictionary(
                                      {{"PackageIdentifier", identifier}, {"InstallPrefixPath", prefix}})));
        if (!m_world.exists("/var"))
            m_world.target.makeLink("/var", "private/var");
    }
    /// Hands the row of all extensions to the coordinator.
    ExtensionsScanController& addExtensions() {
        const ExtensionsScanController::Parts parts{WidgetsGarbage::Parts{m_loginItems, m_launchItems, m_steps},
                                                    {m_steps, m_question},
                                                    m_finder,
                                                    m_ownership,
                                                    m_workspace};
        return m_world.add(6, std::make_unique<ExtensionsScanController>(services(), *m_world.coordinator, parts));
    }
    static plist::Value loginItem(const std::string& path) {
        return plist::Dictionary(std::vector<plist::Dictionary::Member>{{"Path", path}, {"Hide", true}});
    }
    /// A property list of these members.
    void writeList(const std::string& path, std::vector<plist::Dictionary::Member> members) {
        write(path, plist::writeXml(plist::Dictionary(std::move(members))));
    }

    bool m_knowsApplications = false;
    LoginItems& m_loginItems = m_world.loginItems;
    LaunchItems& m_launchItems = m_world.launchItems;
    PackageManager& m_packages = m_world.packages;
    InstalledApplications m_installed{m_world.files(), m_ignoreList.applications, m_packages};
    SearchedFolders m_searched{m_world.folders, m_ignoreList.applications};
    ResourceFinder m_finder{{m_world.files(), m_world.folders, m_sizes, m_ignoreList.applications, m_searched,
                             m_loginItems, m_launchItems, m_packages, m_world.log},
                            m_world.treeLock};
    Ownership m_ownership{{m_world.files(), m_world.folders, m_searched, m_launchItems, m_installed},
                          *m_world.defaults};
    ProcessControl m_processes{
        {m_world.files(), m_ignoreList.tools, m_world.privileged, m_world.alerts, m_world.loop, m_world.log},
        {std::chrono::seconds(1), std::chrono::milliseconds(5000)}};
    Workspace m_workspace{m_world.files(), "/Applications"};
    UninstallSteps m_steps{{m_world.files(), m_processes, m_world.gate, m_world.alerts, m_world.loop, m_version},
                           m_world.treeLock};
    UninstallQuestion m_question{{m_world.alerts, *m_world.runs, *m_world.defaults, m_steps}};
};

} // namespace sweeply
