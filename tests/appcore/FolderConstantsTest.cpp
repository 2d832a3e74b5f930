#include "appcore/FolderConstants.h"

#include "platform/RemovalGuard.h"
#include "platform/TestFolder.h"

#include <gtest/gtest.h>

namespace sweeply {
namespace {

TEST(FolderConstantsTest, OnlyALoneTildeIsExpanded) {
    const FolderConstants folders("ann");
    EXPECT_EQ(folders.expandTilde("~"), "/Users/ann");
    EXPECT_EQ(folders.expandTilde("~/Library/"), "/Users/ann/Library/");
    for (const std::string path : {"~bob/x", "/a/~/b", "a", ""})
        EXPECT_EQ(folders.expandTilde(path), path);
}

TEST(FolderConstantsTest, WellKnownFoldersAreProtectedAndTheirContentsAreNot) {
    FolderConstants folders("ann");
    folders.HOMECACHESPATH = "/Data/caches";
    RemovalGuard guard;
    for (const std::string& folder : folders.protectedFolders())
        guard.protect(folder);
    for (const auto& path : words(
             "/ /System /Library /Applications /Users /private /private/var/log /Volumes /Users/ann /Users/ann/Library "
             "/Users/ann/Documents /Users/ann/Library/Preferences /Users/ann/Library/Caches "
             "/Users/ann/Library/QuickTime /Data/caches /Data /Library/LaunchDaemons /System/Library/Caches"))
        EXPECT_NE(guard.reasonAgainst(path), "") << path;
    for (const std::string path :
         {"/Applications/A.app", "/Users/ann/Library/Caches/com.a", "/Users/bob/x", "/Data/caches/x",
          "/Users/ann/Library/Application Support/Growl", "/Users/ann/Library/Cookies/Cookies.plist",
          "/private/var/log/system.log", "/Library/Receipts/A.pkg"})
        EXPECT_EQ(guard.reasonAgainst(path), "") << path;
}

} // namespace
} // namespace sweeply
