#include "cli/CliWorld.h"

#include <unistd.h>

namespace sweeply {

TEST_F(CliTest, WrongCommandLinesAndTargetsEndWithOneLine) {
    const std::string root = m_folder + "/root";
    write("/../twoUsers/Users/ann/Library/x", "");
    write("/../twoUsers/Users/ben/Library/x", "");
    write("/../damaged/Users/ann/Library/x", "");
    write("/../damaged/System/Library/CoreServices/SystemVersion.plist", "torn");
    const struct {
        std::vector<std::string> arguments;
        const char* says;
    } rows[]{
        {{}, "no command"},
        {{"scan"}, "no Mac OS X system on this machine"},
        {{"--root", root + "/nowhere", "scan"}, "nowhere: No such file or directory"},
        {{"--root", m_folder + "/victim", "scan"}, "victim: Not a directory"},
        {{"--root", m_folder + "/twoUsers", "scan"}, "several users (ann, ben)"},
        {{"--root", m_folder + "/twoUsers", "-u", "ann", "scan"}, "no Mac OS X system"},
        {{"--root", m_folder + "/damaged", "scan"}, "SystemVersion.plist"},
        {{"--root", root + "/Library", "scan"}, "no user's home"},
        {{"--root", root, "-u", "nobody", "scan"}, "Wrong user name"},
        {{"--root", root, "-c", "/nowhere", "scan"}, "Path '/nowhere' doesn't exist"},
        {{"--root", root, "-q", "scan"}, "'-q' is unknown reference. Enter -h or --help for detailed information"},
        {{"--root", root, "--os", "XP", "scan"}, "'XP' is no version"},
        {{"--root", root, "--pace", "fast", "scan"}, "'fast'"},
        {{"--root"}, "'--root' needs something after it"},
        {{"--root", root, "sweep"}, "'sweep' is no command. Enter"},
        {{"--root", root, "unistall"}, "'unistall' is no command (did you mean 'uninstall'?). Enter"},
        {{"--root", root, "scan", "attic"}, "attic: no such module; there are"},
        {{"--root", root, "scan", "cahces"}, "cahces: no such module (did you mean 'caches'?); there are"},
        {{"--root", root, "prefs", "usesecurerase"}, "no such preference (did you mean 'UseSecureErase'?); there are"},
        {{"--root", root, "-u", "sma", "scan"}, "Wrong user name (did you mean 'sam'?)"},
        {{"--root", root, "scan", "--loud"}, "--loud"},
        {{"--root", root, "clean"}, "nobody here to ask"},
        {{"size", root + "/nowhere"}, "nowhere: No such file or directory"},
        {{"sample", root}, "root"},
    };
    write(cache("file"), "1");
    const auto before = everything();
    for (const auto& row : rows) {
        const auto result = run(row.arguments);
        EXPECT_EQ(result.exitStatus, 2) << row.says;
        EXPECT_NE(result.errors.find(row.says), std::string::npos) << result.errors;
        EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 1) << result.errors;
    }
    EXPECT_EQ(everything(), before);
}

TEST_F(CliTest, UnreadableFolderIsNamedAndTheRestGoesOn) {
    write(cache("file"), "1");
    write("/Users/sam/Pictures/Library/iPod Photo Cache/thumb", "1");
    std::filesystem::permissions(host(kCaches), std::filesystem::perms::none);
    ASSERT_NE(::access(host(kCaches).c_str(), R_OK), 0) << "only outside script/confined is nothing unreadable";
    const auto result = runOnVolume({"scan", "--json"});
    std::filesystem::permissions(host(kCaches), std::filesystem::perms::owner_all);
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_NE(result.errors.find("/Users/sam/Library/Caches: Permission denied"), std::string::npos) << result.errors;
    const auto photos = itemsOf(nlohmann::ordered_json::parse(result.output), 1);
    EXPECT_EQ(photos.count("\"Library\" Photo Cache"), 1u);
}

TEST_F(CliTest, DamagedReceiptIsNamedAndTheRestGoesOn) {
    write("/var/db/receipts/com.example.torn.plist", "<plist version=\"1.0\"><dict/></plist>");
    write("/var/db/receipts/com.example.torn.bom", "torn");
    const auto result = runOnVolume({"receipts"});
    EXPECT_EQ(result.output, "com.example.torn\n");
    EXPECT_EQ(result.errors, "sweeply-cli: /var/db/receipts/com.example.torn.bom: no bill of materials\n");
}

TEST_F(CliTest, SettingsThatCannotBeWrittenDoNotStopAScan) {
    write(cache("file"), "1");
    const auto folder = host("/Users/sam/Library/Preferences");
    std::filesystem::permissions(folder, std::filesystem::perms::owner_read | std::filesystem::perms::owner_exec);
    EXPECT_EQ(json({"scan", "--json"})["totals"]["filesFound"], 1);
    if (::access(folder.c_str(), W_OK) != 0) {
        const auto result = runOnVolume({"modules", "--disable", "caches"});
        EXPECT_EQ(result.exitStatus, 1);
        EXPECT_NE(result.errors.find("Permission denied"), std::string::npos) << result.errors;
    }
    std::filesystem::permissions(folder, std::filesystem::perms::owner_all);
}

TEST_F(CliTest, SizesAreShownForWhatIsThere) {
    write("/a", "1");
    write("/b/c", std::string(4001, 'c'));
    link("/b/link", "/a");
    const auto sizes = json({"size", "/a", "/nowhere", "/b", "--json"}, 2);
    EXPECT_EQ(sizes["sizes"][0]["size"], 4000);
    EXPECT_EQ(sizes["sizes"][1]["size"], 12000);
    EXPECT_EQ(sizes["total"], 16000);
    EXPECT_EQ(sizes["totalText"], "16.00 KB");
}

TEST_F(CliTest, ApplicationsAreListedWithWhatTheySayOfThemselves) {
    write("/Applications/Good.app/Contents/Info.plist",
          "<plist version=\"1.0\"><dict><key>CFBundleIdentifier</key><string>com.example.good</string></dict></plist>");
    write("/Applications/Torn.app/Contents/Info.plist", "torn");
    makeFolder("/Applications/Good.app/Contents/Support/Nested.app");
    const auto apps = json({"apps", "--json"});
    ASSERT_EQ(apps["filtered"].size(), 2u);
    EXPECT_EQ(apps["filtered"][0]["bundleID"], "com.example.good");
    EXPECT_TRUE(apps["filtered"][0]["name"].is_null());
    EXPECT_TRUE(apps["filtered"][1]["bundleID"].is_null());
}

TEST_F(CliTest, FoldersInUseArePrinted) {
    const auto result = runOnVolume({"-LC", "/Library", "-s"});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_NE(result.output.find("User Cache path = /Users/sam/Library/Caches/\n"), std::string::npos) << result.output;
    EXPECT_NE(result.output.find("Library Cache path = /Library\n"), std::string::npos);
}

} // namespace sweeply
