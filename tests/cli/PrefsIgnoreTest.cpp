#include "cli/CliWorld.h"
#include "platform/LocalServer.h"

#include <gmock/gmock.h>

namespace sweeply {
namespace {

using testing::HasSubstr;

TEST_F(CliTest, PrefsListsReadsAndSetsWhatIsDocumented) {
    const auto all = json({"prefs", "--json"})["preferences"];
    EXPECT_EQ(all["UseSecureErase"]["type"], "boolean");
    EXPECT_EQ(all["UseSecureErase"]["value"], false);
    EXPECT_EQ(all["IgnoreApps"]["value"], nlohmann::json::array());
    EXPECT_EQ(runOnVolume({"prefs", "UseSecureErase", "yes"}).exitStatus, 0);
    EXPECT_EQ(runOnVolume({"prefs", "UseSecureErase"}).output, "yes\n");
    for (const std::vector<std::string>& wrong : {std::vector<std::string>{"prefs", "Nonsense"},
                                                  {"prefs", "UseSecureErase", "maybe"},
                                                  {"prefs", "Nonsense", "1"}}) {
        const auto result = runOnVolume(wrong);
        EXPECT_EQ(result.exitStatus, 2);
        EXPECT_THAT(result.errors, HasSubstr(wrong[1]));
    }
}

TEST_F(CliTest, ApplicationsGoOnTheIgnoreListAndOffIt) {
    write("/Applications/One.app/Contents/Info.plist",
          "<plist version=\"1.0\"><dict><key>CFBundleIdentifier</key><string>com.example.One</string></dict></plist>");
    EXPECT_EQ(runOnVolume({"ignore", "apps", "add", "/Applications/One.app"}).exitStatus, 0);
    EXPECT_EQ(runOnVolume({"ignore", "apps"}).output, "com.example.One\n");
    EXPECT_EQ(runOnVolume({"ignore", "apps", "add", "/Applications/Two.app"}).exitStatus, 1);
    EXPECT_EQ(json({"ignore", "--json"})["applications"], nlohmann::json::array({"com.example.One"}));
    std::filesystem::remove_all(host("/Applications/One.app"));
    EXPECT_EQ(runOnVolume({"ignore", "apps", "remove", "com.example.One"}).exitStatus, 0);
    EXPECT_EQ(runOnVolume({"ignore", "apps"}).output, "");
}

TEST_F(CliTest, UpdateOfTheSharedListSaysHowItWent) {
    const LocalServer server;
    ::setenv("SWEEPLY_FEED_URL", server.url("/feed").c_str(), 1);
    const auto failed = runOnVolume({"ignore", "--update"});
    EXPECT_EQ(failed.exitStatus, 1);
    EXPECT_THAT(failed.errors, HasSubstr("An error occurred while checking for an update"));
    server.serve("feed", R"(<rss version="2.0" xmlns:blacklist="urn:b"><channel><item><title>x</title>)"
                         R"(<enclosure url="http://127.0.0.1:1/" blacklist:version="0.5"/></item></channel></rss>)");
    const auto latest = runOnVolume({"ignore", "--update"});
    EXPECT_EQ(latest.exitStatus, 0) << latest.errors;
    EXPECT_THAT(latest.output + latest.errors, HasSubstr("You already have the latest version"));
    EXPECT_THAT(server.requests(), HasSubstr("Product=Sweeply"));
    ::unsetenv("SWEEPLY_FEED_URL");
}

} // namespace
} // namespace sweeply
