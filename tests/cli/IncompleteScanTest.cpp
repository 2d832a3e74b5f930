#include "cli/CliWorld.h"

#include "formats/PropertyList.h"

#include <gmock/gmock.h>

namespace sweeply {
namespace {

namespace fs = std::filesystem;
using namespace testing;
using Paths = std::vector<std::string>;

constexpr const char* kApplication = "/Applications/Ledger.app";
constexpr const char* kLine = "sweeply-cli: the scan was incomplete: some folders or files could not be read\n";

/// A volume with an application and folders and files that nobody may read.
class IncompleteScanTest : public CliTest {
  protected:
    IncompleteScanTest() {
        writeList("/Users/sam/Library/Preferences/.GlobalPreferences.plist", "AppleLanguages", plist::Array{"en"});
        write(std::string(kApplication) + "/Contents/Info.plist",
              plist::writeXml(
                  plist::Dictionary({{"CFBundleIdentifier", "com.example.books.ledger"}, {"CFBundleName", "Ledger"}})));
    }
    ~IncompleteScanTest() override { open(); }

    void writeList(const std::string& path, const std::string& key, plist::Value value) const {
        write(path, plist::writeXml(plist::Dictionary({{key, std::move(value)}})));
    }
    /// Something that may not be read: a folder, or with contents a file.
    void close(const std::string& path, const std::string& contents = {}) {
        if (contents.empty())
            makeFolder(path);
        else
            write(path, contents);
        fs::permissions(host(path), contents.empty() ? fs::perms::none : fs::perms::owner_exec);
        m_closed.push_back(path);
    }
    void open() {
        for (const auto& path : m_closed)
            fs::permissions(host(path), fs::perms::owner_all);
        m_closed.clear();
    }
    static Paths problemsOf(const nlohmann::ordered_json& scan) {
        Paths paths;
        for (const auto& problem : scan["problems"]) {
            paths.push_back(problem["path"]);
            EXPECT_EQ(problem["reason"], "Permission denied");
        }
        EXPECT_EQ(scan["incomplete"], !paths.empty());
        return paths;
    }

    Paths m_closed;
};

TEST_F(IncompleteScanTest, EveryModuleNamesOnceWhatItCouldNotRead) {
    const std::string home = "/Users/sam", bundle = kApplication;
    struct Row {
        Paths arguments;
        Paths closed; ///< folders
        Paths files = {};
    };
    const Row rows[]{
        {{"scan", "user-caches"}, {home + "/Library/Caches/cache/below", home + "/Library/Caches/whole"}},
        {{"scan", "user-caches"}, {home + "/Library/Caches"}},
        {{"scan", "photo-caches"}, {home + "/Pictures/albums"}},
        {{"scan", "photo-caches"}, {home + "/Pictures/Lib/iPod Photo Cache"}},
        {{"scan", "system-caches"}, {"/Library/Caches/a/b/c"}},
        {{"scan", "user-logs"}, {home + "/Library/Logs/a/b"}},
        {{"scan", "system-logs"}, {"/Library/Logs/a/b"}},
        {{"scan", "languages"}, {"/Applications/Folder", bundle + "/Contents/a", bundle + "/Contents/fr.lproj/b"}},
        {{"scan", "languages"}, {}, {home + "/Library/Preferences/.GlobalPreferences.plist"}},
        {{"scan", "binaries"}, {"/Applications/Folder", bundle + "/Contents/a"}, {bundle + "/Contents/program"}},
        {{"scan", "dev-junk"}, {"/Applications/Folder", bundle + "/Contents/a"}},
        {{"scan", "dev-junk", home + "/Projects"}, {home + "/Projects/a", home + "/Projects/.Trash/501"}},
        {{"scan", "widgets"},
         {home + "/Library/Widgets/a", home + "/Library/LaunchAgents", "/Library/LaunchDaemons"},
         {home + "/Library/Preferences/loginwindow.plist"}},
        {{"scan", "languages", "binaries", "dev-junk"}, {"/Applications/Folder", bundle + "/Contents/a"}},
        {{"uninstall", "--dry-run", bundle},
         {bundle + "/Contents/a", "/Library/Application Support", home + "/Library/Caches", home + "/Library/Logs",
          "/Library/LaunchAgents"}},
        {{"uninstall", "--dry-run", bundle}, {"/var/db/receipts"}},
        {{"--os", "10.4", "uninstall", "--dry-run", bundle}, {"/Library/Receipts"}},
        {{"uninstall", "--dry-run", home + "/Library/Widgets/W.wdgt"}, {home + "/Library/Widgets/W.wdgt/a"}},
        {{"uninstall", "--dry-run", home + "/Library/PreferencePanes/P.prefPane"},
         {home + "/Library/PreferencePanes/P.prefPane/a", home + "/Library/Preferences"}},
        {{"uninstall", "--dry-run", "/Library/Internet Plug-Ins/I.plugin"}, {"/Library/Internet Plug-Ins/I.plugin/a"}},
        {{"uninstall", "--dry-run", bundle}, {}, {bundle + "/Contents/Info.plist"}},
    };
    for (const auto& row : rows) {
        for (const auto& path : row.closed)
            close(path);
        for (const auto& path : row.files)
            close(path, "bplist00");
        Paths expected = row.closed;
        expected.insert(expected.end(), row.files.begin(), row.files.end());
        auto arguments = row.arguments;
        arguments.emplace_back("--json");

        const auto result = runOnVolume(arguments);

        SCOPED_TRACE(testing::PrintToString(arguments) + result.errors);
        EXPECT_EQ(result.exitStatus, 0);
        EXPECT_THAT(problemsOf(nlohmann::ordered_json::parse(result.output)), UnorderedElementsAreArray(expected));
        for (const auto& path : expected)
            EXPECT_THAT(result.errors, HasSubstr("sweeply-cli: " + path + ": Permission denied\n"));
        open();
        for (const auto& path : row.files)
            fs::remove(host(path));
    }
}

TEST_F(IncompleteScanTest, RemovalAfterItDoesItsWorkAndSaysSo) {
    write(cache("file"), "1");
    close("/Users/sam/Library/Logs/folder");
    const auto clean = runOnVolume({"clean", "caches", "logs", "--yes"});
    EXPECT_EQ(clean.exitStatus, 1);
    EXPECT_THAT(clean.errors, HasSubstr(kLine));
    EXPECT_FALSE(exists(cache("file")));

    close("/Library/Application Support");
    const auto uninstalled = runOnVolume({"uninstall", "--yes", "--json", kApplication});
    EXPECT_EQ(uninstalled.exitStatus, 1);
    EXPECT_THAT(uninstalled.errors, HasSubstr(kLine));
    const auto report = nlohmann::ordered_json::parse(uninstalled.output);
    EXPECT_EQ(report["incomplete"], true);
    EXPECT_EQ(report["failed"], nlohmann::ordered_json::array());
    EXPECT_FALSE(exists(kApplication));

    open();
    write(cache("file"), "1");
    const auto whole = runOnVolume({"clean", "--yes"});
    EXPECT_EQ(whole.exitStatus, 0);
    EXPECT_THAT(whole.errors, Not(HasSubstr("incomplete")));
}

TEST_F(IncompleteScanTest, WhatIsMissingOrOfAnotherKindIsNoProblem) {
    for (const char* folder : {"/Users/sam/Library/Caches", "/Users/sam/Library/Logs", "/Library/Caches"})
        fs::remove_all(host(folder));
    write("/Users/sam/Library/Widgets", "no folder");
    link("/Users/sam/Pictures/gone", "/nowhere");
    EXPECT_EQ(problemsOf(json({"scan", "--all", "--json"})), Paths());
    EXPECT_EQ(problemsOf(json({"uninstall", "--dry-run", "--json", kApplication})), Paths());
}

} // namespace
} // namespace sweeply
