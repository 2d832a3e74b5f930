#include "cli/CliWorld.h"

#include <functional>
#include <gmock/gmock.h>

namespace sweeply {
namespace {

using testing::HasSubstr;

/// On the sample volume, as people try it.
class CliUninstallTest : public CliTest {
  protected:
    CliUninstallTest() {
        std::filesystem::remove_all(m_folder + "/root");
        EXPECT_EQ(run({"sample", m_folder + "/root"}).exitStatus, 0);
    }
};

class CliUninstallOnSystemTest : public CliUninstallTest, public testing::WithParamInterface<const char*> {
  protected:
    nlohmann::ordered_json uninstallHere(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {"--root", m_folder + "/root", "--os", GetParam(), "uninstall", "--json"});
        return nlohmann::ordered_json::parse(run(arguments).output);
    }
};

TEST_P(CliUninstallOnSystemTest, ApplicationGoesWithWhatBelongsToItAndNothingElseChanges) {
    for (const char* application : {"/Applications/Harbor Mail.app", "/Applications/Ledger.app"}) {
        const auto before = everything();
        const auto shown = uninstallHere({"--dry-run", application});
        EXPECT_TRUE(everything() == before);
        std::vector<std::string> expected;
        for (const auto& item : shown["modules"][0]["tree"]["children"][0]["children"]) {
            if (item["enabled"])
                expected.push_back(item["path"]);
        }
        EXPECT_GT(expected.size(), 5U);
        const auto removed = uninstallHere({"--yes", application});
        // What is listed under both names of a folder is gone when its second name is looked at.
        const auto gone = std::ranges::count_if(removed["items"], [](const auto& i) { return i["outcome"] == "gone"; });
        EXPECT_EQ(removed["removed"].get<std::size_t>() + static_cast<std::size_t>(gone),
                  expected.size() - removed["failed"].size());
        const auto after = everything();
        for (const auto& [path, contents] : before) {
            // One folder is known by two names, one of which is a link to the other.
            std::string known = path;
            if (const auto at = known.find("/Internet Plug-Ins/"); at != std::string::npos)
                known.replace(at, 19, "/Internet Plug-ins/");
            const bool isRemoved = std::ranges::any_of(expected, [&](const std::string& item) {
                return known == "/root" + item || known.starts_with("/root" + item + "/") ||
                       path.find("/receipts/" + item + ".") != std::string::npos;
            });
            if (path.find("loginwindow.plist") != std::string::npos)
                continue;
            EXPECT_EQ(after.contains(path) && after.at(path) == contents, !isRemoved) << path;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Systems, CliUninstallOnSystemTest, testing::Values("10.4.11", "10.5.8", "10.6.8"));

/// "Notes", and "Notes Pro" whose things have that word in their names.
class CliClaimsTest : public CliTest {
  protected:
    CliClaimsTest() {
        makeFolder("/Users/sam/Library/Application Support/My Notes");
        write("/Users/sam/Library/Preferences/com.acme.notespro.plist", "x");
        for (const auto& [name, identifier] :
             {std::pair("Notes", "com.acme.notes"), {"Notes Pro", "com.acme.notespro"}})
            write("/Applications/" + std::string(name) + ".app/Contents/Info.plist",
                  "<plist version=\"1.0\"><dict><key>CFBundleIdentifier</key><string>" + std::string(identifier) +
                      "</string><key>CFBundleName</key><string>" + name + "</string></dict></plist>");
    }
};

TEST_F(CliClaimsTest, ItemsSayWhyTheyAreListedAndWhyTheyAreUnchecked) {
    const std::vector<std::string> dryRun{"uninstall", "--dry-run", "/Applications/Notes.app"};
    const std::string claimed =
        "[ ] ~/Library/Preferences/com.acme.notespro.plist\n"
        "                          Not checked: it may belong to /Applications/Notes Pro.app.\n";
    const std::string weak = "[ ] ~/Library/Application Support/My Notes\n"
                             "                          Not checked: only a part of its name matches.\n";
    EXPECT_THAT(runOnVolume(dryRun).output, testing::AllOf(HasSubstr(claimed), HasSubstr(weak)));
    auto asked = dryRun;
    asked.insert(asked.begin() + 1, {"--why", "--weak"});
    EXPECT_THAT(
        runOnVolume(asked).output,
        testing::AllOf(HasSubstr("[x] ~/Library/Application Support/My Notes\n                          Its name has "
                                 "\"Notes\" somewhere in it.\n"),
                       HasSubstr("Its name has the identifier \"com.acme.notes\" somewhere in it. Not checked: "
                                 "it may belong to /Applications/Notes Pro.app.\n")));
    asked = dryRun;
    asked.push_back("--json");
    const auto items = json(asked)["modules"][0]["tree"]["children"][0]["children"];
    EXPECT_EQ(items[0]["why"].dump(),
              R"({"rule":"bundle","term":"com.acme.notes","strength":"certain","alsoClaimedBy":[]})");
    EXPECT_EQ(
        items[1]["why"].dump(),
        R"({"rule":"identifier","term":"com.acme.notes","strength":"weak","alsoClaimedBy":["/Applications/Notes Pro.app"]})");
    EXPECT_EQ(runOnVolume({"uninstall", "--yes", "/Applications/Notes.app"}).exitStatus, 0);
    EXPECT_FALSE(exists("/Applications/Notes.app"));
    for (const char* path : {"/Applications/Notes Pro.app", "/Users/sam/Library/Application Support/My Notes",
                             "/Users/sam/Library/Preferences/com.acme.notespro.plist"})
        EXPECT_TRUE(exists(path)) << path;
}

TEST_F(CliUninstallTest, EveryItemOfEveryModuleSaysWhyItIsListed) {
    const std::function<void(const nlohmann::ordered_json&)> check = [&](const auto& node) {
        for (const char* list : {"children", "invisibleChildren"})
            std::ranges::for_each(node[list], check);
        if (node["children"].empty() && node["invisibleChildren"].empty() && !node["path"].is_null()) {
            EXPECT_FALSE(node["why"].is_null()) << node["path"];
        }
    };
    for (const auto& arguments : {std::vector<std::string>{"scan", "--all", "--json"},
                                  {"extensions", "--json"},
                                  {"erase", "--dry-run", "--json", "/Library/Logs"},
                                  {"uninstall", "--dry-run", "--json", "/Applications/Harbor Mail.app"}}) {
        const auto shown = json(arguments);
        for (const auto& module : shown["modules"])
            check(module["tree"]);
    }
    const auto leftovers = json({"leftovers", "--json"});
    for (const auto& item : leftovers["items"])
        EXPECT_FALSE(item["why"].is_null()) << item;
}

TEST_F(CliUninstallTest, NothingIsRemovedWhereNobodyCanBeAsked) {
    EXPECT_EQ(runOnVolume({"uninstall", "/Applications/Harbor Mail.app"}).exitStatus, 2);
    EXPECT_TRUE(exists("/Applications/Harbor Mail.app"));
}

TEST_F(CliUninstallTest, SystemApplicationStaysWhereNobodyCanBeAsked) {
    const auto result = runOnVolume({"uninstall", "--yes", "/Applications/Safari.app", "/nothing.app"});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_THAT(result.errors, HasSubstr("Deleting system application"));
    EXPECT_THAT(result.errors, HasSubstr("could not remove /Applications/Safari.app: stays"));
    EXPECT_THAT(result.errors, HasSubstr("/nothing.app: No such file"));
    EXPECT_TRUE(exists("/Applications/Safari.app"));
}

TEST_F(CliUninstallTest, ReceiptsAreListed) {
    const auto receipts = json({"receipts", "--json"})["receipts"];
    ASSERT_EQ(receipts.size(), 4U);
    EXPECT_EQ(receipts[1]["name"], "com.harborline.mail.pkg");
    EXPECT_EQ(receipts[1]["applications"], nlohmann::ordered_json::array({"Harbor Mail.app"}));
    EXPECT_THAT(runOnVolume({"receipts"}).output,
                HasSubstr("com.tidewater.suite.pkg\tPaper Trail.app\tWeather Vane.app\n"));
}

} // namespace
} // namespace sweeply
