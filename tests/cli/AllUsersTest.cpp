#include "cli/CliWorld.h"
#include "cli/Person.h"

#include <algorithm>
#include <gmock/gmock.h>

namespace sweeply {
namespace {

namespace fs = std::filesystem;
using namespace testing;
using Json = nlohmann::ordered_json;
using Paths = std::vector<std::string>;

constexpr const char* kLedger = "/Applications/Ledger.app";
constexpr const char* kMachineCache = "/Library/Caches/machine";
constexpr const char* kGlobalPreferences = "/Library/Preferences/.GlobalPreferences.plist";

/// A volume with three users, one of whom has an awkward name, an application for all and one of ann's own.
class AllUsersTest : public CliTest {
  protected:
    AllUsersTest() {
        for (const auto& [user, languages] :
             std::map<std::string, Paths>{{"ann", {"de", "en"}}, {"b$(x)", {"en"}}, {"sam", {"en", "fr"}}}) {
            write(home(user) + "/Library/Caches/cache", "1");
            makeFolder(home(user) + "/Library/Application Support");
            writeList(home(user) + kGlobalPreferences,
                      plist::Dictionary({{"AppleLanguages", plist::arrayOf(languages)}}));
        }
        write("/Users/.localized");
        write("/Users/Shared/readme");
        write(kMachineCache, "1");
        makeApplication(kLedger);
        makeApplication(home("ann") + "/Applications/Own.app");
        writeList(home("ann") + "/Library/Application Support/Sweeply/RegisteredApplications.plist",
                  plist::arrayOf(Paths{kLedger, home("ann") + "/Applications/Own.app"}));
        for (const auto& folder : {home("ann") + "/Library/LaunchAgents", std::string("/Library/LaunchDaemons")})
            writeList(folder + "/gone.plist",
                      plist::Dictionary({{"Label", "gone"}, {"Program", "/Applications/gone"}}));
    }

    static std::string home(const std::string& user) { return "/Users/" + user; }
    void writeList(const std::string& path, const plist::Value& value) const { write(path, plist::writeXml(value)); }
    void makeApplication(const std::string& path) const {
        makeBundle(path, {{"CFBundleIdentifier", "com.example." + fs::path(path).stem().string()}});
        for (const char* language : {"de", "en", "fr", "ja"})
            write(path + "/Contents/Resources/" + language + ".lproj/Texts.strings", language);
        write(path + "/Contents/Resources/header.h");
    }
    /// With every module.
    Json scan(int expectedStatus = 0) const { return json({"--all-users", "scan", "--all", "--json"}, expectedStatus); }

    static void collect(const Json& node, Paths& paths) {
        for (const char* kind : {"children", "invisibleChildren"}) {
            for (const auto& child : node[kind])
                collect(child, paths);
        }
        if (node["children"].empty() && node["invisibleChildren"].empty() && !node["path"].is_null())
            paths.push_back(node["path"]);
    }
    /// The items of one user, or of what is shared; a language stands for itself.
    static Paths itemsOf(const Json& object) {
        Paths paths;
        for (const auto& module : object["modules"])
            collect(module["tree"], paths);
        std::ranges::sort(paths);
        return paths;
    }
    static const Json& user(const Json& all, const std::string& name) {
        return *std::ranges::find_if(all["users"], [&](const Json& each) { return each["user"] == name; });
    }
};

TEST_F(AllUsersTest, EverybodysOwnIsListedThereAndWhatIsSharedOnce) {
    const auto all = scan();
    const std::string own = "/Contents/Resources/header.h";
    EXPECT_THAT(itemsOf(user(all, "ann")),
                ElementsAre(home("ann") + "/Applications/Own.app" + own, home("ann") + "/Library/Caches/cache",
                            home("ann") + "/Library/LaunchAgents/gone.plist", "fr", "ja"));
    EXPECT_THAT(itemsOf(user(all, "b$(x)")), ElementsAre(home("b$(x)") + "/Library/Caches/cache"));
    EXPECT_THAT(itemsOf(user(all, "sam")), ElementsAre(cache("cache")));
    EXPECT_THAT(itemsOf(all["shared"]),
                ElementsAre(kLedger + own, kMachineCache, "/Library/LaunchDaemons/gone.plist", "ja"))
        << "a language that anybody prefers stays";
    Paths keys;
    for (const auto& [key, value] : all.items())
        keys.push_back(key);
    EXPECT_THAT(keys, ElementsAre("target", "users", "shared", "totals", "incomplete"));
    std::uint64_t size = all["shared"]["totals"]["foundSize"];
    std::uint64_t count = all["shared"]["totals"]["filesFound"];
    for (const auto& each : all["users"]) {
        size += each["totals"]["foundSize"].get<std::uint64_t>();
        count += each["totals"]["filesFound"].get<std::uint64_t>();
    }
    EXPECT_EQ(all["totals"]["foundSize"], size);
    EXPECT_EQ(all["totals"]["filesFound"], count);

    const auto leftovers = json({"--all-users", "leftovers", "--json"});
    EXPECT_THAT(user(leftovers, "ann")["launchFiles"], ElementsAre(home("ann") + "/Library/LaunchAgents/gone.plist"));
    EXPECT_THAT(user(leftovers, "sam")["launchFiles"], IsEmpty());
    EXPECT_THAT(leftovers["shared"]["launchFiles"], ElementsAre("/Library/LaunchDaemons/gone.plist"));
}

TEST_F(AllUsersTest, CleanRemovesWhatWasShownAndRecordsItWithItsUsers) {
    auto expected = everything();
    for (const auto& user : {"ann", "b$(x)", "sam"})
        expected.erase("/root" + home(user) + "/Library/Caches/cache");
    expected.erase(std::string("/root") + kMachineCache);
    const auto clean = json({"--all-users", "clean", "caches", "--yes", "--json"});
    EXPECT_EQ(everything(), expected);
    EXPECT_EQ(clean["removed"], 4);
    EXPECT_EQ(clean["freed"], 16000);
    EXPECT_EQ(clean["freedText"], "16.00 KB");
    EXPECT_EQ(clean["stopped"], false);

    const auto history = json({"--all-users", "history", "--json"});
    EXPECT_EQ(history["shared"], nullptr);
    const auto& anns = user(history, "ann")["runs"];
    ASSERT_EQ(anns.size(), 2U) << "the first user has the record of what is shared";
    EXPECT_THAT((Paths{anns[0]["run"], anns[1]["run"]}),
                UnorderedElementsAre(user(clean, "ann")["run"], clean["shared"]["run"]));
    ASSERT_EQ(user(history, "sam")["runs"].size(), 1U);
    EXPECT_EQ(user(history, "sam")["runs"][0]["run"], user(clean, "sam")["run"]);
    for (const auto& [name, saved] : std::map<std::string, std::string>{{"ann", "8000\n"}, {"sam", "4000\n"}})
        EXPECT_EQ(runOnVolume({"-u", name, "prefs", "totalSizeSaved"}).output, saved);
    EXPECT_EQ(json({"-u", "ann", "scan", "languages", "--json"})["totals"]["filesFound"], 2)
        << "others' languages are not ann's from now on";

    EXPECT_EQ(json({"--all-users", "clean", "--all", "--yes", "--json"})["couldntRemoveSomething"], false);
    const auto again = scan();
    EXPECT_EQ(again["totals"]["filesFound"], 0) << again.dump(2);
    for (const char* language : {"de", "en", "fr"})
        EXPECT_TRUE(exists(kLedger + std::string("/Contents/Resources/") + language + ".lproj")) << language;
}

TEST_F(AllUsersTest, WhatAnybodyWantsLeftAloneIsLeftAlone) {
    ASSERT_EQ(runOnVolume({"-u", "sam", "ignore", "add", kMachineCache}).exitStatus, 0);
    ASSERT_EQ(runOnVolume({"-u", "b$(x)", "ignore", "apps", "add", kLedger}).exitStatus, 0);
    EXPECT_THAT(itemsOf(scan()["shared"]), Not(Contains(HasSubstr("header.h"))));
    EXPECT_EQ(json({"--all-users", "clean", "system-caches", "dev-junk", "--yes", "--json"})["removed"], 1);
    EXPECT_TRUE(exists(kMachineCache));
    // A switch counts where all have it on; a name does in any case.
    ASSERT_EQ(runOnVolume({"-u", "sam", "modules", "--disable", "languages"}).exitStatus, 0);
    ASSERT_EQ(runOnVolume({"-u", "sam", "modules", "--enable", "system-caches"}).exitStatus, 0);
    const auto items = itemsOf(json({"--all-users", "scan", "--json"})["shared"]);
    EXPECT_THAT(items, Not(Contains("ja")));
    EXPECT_THAT(items, Not(Contains(kMachineCache)));
    EXPECT_THAT(itemsOf(json({"--all-users", "scan", "languages", "--json"})["shared"]), ElementsAre("ja"));
    EXPECT_EQ(json({"--all-users", "scan", "user-caches", "--json"})["shared"], nullptr);
}

TEST_F(AllUsersTest, NoLanguageGoesWhereOnesPreferencesCannotBeRead) {
    fs::permissions(host(home("sam") + kGlobalPreferences), fs::perms::none);
    write(home("b$(x)") + "/Library/Preferences/com.brindle.Sweeply.plist", "torn");
    const auto all = scan();
    EXPECT_EQ(all["incomplete"], true);
    EXPECT_THAT(itemsOf(all["shared"]), Not(Contains("ja")));
    EXPECT_THAT(itemsOf(user(all, "ann")), IsSupersetOf({"fr", "ja"}));
    EXPECT_THAT(itemsOf(user(all, "b$(x)")), ElementsAre(home("b$(x)") + "/Library/Caches/cache"));
    EXPECT_EQ(json({"--all-users", "clean", "--yes", "--json"}, 1)["removed"], 9);
}

TEST_F(AllUsersTest, AHomeThatCannotBeLookedAtStopsNobodyElse) {
    fs::permissions(host(home("sam")), fs::perms::none);
    const auto result = runOnVolume({"--all-users", "clean", "caches", "languages", "--yes", "--json"});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_THAT(result.errors, HasSubstr("sweeply-cli: sam: /Users/sam"));
    const auto clean = Json::parse(result.output);
    EXPECT_THAT(user(clean, "sam")["error"].get<std::string>(), HasSubstr("Permission denied"));
    EXPECT_EQ(clean["removed"], 3 + 2) << "ann's own languages go, and none of those that sam might want";
    fs::permissions(host(home("sam")), fs::perms::owner_all);
    EXPECT_TRUE(exists(cache("cache")));
    EXPECT_TRUE(exists(kLedger + std::string("/Contents/Resources/ja.lproj")));
}

TEST_F(AllUsersTest, AHomeIsCountedOnceAndNoLinkLeadsOut) {
    const auto before = scan();
    link("/Users/alias", "sam");
    link("/Users/outside", m_folder + "/elsewhere");
    link("/Users/dangling", "nowhere");
    write("/../elsewhere/Library/Caches/precious", "1");
    EXPECT_EQ(scan(), before);
    // Of two homes with one owner the first has what is known by its owner alone.
    write("/private/var/folders/aa/bbb/-Caches-/cache", "1");
    const auto all = json({"--all-users", "clean", "user-caches", "--yes", "--json"});
    EXPECT_EQ(all["removed"], 4);
    EXPECT_EQ(user(all, "ann")["removed"], 2);
    EXPECT_EQ(read("/../elsewhere/Library/Caches/precious"), "1");
}

TEST_F(AllUsersTest, OneQuestionAfterEverythingWasShown) {
    const Paths arguments{"--root", m_folder + "/root", "--color", "never", "--all-users", "clean", "caches"};
    const auto before = everything();
    {
        Person person(arguments, {{"HOME", m_folder}});
        ASSERT_TRUE(person.sees("[y/N]"));
        EXPECT_EQ(everything(), before);
        EXPECT_THAT(person.seen(), MatchesRegex("ann\r\n(.|\n)*\nb\\$\\(x\\)\r\n(.|\n)*\nsam\r\n(.|\n)*Shared by "
                                                "all users\r\n(.|\n)*All together\r\n[^\n]*16.00 KB(.|\n)*"));
        person.interrupts();
        EXPECT_EQ(person.endsWith(), 130);
        EXPECT_EQ(everything(), before);
    }
    Person person(arguments, {{"HOME", m_folder}});
    ASSERT_TRUE(person.sees("[y/N]"));
    person.types("y\n");
    EXPECT_EQ(person.endsWith(), 0);
    EXPECT_THAT(person.seen(), HasSubstr("Sweeply has cleaned 16.00 KB"));
    EXPECT_EQ(scan()["totals"]["filesFound"], 6);
}

TEST_F(AllUsersTest, WhatDoesNotGoTogetherIsRefused) {
    const auto before = everything();
    for (const auto& [arguments, complaint] : std::vector<std::pair<Paths, std::string>>{
             {{"--all-users", "-u", "sam", "scan"}, "-u exclude each other"},
             {{"--all-users", "apps"}, "goes with scan, clean, leftovers and history"},
             {{"--all-users", "history", "RUN"}, "say whose it is with -u"},
             {{"--all-users", "scan", "languages", kLedger}, "not with single paths"},
             {{"--all-users", "-c", "/Library/Caches", "scan"}, "must begin with '~/'"},
             {{"--all-users", "-s"}, "goes with scan, clean"},
             {{"--all-users", "-s", "scan"}, "-s exclude each other"},
             {{"--all-users", "scan", "cache"}, "no such module"},
             {{"--all-users", "clean"}, "nobody here to ask"}}) {
        const auto result = runOnVolume(arguments);
        EXPECT_EQ(result.exitStatus, 2) << complaint;
        EXPECT_THAT(result.errors, HasSubstr(complaint));
        EXPECT_EQ(result.output, "");
    }
    EXPECT_EQ(everything(), before);
    fs::remove_all(host("/Users"));
    EXPECT_THAT(runOnVolume({"--all-users", "scan"}).errors, HasSubstr("no user's home"));
}

} // namespace
} // namespace sweeply
