#include "cli/CliWorld.h"
#include "formats/MachO.h"

#include <gmock/gmock.h>

namespace sweeply {
namespace {

using testing::HasSubstr;

class CliModulesTest : public CliTest {
  protected:
    static constexpr const char* kApplication = "/Applications/One.app/Contents";

    CliModulesTest() {
        const std::string app = kApplication;
        write(app + "/Info.plist",
              "<plist "
              "version=\"1.0\"><dict><key>CFBundleIdentifier</key><string>com.example.One</string></dict></plist>");
        write(app + "/Resources/fr.lproj/a", "x");
        write(app + "/Headers/a.h", "x");
        const macho::Architecture* list[] = {macho::findArchitecture("ppc"), macho::findArchitecture("i386")};
        write(app + "/MacOS/One", macho::universalExecutable(list, 10));
        std::filesystem::permissions(host(app + "/MacOS/One"), std::filesystem::perms(0755));
    }
    std::vector<std::string> itemNames(const std::vector<std::string>& arguments) const {
        std::vector<std::string> names;
        const auto found = json(arguments);
        for (const auto& module : found["modules"]) {
            for (const auto& item : module["tree"]["children"])
                names.push_back(item["name"]);
        }
        return names;
    }
};

TEST_F(CliModulesTest, EachModuleFindsAndCleansAndFindsNothingAfterwards) {
    const auto listed = runOnVolume({"scan", "--all"}).output;
    for (const char* heading : {"[x] Caches\n", "[x] Logs\n", "[x] Language Files\n", "[x] Universal Binaries\n",
                                "[x] Development Junk\n", "[x] Extensions\n"})
        EXPECT_THAT(listed, HasSubstr(heading)) << "named for people";
    for (const char* module : {"languages", "binaries", "dev-junk"}) {
        EXPECT_EQ(itemNames({"scan", module, "--json"}).size(), 1U) << module;
        const auto cleaned = json({"clean", module, "--yes", "--json"});
        EXPECT_EQ(cleaned["removed"], 1) << module;
        EXPECT_TRUE(itemNames({"scan", module, "--json"}).empty()) << module;
    }
    EXPECT_TRUE(exists("/Applications/One.app/.Clean"));
}

TEST_F(CliModulesTest, PathsAreLookedAtInPlaceOfAScan) {
    write("/Users/sam/Disk/.DS_Store", "x");
    EXPECT_EQ(itemNames({"scan", "dev-junk", "~/Disk", "--json"}), std::vector<std::string>{"Finder Junk"});
    EXPECT_EQ(itemNames({"scan", "languages", "/Applications/One.app", "--json"}), std::vector<std::string>{"One"});
    EXPECT_EQ(runOnVolume({"clean", "dev-junk", "/Users/sam/Disk", "--yes"}).exitStatus, 0);
    EXPECT_FALSE(exists("/Users/sam/Disk/.DS_Store"));
    EXPECT_TRUE(exists(std::string(kApplication) + "/Headers/a.h"));
    EXPECT_THAT(runOnVolume({"scan", "caches", "/Applications"}).errors, HasSubstr("caches: takes no paths"));
    EXPECT_EQ(runOnVolume({"scan", "/Applications"}).exitStatus, 2);
    EXPECT_EQ(runOnVolume({"scan", "languages", "./here"}).exitStatus, 2) << "the working folder is outside the root";
}

TEST_F(CliModulesTest, UnknownProcessorsAreSaidAndArchTells) {
    setVersion("10.5.8");
    const auto scanned = runOnVolume({"scan", "binaries"});
    EXPECT_EQ(scanned.exitStatus, 0);
    EXPECT_THAT(scanned.errors, HasSubstr("Universal Binaries module error"));
    const auto told = run({"--root", m_folder + "/root", "--arch", "ppc", "scan", "binaries"});
    EXPECT_THAT(told.output, HasSubstr("/Applications/One.app/Contents/MacOS/One"));
    EXPECT_EQ(run({"--root", m_folder + "/root", "--arch", "vax", "scan"}).exitStatus, 2);
}

TEST_F(CliModulesTest, NativeLanguageIsKeptWhereNobodyCanBeAsked) {
    write("/Users/sam/Library/Preferences/.GlobalPreferences.plist",
          "<plist version=\"1.0\"><dict><key>AppleLanguages</key><array><string>fr</string><string>en</string></array>"
          "</dict></plist>");
    EXPECT_EQ(runOnVolume({"prefs", "LanguagesToLeave", "fr=no"}).exitStatus, 0);
    const auto cleaned = runOnVolume({"clean", "languages", "--yes"});
    EXPECT_THAT(cleaned.errors, HasSubstr("[Cancel]"));
    EXPECT_TRUE(exists(std::string(kApplication) + "/Resources/fr.lproj"));
    EXPECT_EQ(runOnVolume({"prefs", "LanguagesToLeave", "fr=yes"}).exitStatus, 0);
    EXPECT_EQ(runOnVolume({"prefs", "LanguagesToLeave"}).output, "fr=yes,en=yes\n");
}

TEST_F(CliModulesTest, EraseRemovesNamedItemsAndOnlyThose) {
    write("/Users/sam/Documents/a", std::string(5000, 's'));
    write("/Users/sam/Documents/b", "kept");
    link("/Users/sam/Documents/link", "b");
    EXPECT_EQ(runOnVolume({"erase", "~/Documents/a"}).exitStatus, 2) << "nobody to ask";
    EXPECT_THAT(runOnVolume({"erase", "--dry-run", "~/Documents/a"}).output, HasSubstr("~/Documents/a"));
    EXPECT_TRUE(exists("/Users/sam/Documents/a"));
    const auto erased = json({"erase", "--secure", "--yes", "--json", "~/Documents/a", "~/Documents/link"});
    EXPECT_EQ(erased["removed"], 2);
    EXPECT_FALSE(exists("/Users/sam/Documents/a") || exists("/Users/sam/Documents/link"));
    EXPECT_EQ(read("/Users/sam/Documents/b"), "kept");
    EXPECT_EQ(runOnVolume({"erase", "--yes", "/Users/sam/Library", "/nothing"}).exitStatus, 1);
    EXPECT_TRUE(exists("/Users/sam/Library/Caches"));
}

TEST_F(CliTest, ShellsLearnTheCommandsThatThereAre) {
    const auto bash = run({"completion", "bash"});
    EXPECT_EQ(bash.exitStatus, 0);
    for (const char* known :
         {"uninstall) words=\"--help --json --all-items --why --dry-run --weak --yes --keep --no-keep --plan --force\"",
          "dev-junk", "leftovers"})
        EXPECT_NE(bash.output.find(known), std::string::npos) << known;
    ProcessOptions options;
    EXPECT_TRUE(runProcess("/bin/bash", {"-n", "-c", bash.output}, options)->succeeded());
    EXPECT_NE(run({"completion", "fish"}).output.find("-a extensions -d 'List"), std::string::npos);
    EXPECT_EQ(run({"completion", "csh"}).exitStatus, 2);
}

} // namespace
} // namespace sweeply
