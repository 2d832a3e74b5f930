#include "platform/SystemVersion.h"

#include "platform/FileManager.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

namespace sweeply {
namespace {

namespace fs = std::filesystem;

TEST(SystemVersion, ProductVersionsMapToTheFrameworksOwnNumbers) {
    struct Row {
        const char* productVersion;
        double appKit;
        bool isTiger, isOnTigerOrBetter, isOnLeopardOrBetter, isSnowLeopardOrBetter;
    };
    for (const Row& row : {
             Row{"10.2.8", 663.6, false, false, false, false},
             Row{"10.3.9", 743.36, false, false, false, false},
             Row{"10.4", 824, true, true, false, false},
             Row{"10.4.2", 824.1, true, true, false, false},
             Row{"10.4.11", 824.41, true, true, false, false},
             Row{"10.5.1", 949, false, true, true, false},
             Row{"10.5.7", 949.33, false, true, true, false},
             Row{"10.5.8", 949.54, false, true, true, false},
             Row{"10.6", 1038, false, true, true, true},
             Row{"10.6.8", 1038, false, true, true, true},
             Row{"10.15.7", 1138, false, true, true, true},
             Row{"14.1", 1138, false, true, true, true},
         }) {
        const auto version = SystemVersion::fromProductVersion(row.productVersion);
        ASSERT_TRUE(version) << row.productVersion;
        EXPECT_EQ(version->appKitVersion(), row.appKit) << row.productVersion;
        EXPECT_EQ(version->isTiger(), row.isTiger) << row.productVersion;
        EXPECT_EQ(version->isOnTigerOrBetter(), row.isOnTigerOrBetter) << row.productVersion;
        EXPECT_EQ(version->isOnLeopardOrBetter(), row.isOnLeopardOrBetter) << row.productVersion;
        EXPECT_EQ(version->isSnowLeopardOrBetter(), row.isSnowLeopardOrBetter) << row.productVersion;
    }
    for (const char* odd :
         {"", "10", "10.", "10.6.", "10.6.8.1", "9.2.2", "10.x", "-10.6", " 10.6", "10.99999999999", "10.6\n"})
        EXPECT_FALSE(SystemVersion::fromProductVersion(odd)) << odd;
}

TEST(SystemVersion, TheFileOfTheTargetDecidesOrIsNamedInTheError) {
    std::string root = fs::temp_directory_path() / "version-XXXXXX";
    ASSERT_NE(mkdtemp(root.data()), nullptr);
    const auto fileManager = *FileManager::open(root);
    const auto kindOfFailure = [&] {
        const auto version = SystemVersion::read(*fileManager);
        EXPECT_EQ(version.error().path, "/System/Library/CoreServices/SystemVersion.plist");
        EXPECT_FALSE(version.error().reason.empty());
        return version.error().kind;
    };
    EXPECT_EQ(kindOfFailure(), ErrorKind::NotFound);

    const fs::path file = root + "/System/Library/CoreServices/SystemVersion.plist";
    fs::create_directories(file.parent_path());
    const auto write = [&](const std::string& content) {
        std::ofstream(file) << "<plist version=\"1.0\"><dict>" << content << "</dict></plist>";
    };
    for (const char* content : {"<key>ProductVersion", "", "<key>ProductVersion</key><real>10.6</real>",
                                "<key>ProductVersion</key><string>Leopard</string>"}) {
        write(content);
        EXPECT_EQ(kindOfFailure(), ErrorKind::Damaged) << content;
    }
    write("<key>ProductName</key><string>Mac OS X</string><key>ProductVersion</key><string>10.5.8</string>");
    EXPECT_EQ(SystemVersion::read(*fileManager)->productVersion(), "10.5.8");
    fs::remove_all(root);
}

} // namespace
} // namespace sweeply
