#include "platform/SystemVersion.h"

#include "platform/Volume.h"

namespace sweeply {
namespace {

using SystemVersionTest = VolumeTest;

TEST_F(SystemVersionTest, ProductVersionsMapToTheFrameworksOwnNumbers) {
    const struct {
        const char* version;
        double appKit;
        std::string is; ///< T tiger, t, l, s: that one or better
    } rows[]{
        {"10.2.8", 663.6, ""},     {"10.3.9", 743.36, ""},  {"10.4", 824, "Tt"},      {"10.4.2", 824.1, "Tt"},
        {"10.4.11", 824.41, "Tt"}, {"10.5.1", 949, "tl"},   {"10.5.7", 949.33, "tl"}, {"10.5.8", 949.54, "tl"},
        {"10.6", 1038, "tls"},     {"10.6.8", 1038, "tls"}, {"10.15.7", 1138, "tls"}, {"14.1", 1138, "tls"},
    };
    for (const auto& row : rows) {
        const auto version = SystemVersion::fromProductVersion(row.version);
        ASSERT_TRUE(version) << row.version;
        EXPECT_EQ(version->appKitVersion(), row.appKit) << row.version;
        const auto is = [](bool isSo, const char* letter) { return isSo ? letter : ""; };
        EXPECT_EQ(std::string(is(version->isTiger(), "T")) + is(version->isOnTigerOrBetter(), "t") +
                      is(version->isOnLeopardOrBetter(), "l") + is(version->isSnowLeopardOrBetter(), "s"),
                  row.is)
            << row.version;
    }
    for (const char* odd :
         {"", "10", "10.", "10.6.", "10.6.8.1", "9.2.2", "10.x", "-10.6", " 10.6", "10.99999999999", "10.6\n"})
        EXPECT_FALSE(SystemVersion::fromProductVersion(odd)) << odd;
}

TEST_F(SystemVersionTest, TheFileOfTheTargetDecidesOrIsNamedInTheError) {
    const std::string file = "/System/Library/CoreServices/SystemVersion.plist";
    const auto kindOfFailure = [&] {
        const auto version = SystemVersion::read(files());
        EXPECT_EQ(version.error().path, file);
        EXPECT_FALSE(version.error().reason.empty());
        return version.error().kind;
    };
    EXPECT_EQ(kindOfFailure(), ErrorKind::NotFound);
    const auto writeList = [&](const std::string& content) {
        write(file, "<plist version=\"1.0\"><dict>" + content + "</dict></plist>");
    };
    for (const char* content : {"<key>ProductVersion", "", "<key>ProductVersion</key><real>10.6</real>",
                                "<key>ProductVersion</key><string>Leopard</string>"}) {
        writeList(content);
        EXPECT_EQ(kindOfFailure(), ErrorKind::Damaged) << content;
    }
    writeList("<key>ProductName</key><string>Mac OS X</string><key>ProductVersion</key><string>10.5.8</string>");
    EXPECT_EQ(SystemVersion::read(files())->productVersion(), "10.5.8");
}

} // namespace
} // namespace sweeply
