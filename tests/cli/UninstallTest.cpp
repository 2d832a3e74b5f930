#include "cli/CliWorld.h"

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
    nlohmann::ordered_json uninstall(std::vector<std::string> arguments, int status) {
        arguments.insert(arguments.begin(), {"uninstall", "--json"});
        return json(arguments, status);
    }
};

TEST_F(CliUninstallTest, ApplicationGoesWithWhatBelongsToItAndNothingElseChanges) {
    const auto before = everything();
    EXPECT_EQ(runOnVolume({"uninstall", "/Applications/Harbor Mail.app"}).exitStatus, 2) << "nobody to ask";
    const auto shown = uninstall({"--dry-run", "/Applications/Harbor Mail.app"}, 0);
    EXPECT_TRUE(everything() == before);
    std::vector<std::string> expected;
    for (const auto& item : shown["modules"][0]["tree"]["children"][0]["children"])
        expected.push_back(item["path"]);
    const auto removed = uninstall({"--yes", "/Applications/Harbor Mail.app"}, ::geteuid() == 0 ? 0 : 1);
    EXPECT_EQ(removed["removed"], expected.size() - removed["failed"].size());
    const auto after = everything();
    for (const auto& [path, contents] : before) {
        const bool isRemoved = std::ranges::any_of(expected, [&](const std::string& item) {
            return path == "/root" + item || path.starts_with("/root" + item + "/") ||
                   path.find("com.harborline.mail.pkg") != std::string::npos;
        });
        if (isRemoved || path.find("loginwindow.plist") != std::string::npos)
            continue;
        EXPECT_TRUE(after.contains(path) && after.at(path) == contents) << path;
    }
    EXPECT_FALSE(exists("/Applications/Harbor Mail.app"));
    EXPECT_FALSE(exists("/Users/sam/Library/Preferences/com.harborline.mail.plist"));
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
