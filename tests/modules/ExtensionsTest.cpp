#include "modules/extensions/ExtensionsScanController.h"

#include "modules/UninstallWorld.h"

#include <gmock/gmock.h>

namespace sweeply {
namespace {

using namespace testing;

class ExtensionsTest : public UninstallWorldTest {
  protected:
    ExtensionsTest() { m_module = &addExtensions(); }
    ~ExtensionsTest() override { m_world.end(); }

    void select(std::string_view tab) {
        knowApplications();
        m_module->didSelectTabViewItem(tab);
        m_world.waitUntil([this] { return !m_world.coordinator->isScanning(); });
    }
    std::string listed() { return textOf(*m_module->shownController().rootNode()); }
    void writeBundle(const std::string& path) { m_world.target.makeBundle(path, {{"CFBundlePackageType", "BNDL"}}); }

    ExtensionsScanController* m_module = nullptr;
};

TEST_F(ExtensionsTest, TabsSwitchTheProgramAndScanOnce) {
    writeAll({"/Users/sam/Library/Widgets/deep/One.wdgt/inner.wdgt/x", "/Library/Widgets/System.wdgt/x",
              "/Users/sam/Library/Preferences/widget-gone.plist"});
    m_world.scan();
    EXPECT_EQ(m_module->filesFoundForRemove(), 1U);
    select(ExtensionsScanController::kWidgetsTab);
    EXPECT_EQ(listed(), "[x] One 4000\n");
    EXPECT_EQ(m_world.coordinator->workMode(), WorkMode::Uninstaller);
    EXPECT_EQ(m_module->filesFoundForRemove(), 0U);
    EXPECT_EQ(m_module->totalSize(), 4000U);
    write("/Users/sam/Library/Widgets/Two.wdgt/x");
    select(ExtensionsScanController::kPluginsTab);
    select(ExtensionsScanController::kWidgetsTab);
    EXPECT_EQ(listed(), "[x] One 4000\n") << "it was scanned before";
    select("the first tab");
    EXPECT_EQ(m_world.coordinator->workMode(), WorkMode::Cleaner);
    EXPECT_EQ(listed(), "[x] Widgets 4000\n  [x] widget-gone 4000\n");
}

TEST_F(ExtensionsTest, WidgetGoesOnlyAfterYes) {
    const std::string one = "/Users/sam/Library/Widgets/One.wdgt";
    write(one + "/x");
    m_world.target.makeFolder("/victim/file");
    link("/Users/sam/Library/Widgets/Link.wdgt", "/victim");
    select(ExtensionsScanController::kWidgetsTab);
    EXPECT_EQ(listed(), "[x] One 4000\n");
    uninstall();
    EXPECT_TRUE(m_world.exists(one)) << "the safe answer is no";
    EXPECT_THAT(m_world.alerts.texts(),
                ElementsAre("Uninstall selected objects?|Are you sure you want to uninstall selected objects?"));
    m_world.alerts.answers["Uninstall selected objects?"] = 0;
    m_module->checkNone();
    uninstall();
    EXPECT_TRUE(m_world.exists(one)) << "nothing was checked";
    m_module->checkAll();
    uninstall();
    EXPECT_FALSE(m_world.exists(one));
    EXPECT_EQ(listed(), "");
    EXPECT_TRUE(m_world.exists("/victim/file"));
}

TEST_F(ExtensionsTest, PaneGoesWithItsPreferencesAndTheApplicationsInsideIt) {
    const std::string library = "/Users/sam/Library/";
    const std::string pane = library + "PreferencePanes/Keys.prefPane";
    m_world.target.makeBundle(pane, {{"CFBundleIdentifier", "com.example.keys"}, {"CFBundleName", "Keys"}});
    m_world.target.makeBundle(pane + "/Contents/Daemon.app", {{"CFBundleIdentifier", "com.example.daemon"}});
    m_world.target.makeBundle("/Library/PreferencePanes/Sound.prefPane",
                              {{"CFBundleIdentifier", "com.apple.preference.sound"}});
    const Paths belongs{pane, library + "Preferences/com.example.keys.plist",
                        library + "Application Support/com.example.daemon",
                        library + "LaunchAgents/com.example.daemon.plist"};
    writeAll({belongs.begin() + 1, belongs.end()});
    write(library + "Application Support/com.example.keys");
    select(ExtensionsScanController::kPreferencesTab);
    EXPECT_EQ(pathsOf(m_module->shownController().rootNode()->childAtIndex(0)->children()), belongs);
    m_world.alerts.answers["Uninstall selected objects?"] = 0;
    uninstall();
    EXPECT_THAT(there(belongs), IsEmpty());
    EXPECT_TRUE(m_world.exists(library + "Application Support/com.example.keys")) << "only preferences go with a pane";
    EXPECT_TRUE(m_world.exists("/Library/PreferencePanes/Sound.prefPane")) << "nobody said yes to the system's";
    EXPECT_THAT(m_world.alerts.texts().back(), HasSubstr("Sweeply could not remove some files"));
}

TEST_F(ExtensionsTest, PluginsAreListedByKind) {
    for (const char* folder : {"/Library", "/Users/sam/Library"})
        writeBundle(std::string(folder) + "/Internet Plug-ins/Player.plugin");
    writeBundle("/Library/Screen Savers/Drift.saver");
    writeBundle("/Library/Screen Savers/Drift.saver/Contents/Inner.saver");
    writeBundle("/Library/Dictionaries/Any folder");
    writeAll({"/Library/Dictionaries/plain.txt", "/Library/Services/notes.plist",
              "/Library/Application Support/Growl/Tickets/A.growlTicket"});
    writeList("/Library/LaunchDaemons/d.plist", {{"Label", "d"}});
    writeList("/Users/sam/Library/LaunchAgents/a.plist", {{"Label", "a"}});
    m_world.target.makeBundle("/Applications/Item.app", {{"CFBundleName", "The Item"}});
    m_loginItems.writeLoginItemsList({loginItem("/Applications/Item.app"), loginItem("/gone/Other.app"), 17});
    select(ExtensionsScanController::kPluginsTab);
    EXPECT_EQ(listed(), "[x] Safari plugins 8000\n  [x] Player 4000\n  [x] Player 4000\n"
                        "[x] Screen Savers 8000\n  [x] Drift 8000\n"
                        "[x] Dictionaries 4000\n  [x] Any folder 4000\n"
                        "[x] Growl plugins 4000\n  [x] A 4000\n"
                        "[x] Startup Items 8000\n  [x] d 4000\n  [x] a 4000\n  [x] The Item 0\n  [x] Other 0\n");
    m_world.alerts.answers["Uninstall selected objects?"] = 0;
    uninstall();
    EXPECT_EQ(listed(), "");
    EXPECT_THAT(there({"/Library/Internet Plug-ins/Player.plugin", "/Library/LaunchDaemons/d.plist",
                       "/Users/sam/Library/LaunchAgents/a.plist", "/Library/Dictionaries/Any folder"}),
                IsEmpty());
    const Paths kept{"/Applications/Item.app", "/Library/Services/notes.plist", "/Library/Dictionaries/plain.txt"};
    EXPECT_EQ(there(kept), kept);
    EXPECT_EQ(m_loginItems.loginItemsList().size(), 1U) << "an item is unregistered, its program stays";
}

TEST_F(ExtensionsTest, NamedExtensionsGoToTheModuleOfTheirKind) {
    const auto& uninstallers = m_module->uninstallControllers();
    writeBundle("/Library/Contextual Menu Items/Any folder");
    writeList("/Library/LaunchDaemons/d.plist", {});
    EXPECT_EQ(m_module->uninstallControllerFor("/Users/sam/Downloads/A.wdgt"), uninstallers[0]);
    EXPECT_EQ(m_module->uninstallControllerFor("/Library/PreferencePanes/A.prefPane"), uninstallers[1]);
    for (const char* path : {"/Users/sam/Library/QuickLook/a.qlgenerator", "/Library/LaunchDaemons/d.plist",
                             "/Library/Contextual Menu Items/Any folder"})
        EXPECT_EQ(m_module->uninstallControllerFor(path), uninstallers[2]) << path;
    for (const char* path : {"/Applications/A.app", "/Library/QuickLook", "/Library/Preferences/a.plist", "/a.plugin"})
        EXPECT_EQ(m_module->uninstallControllerFor(path), nullptr) << path;
    drop(*uninstallers[2], {"/Library/LaunchDaemons/d.plist", "/Library/QuickLook/nothing.qlgenerator"});
    EXPECT_EQ(textOf(*uninstallers[2]->rootNode()), "[x] Startup Items 4000\n  [x] d 4000\n");
}

} // namespace
} // namespace sweeply
