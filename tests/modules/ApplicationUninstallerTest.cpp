#include "modules/uninstaller/ApplicationUninstaller.h"

#include "appcore/ADTaskRunner.h"
#include "appcore/LoginItems.h"
#include "appcore/processes/LaunchDatabase.h"
#include "appcore/receipts/PackageManager.h"
#include "appcore/receipts/ReceiptFiles.h"
#include "modules/UninstallWorld.h"
#include "modules/uninstaller/UninstallPreferences.h"

#include <csignal>
#include <gmock/gmock.h>
#include <spawn.h>
#include <sys/wait.h>

namespace sweeply {
namespace {

namespace fs = std::filesystem;
using namespace testing;

class UninstallerTest : public UninstallWorldTest {
  protected:
    explicit UninstallerTest(const char* version = "10.6.8") : UninstallWorldTest(version) {
        m_module =
            &m_world.add(7, std::make_unique<ApplicationUninstaller>(
                                services(), *m_world.coordinator,
                                ApplicationUninstaller::Parts{m_finder, m_packages, m_steps, m_question, m_ownership}));
        m_world.alerts.answers["Uninstall selected objects?"] = 0;
        makeApplication("Foo", "com.example.foo");
        write("/Applications/Foo.app/Contents/Info.plist",
              plist::writeXml(plist::Dictionary({{"CFBundleIdentifier", "com.example.foo"}, {"CFBundleName", "Foo"}})));
    }
    ~UninstallerTest() override { m_world.end(); }

    /// The paths and receipts listed under the first entry.
    std::vector<std::string> listed() {
        std::vector<std::string> items;
        const auto entry = m_module->rootNode()->childAtIndex(0);
        for (const auto& item : entry ? entry->children() : std::vector<Node::Pointer>())
            items.push_back(item->path() + (item->type() == 0 ? "" : "#" + std::to_string(item->type())));
        return items;
    }

    ApplicationUninstaller* m_module = nullptr;
};

TEST_F(UninstallerTest, EverythingThatBelongsToAnApplicationGoesAndNothingElse) {
    const std::string library = "/Users/sam/Library/";
    const std::vector<std::string> belongs{library + "Preferences/com.example.foo.plist",
                                           library + "Preferences/Foo Preferences",
                                           library + "Preferences/com.example.foobar.plist",
                                           library + "Application Support/Foo",
                                           library + "Caches/com.example.foo",
                                           "/Library/Logs/Foo",
                                           library + "Foo",
                                           library + "LaunchAgents/com.example.foo.agent.plist",
                                           "/Library/LaunchDaemons/com.example.foo.plist",
                                           "/Library/PrivilegedHelperTools/com.example.foo.helper",
                                           "/Library/QuickTime/deep/Foo.component",
                                           library + "PDF Services/Foo",
                                           "/Library/Application Support/Growl/Tickets/MyFoo.growlTicket"};
    const std::vector<std::string> others{
        library + "Preferences/FooBar.plist", library + "Preferences/foo.plist",       library + "Caches/org.foo",
        library + "Preferences/Foo.app/x",    "/Library/QuickTime/OtherFoo.component", "/Applications/Bar.app/x",
        "/System/Library/com.example.foo"};
    for (const auto& path : belongs)
        write(path);
    for (const auto& path : others)
        write(path);
    write("/Applications/Foo.app/Contents/PlugIns/Foo.component/x");
    ASSERT_TRUE(m_loginItems.writeLoginItemsList(
        {plist::Dictionary({{"Path", "/Applications/Foo.app"}, {"Hide", "1"}}), plist::Value("strange"),
         plist::Dictionary({{"Path", "/Applications/Foo.app2"}, {"Hide", true}})}));
    addReceipt("com.example.foo.pkg", {"Applications/Foo.app/Contents/Info.plist", "usr/local/bin/foo tool"});
    write("/usr/local/bin/foo tool");

    m_world.defaults->setBool(uninstaller::kCheckWeakMatches, true);
    drop(*m_module, {"/Applications/Foo.app", "/Applications/Foo.app/", "/nothing"});
    EXPECT_EQ(m_module->rootNode()->childrenCount(), 1U);
    EXPECT_THAT(listed(), Contains("/Applications/Foo.app#1"));
    EXPECT_THAT(listed(), Contains("com.example.foo.pkg"));
    uninstall();

    EXPECT_THAT(reasons(), ElementsAre());
    EXPECT_EQ(m_module->rootNode()->childrenCount(), 0U);
    for (const auto& path : belongs)
        EXPECT_FALSE(m_world.exists(path)) << path;
    for (const char* path :
         {"/Applications/Foo.app", "/usr/local/bin/foo tool", "/private/var/db/receipts/com.example.foo.pkg.bom",
          "/private/var/db/receipts/com.example.foo.pkg.plist"})
        EXPECT_FALSE(m_world.exists(path)) << path;
    for (const auto& path : others)
        EXPECT_TRUE(m_world.exists(path)) << path;
    const auto items = m_loginItems.loginItemsList();
    ASSERT_EQ(items.size(), 2U);
    EXPECT_EQ(items[0], plist::Value("strange"));
    EXPECT_EQ(*items[1].find("Hide"), plist::Value(true));
}

TEST_F(UninstallerTest, ShortOrMissingNamesSweepNothingUp) {
    write("/Users/sam/Library/Preferences/com.example.other.plist");
    write("/Users/sam/Library/Preferences/com.plist");
    for (const auto& [identifier, name] : {std::pair("com", "Preferences"),
                                           {"", ""},
                                           {"com.apple", " "},
                                           {".", "Library"},
                                           {"com.example", "Application Support"},
                                           {"..", "."}}) {
        m_world.target.remove("/Applications/Odd.app");
        write("/Applications/Odd.app/Contents/Info.plist",
              plist::writeXml(plist::Dictionary({{"CFBundleIdentifier", identifier}, {"CFBundleName", name}})));
        m_module->showDropImageView();
        drop(*m_module, {"/Applications/Odd.app"});
        auto items = listed();
        std::erase(items, "/Users/sam/Library/Preferences/com.plist");
        EXPECT_THAT(items, ElementsAre("/Applications/Odd.app")) << identifier << " " << name;
    }
    write("/Applications/None.app/x");
    write("/Applications/Damaged.app/Contents/Info.plist", "garbage");
    for (const char* path : {"/Applications/None.app", "/Applications/Damaged.app"}) {
        m_module->showDropImageView();
        drop(*m_module, {path});
        EXPECT_THAT(listed(), ElementsAre(path));
    }
}

TEST_F(UninstallerTest, PersonDecidesWhetherWhatGoesCanComeBack) {
    const std::string path = "/Applications/Foo.app";
    m_world.alerts.answers.clear();
    m_world.alerts.boxAnswer.reset();
    drop(*m_module, {path});
    uninstall();
    EXPECT_TRUE(m_world.exists(path)) << "the safe answer is no";
    m_world.alerts.answers["Uninstall selected objects?"] = 0;
    uninstall();
    EXPECT_FALSE(m_world.exists(path));
    const auto kept = m_world.runs->kept();
    ASSERT_EQ(kept.size(), 1U);
    ASSERT_TRUE(m_world.runs->undo(kept[0].run, {}));
    EXPECT_TRUE(m_world.exists(path));
    m_world.alerts.boxAnswer = false;
    drop(*m_module, {path});
    uninstall();
    EXPECT_FALSE(m_world.exists(path));
    EXPECT_THAT(m_world.runs->kept(), IsEmpty());
    EXPECT_FALSE(m_world.defaults->boolForKey(uninstaller::kKeepUninstalled)) << "as it was left";
    ASSERT_TRUE(m_world.alerts.shown.back().checkBox);
    EXPECT_EQ(m_world.alerts.shown.back().checkBox->text,
              "Keep for 30 days, so that it can be put back (frees no space until then)");
}

TEST_F(UninstallerTest, SystemApplicationsAndSharedPackagesAreAskedAbout) {
    write("/Applications/Foo.app/Contents/Info.plist",
          plist::writeXml(plist::Dictionary({{"CFBundleIdentifier", "com.apple.iPhoto"}, {"CFBundleName", "Foo"}})));
    write("/Applications/Bar.app/x");
    addReceipt("com.example.suite", {"Applications/Foo.app/Contents/Info.plist", "Applications/Bar.app/x"});
    drop(*m_module, {"/Applications/Foo.app"});
    EXPECT_THAT(listed(), Contains("com.example.suite#3"));
    EXPECT_THAT(listed(), Not(Contains("/Applications/Bar.app"))) << "another application's";
    uninstall();
    EXPECT_TRUE(m_world.exists("/Applications/Foo.app"));
    EXPECT_THAT(reasons(), ElementsAre(HasSubstr("system application")));
    m_world.alerts.answers["Deleting system application"] = 1;
    uninstall();
    EXPECT_FALSE(m_world.exists("/Applications/Foo.app"));
    EXPECT_THAT(reasons(), ElementsAre()) << "the receipt is the other application's as well, and so unchecked";
    m_module->toggleOutlineItem(*m_module->rootNode()->childAtIndex(0)->childWithEqualPath("com.example.suite"));
    uninstall();
    EXPECT_THAT(reasons(), ElementsAre(HasSubstr("serves several applications")));
    EXPECT_TRUE(m_world.exists("/private/var/db/receipts/com.example.suite.plist"));
}

TEST_F(UninstallerTest, ReceiptsThatNameOtherPeoplesPlacesRemoveNothingThere) {
    write("/Users/sam/Documents/thesis", "precious");
    addReceipt("com.example.evil", {"Applications/Foo.app/x", "Users/sam/Documents/thesis", "Library", "Users/sam"});
    m_world.target.makeLink("/Applications/Foo.app/x", "/Users/sam/Documents");
    drop(*m_module, {"/Applications/Foo.app"});
    EXPECT_THAT(listed(), Not(Contains("/Library")));
    EXPECT_THAT(listed(), Not(Contains("/Users/sam")));
    Package package;
    package.basedir = "/opt/tool";
    EXPECT_THAT(processReceiptsOutput({"./a", "./../x", "./..", "../x", ".", "", "./b/../../c", "./Foo.app/x",
                                       "./Applications/Foo.app/Contents/x", "./Applications/Foo.app/y", "Package: id"},
                                      package, true, [](const std::string&) { return false; }),
                ElementsAre("/opt/tool/a", "/opt/tool/Foo.app", "/opt/tool/Applications/Foo.app", "Package: id"));
}

TEST_F(UninstallerTest, PackagesAreUninstalledByTheirBills) {
    std::vector<bom::Entry> entries(2);
    entries[0].path = "Applications/Pack.app/Contents/x";
    entries[1].path = "usr/local/bin/tool";
    write("/tmp/Pack.pkg/Contents/Archive.bom", bom::write(entries));
    write(
        "/tmp/Pack.pkg/Contents/Info.plist",
        plist::writeXml(plist::Dictionary({{"CFBundleIdentifier", "com.example.pack"}, {"IFPkgRelocatedPath", "./"}})));
    write("/Applications/Pack.app/Contents/x");
    write("/usr/local/bin/tool");
    write("/tmp/broken.pkg", "no archive");
    drop(*m_module, {"/tmp"});
    EXPECT_EQ(m_module->rootNode()->childrenCount(), 2U);
    m_module->showDropImageView();
    drop(*m_module, {"/tmp/Pack.pkg"});
    EXPECT_THAT(listed(), UnorderedElementsAre("/tmp/Pack.pkg", "/Applications/Pack.app", "/usr/local/bin/tool",
                                               "com.example.pack"));
    EXPECT_THAT(m_world.log.lines(), Contains(HasSubstr("Failed to open xar /tmp/broken.pkg")));
}

TEST_F(UninstallerTest, RunningApplicationIsAskedToQuitAndForcedAfterAQuestion) {
    const std::string program = host("/Applications/Foo.app/Contents/Foo");
    for (const bool obeys : {true, false}) {
        fs::create_directories(fs::path(program).parent_path());
        fs::copy_file("/bin/sleep", program, fs::copy_options::overwrite_existing);
        // A program started through a link and by a relative path is the same one.
        fs::remove(host("/link"));
        fs::create_symlink("Applications/Foo.app/Contents/Foo", host("/link"));
        const pid_t child = ::fork();
        if (child == 0) {
            if (!obeys)
                ::signal(SIGTERM, SIG_IGN);
            if (::chdir(host("/").c_str()) == 0)
                ::execl("./link", "./link", "600", static_cast<char*>(nullptr));
            ::_exit(1);
        }
        const std::vector<ProcessControl::Application> applications{{"Foo", "/Applications/Foo.app"}, {"None", ""}};
        m_world.waitUntil([&] { return !m_processes.getApplicationsRunning(applications).empty(); });
        EXPECT_EQ(m_processes.getApplicationsRunning(applications)[0].pid, std::to_string(child));

        m_module->showDropImageView();
        drop(*m_module, {"/Applications/Foo.app"});
        m_world.alerts.answers["Some applications are running"] = 0;
        uninstall();
        EXPECT_TRUE(m_world.exists("/Applications/Foo.app")) << "the person said no";
        EXPECT_EQ(::waitpid(child, nullptr, WNOHANG), 0);

        m_world.alerts.answers["Some applications are running"] = 1;
        m_world.alerts.answers["Couldn't quit some applications"] = 1;
        int status = 0;
        const std::jthread reaper([&] { ::waitpid(child, &status, 0); });
        uninstall();
        EXPECT_FALSE(m_world.exists("/Applications/Foo.app"));
    }
    std::vector<std::string> titles;
    for (const auto& alert : m_world.alerts.shown)
        titles.push_back(alert.title);
    EXPECT_THAT(titles, testing::Contains("Couldn't quit some applications").Times(1));
}

TEST_F(UninstallerTest, IndexIsKeptBetweenRunsAndADamagedOneIsBuiltAnew) {
    addReceipt("com.example.foo.pkg", {"Applications/Foo.app/x"});
    addReceipt("com.apple.pkg.Safari", {"Applications/Safari.app/x"});
    addReceipt("com.apple.pkg.iLifeCookie", {"a"});
    const auto names = [](const std::vector<Package>& packages) {
        std::vector<std::string> list;
        for (const auto& package : packages)
            list.push_back(package.name);
        return list;
    };
    EXPECT_THAT(names(m_packages.pkgs()), ElementsAre("com.apple.pkg.iLifeCookie", "com.example.foo.pkg"));
    const std::string cache = "/Users/sam/Library/Application Support/Sweeply/PkgsInfo";
    EXPECT_TRUE(read(cache).starts_with("bplist00"));
    // What is known is not read again.
    write("/private/var/db/receipts/com.example.foo.pkg.bom", "garbage");
    PackageManager again({m_world.files(), m_world.folders, m_version, m_ignoreList.tools, m_world.privileged,
                          m_world.alerts, m_world.loop, m_world.log});
    EXPECT_THAT(*again.pkgs()[1].appNames, ElementsAre("Foo.app"));
    EXPECT_TRUE(again.pkgs()[0].isMultiApp());
    EXPECT_EQ(again.findPackageByAppName("Foo.app").size(), 1U);
    write(cache, "garbage");
    PackageManager anew({m_world.files(), m_world.folders, m_version, m_ignoreList.tools, m_world.privileged,
                         m_world.alerts, m_world.loop, m_world.log});
    EXPECT_EQ(anew.pkgs().size(), 2U);
    EXPECT_THAT(m_world.log.lines(), Contains(HasSubstr(cache)));
    PackageManager without({m_world.files(), m_world.folders, m_version, m_ignoreList.tools, m_world.privileged,
                            m_world.alerts, m_world.loop, m_world.log});
    m_world.privileged.deauthorize();
    EXPECT_TRUE(without.removePkg("com.example.never"));
    EXPECT_TRUE(without.checkPackageInDB("com.example.never"));
    write("/private/var/db/receipts/com.example.damaged.plist", "garbage");
    EXPECT_FALSE(without.checkPackageInDB("com.example.damaged")) << "it is there, only not readable";
    EXPECT_FALSE(without.removePkg("com.example.foo.pkg"));
    EXPECT_EQ(m_world.alerts.shown.back().title, "Sweeply could not remove some files");
}

TEST_F(UninstallerTest, LaunchDatabaseIsBuiltAnew) {
    write("/Applications/Utilities/Tool.app/x");
    write("/Applications/Foo.app/Contents/Inner.app/x");
    write("/Users/sam/Applications/Own.app/x");
    write("/System/Library/CoreServices/Finder.app/x");
    LaunchDatabase database({m_world.files(), m_world.folders, m_version, m_world.tasks, m_world.loop, m_world.log});
    bool isDone = false;
    database.rebuildLaunchDB([&] { isDone = true; });
    m_world.waitUntil([&] { return isDone; });
    const auto list = plist::parse(read("/Users/sam/Library/Application Support/Sweeply/RegisteredApplications.plist"));
    ASSERT_TRUE(list);
    EXPECT_THAT(plist::textsOf(*list),
                UnorderedElementsAre("/Applications/Foo.app", "/Applications/Utilities/Tool.app",
                                     "/System/Library/CoreServices/Finder.app", "/Users/sam/Applications/Own.app"));
}

class OldUninstallerTest : public UninstallerTest {
  protected:
    OldUninstallerTest() : UninstallerTest("10.5.8") {}
};

TEST_F(OldUninstallerTest, BundleReceiptsOfOlderSystemsAreFoundAndRemoved) {
    std::vector<bom::Entry> entries(1);
    entries[0].path = "Foo.app/Contents/Info.plist";
    write("/Library/Receipts/Foo.pkg/Contents/Archive.bom", bom::write(entries));
    write("/Library/Receipts/Foo.pkg/Contents/Info.plist",
          plist::writeXml(
              plist::Dictionary({{"IFPkgFlagDefaultLocation", "/Applications/"}, {"CFBundleIdentifier", "x"}})));
    write("/Library/Receipts/BSD.pkg", "a file");
    drop(*m_module, {"/Applications/Foo.app"});
    EXPECT_THAT(listed(), ElementsAre("/Applications/Foo.app", "/Library/Receipts/Foo.pkg"));
    uninstall();
    EXPECT_FALSE(m_world.exists("/Library/Receipts/Foo.pkg"));
    EXPECT_TRUE(m_world.exists("/Library/Receipts/BSD.pkg"));
}

} // namespace
} // namespace sweeply
