#include "platform/FileManager.h"

#include "platform/DirectoryEnumerator.h"
#include "platform/Volume.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

namespace sweeply {
namespace {

using testing::IsEmpty;
using testing::UnorderedElementsAre;

class FileManagerTest : public VolumeTest {
  protected:
    static ErrorKind kindOf(const Result<void>& result) {
        EXPECT_FALSE(result);
        return result ? ErrorKind::Other : result.error().kind;
    }
};

TEST_F(FileManagerTest, LinksEndInsideTheRootHoweverTheyAreWritten) {
    write("/Library/file", "inside");
    write("/victim", "decoy");
    link("/absolute", "/Library");
    link("/climbing", "../../../../victim");
    link("/outside", m_folder + "/victim");
    EXPECT_EQ(files().contentsAtPath("/absolute/file", 100).value(), "inside");
    EXPECT_EQ(files().contentsAtPath("/climbing", 100).value(), "decoy");
    EXPECT_EQ(files().contentsAtPath("/../../victim", 100).value(), "decoy");
    EXPECT_FALSE(files().fileExistsAtPath("/outside"));
    EXPECT_EQ(files().attributesOfItemAtPath("/outside", Links::DontFollow)->type, FileType::SymbolicLink);
    EXPECT_EQ(files().destinationOfSymbolicLinkAtPath("/absolute").value(), "/Library");
    EXPECT_EQ(files().hostPath("/absolute/file").value(), host("/Library/file"));
    EXPECT_EQ(files().hostPath("/absolute").value(), host("/absolute"));
    EXPECT_EQ(files().hostPath("/").value(), host(""));
}

TEST_F(FileManagerTest, PathsThatAreNoneAreRefusedByName) {
    for (const std::string path : {"", "relative", "../victim", "~"}) {
        EXPECT_EQ(files().contentsAtPath(path, 10).error().path, path);
        EXPECT_FALSE(files().fileExistsAtPath(path));
    }
    EXPECT_FALSE(files().contentsAtPath(std::string("/a\0b", 4), 10));
}

TEST_F(FileManagerTest, ContentsAreWholeOrRefused) {
    const std::string large(200'000, 'x');
    write("/large", large);
    write("/empty", "");
    ASSERT_EQ(::mkfifo(host("/fifo").c_str(), 0600), 0);
    EXPECT_EQ(files().contentsAtPath("/large", large.size()).value(), large);
    EXPECT_EQ(files().contentsAtPath("/large", large.size() - 1).error().kind, ErrorKind::TooLarge);
    EXPECT_EQ(files().contentsAtPath("/empty", 0).value(), "");
    EXPECT_EQ(files().contentsAtPath("/fifo", 10).error().kind, ErrorKind::WrongType);
    EXPECT_EQ(files().contentsAtPath("/", 10).error().kind, ErrorKind::WrongType);
    EXPECT_EQ(files().contentsAtPath("/none", 10).error().message(), "/none: No such file or directory");
}

TEST_F(FileManagerTest, NamesAreBytes) {
    const std::string odd = "/folder/\xff\n\"$(x)";
    write(odd, "1");
    EXPECT_EQ("/folder/" + files().contentsOfDirectoryAtPath("/folder").value().at(0).name, odd);
    EXPECT_TRUE(files().removeItemAtPath(odd));
    EXPECT_THAT(names("/folder"), IsEmpty());
}

TEST_F(FileManagerTest, AtomicWriteKeepsTheModeAndReplacesALink) {
    write("/file", "old");
    setMode("/file", 0640);
    write("/elsewhere", "kept");
    link("/link", "elsewhere");
    EXPECT_TRUE(files().writeAtomically("/file", "new"));
    EXPECT_TRUE(files().writeAtomically("/link", "new"));
    EXPECT_TRUE(files().writeAtomically("/fresh", "new", 0600));
    EXPECT_EQ(read("/file"), "new");
    EXPECT_EQ(files().attributesOfItemAtPath("/file", Links::Follow)->mode, 0640U);
    EXPECT_EQ(files().attributesOfItemAtPath("/fresh", Links::Follow)->mode, 0600U);
    EXPECT_EQ(read("/elsewhere"), "kept");
    EXPECT_EQ(files().attributesOfItemAtPath("/link", Links::DontFollow)->type, FileType::Regular);
    EXPECT_FALSE(files().writeAtomically("/none/file", "new"));
    makeFolder("/folder");
    EXPECT_FALSE(files().writeAtomically("/folder", "new"));
    EXPECT_THAT(names(""), UnorderedElementsAre("file", "elsewhere", "link", "fresh", "folder"));
}

TEST_F(FileManagerTest, FoldersAreMadeWithThoseAboveThem) {
    link("/alias", "/a/b");
    for (const char* path : {"/a/b/c", "/a/b/c/", "/alias/d"})
        EXPECT_TRUE(files().createDirectoryAtPath(path)) << path;
    EXPECT_TRUE(exists("/a/b/d"));
    write("/file");
    link("/dangling", "nothing");
    for (const char* path : {"/file", "/file/x", "relative", "/dangling"})
        EXPECT_FALSE(files().createDirectoryAtPath(path)) << path;
}

TEST_F(FileManagerTest, NothingIsReplacedByAMoveOrANewFile) {
    write("/from", "1");
    write("/to", "2");
    EXPECT_EQ(kindOf(files().moveItemAtPath("/from", "/to")), ErrorKind::AlreadyExists);
    EXPECT_EQ(kindOf(files().createFileAtPath("/to", "3")), ErrorKind::AlreadyExists);
    EXPECT_EQ(read("/to"), "2");
    EXPECT_TRUE(files().moveItemAtPath("/from", "/new"));
    EXPECT_EQ(read("/new"), "1");
    EXPECT_EQ(kindOf(files().moveItemAtPath("/from", "/x")), ErrorKind::NotFound);
}

TEST_F(FileManagerTest, RemovalTakesTheTreeAndNeverWhatLinksInItLeadTo) {
    write("/keep/file", "kept");
    write("/tree/sub/file", "1");
    link("/tree/out", "../../victim");
    link("/tree/sub/keep", "/keep");
    link("/link", "/keep");
    EXPECT_TRUE(files().removeItemAtPath("/tree/"));
    EXPECT_TRUE(files().removeItemAtPath("/link"));
    EXPECT_EQ(kindOf(files().removeItemAtPath("/tree")), ErrorKind::NotFound);
    EXPECT_THAT(names(""), UnorderedElementsAre("keep"));
    EXPECT_EQ(read("/keep/file"), "kept");
}

TEST_F(FileManagerTest, RemovalNamesWhatCouldNotGoAndTakesTheRest) {
    write("/tree/locked/file", "1");
    write("/tree/other", "1");
    setMode("/tree/locked", 0500);
    const auto removed = files().removeItemAtPath("/tree");
    setMode("/tree/locked", 0700);
    EXPECT_EQ(removed.error().message(), "/tree/locked/file: Permission denied");
    EXPECT_FALSE(exists("/tree/other"));
}

TEST_F(FileManagerTest, CompanionGoesWithItsItemAndOnlyWithIt) {
    const std::string companion("\0\5\26\7 more", 9);
    // Few items are looked for one by one, many in a list.
    for (const int others : {0, 100}) {
        const std::string folder = "/folder" + std::to_string(others) + "/";
        for (int i = 0; i < others; ++i) {
            write(folder + std::to_string(i), "1");
            EXPECT_TRUE(files().removeItemAtPath(folder + std::to_string(i)));
            write(folder + "._item", companion); // it is there when the folder is listed
        }
        write(folder + "item/inside", "1");
        write(folder + "._item", companion);
        write(folder + "text", "1");
        write(folder + "._text", "no companion");
        write(folder + "short", "1");
        write(folder + "._short", companion.substr(0, 3));
        link(folder + "._link", "../victim");
        write(folder + "link", "1");
        write(folder + "._folder/file", "1");
        makeFolder(folder + "folder");
        write(folder + "._Item", companion);
        write(folder + "._none", companion);
        for (const char* name : {"item", "text", "short", "link", "folder"})
            EXPECT_TRUE(files().removeItemAtPath(folder + name)) << name;
        EXPECT_EQ(kindOf(files().removeItemAtPath(folder + "none")), ErrorKind::NotFound);
        EXPECT_THAT(names(folder), UnorderedElementsAre("._text", "._short", "._link", "._folder", "._Item", "._none"));
        files().removals().forgetFoldersOfRemovals();
    }
    write("/tree/locked/file", "1");
    write("/._tree", companion);
    std::filesystem::permissions(host("/tree/locked"), std::filesystem::perms::owner_read);
    EXPECT_FALSE(files().removeItemAtPath("/tree"));
    std::filesystem::permissions(host("/tree/locked"), std::filesystem::perms::owner_all);
    EXPECT_TRUE(exists("/._tree")) << "what it belongs to is still there";
}

/// Removals with the folders of one user protected.
class RemovalRefusalTest : public FileManagerTest {
  protected:
    RemovalRefusalTest() {
        for (const char* path : {"/Users/sam", "/Users/sam/Library/Caches", "/Library/Caches", "/var"})
            files().removals().guard().protect(path);
        write("/Users/sam/Library/Caches/item", "1");
        makeFolder("/Library/Caches");
    }
};

TEST_F(RemovalRefusalTest, ProtectedRootRelativeAndClimbingPathsAreRefused) {
    files().removals().refreshGuard();
    link("/alias", "/Users/sam");
    link("/evil", "/Users");
    auto refused =
        words("/ // /. relative Users/sam /.. /Users/.. /tmp/../Users /Users/sam/Library/Caches/../../.. /Users "
              "/Users/sam /Users/sam/ /users/SAM //Users//sam /Users/./sam /Users/sam/Library /LIBRARY/caches "
              "/alias/Library /alias/Library/Caches/item /evil/sam/Library/Caches/item");
    refused.emplace_back();
    for (const auto& path : refused) {
        EXPECT_EQ(kindOf(files().removeItemAtPath(path)), ErrorKind::Protected) << path;
        EXPECT_FALSE(files().removals().openReferenceForRemoval(path)) << path;
    }
    EXPECT_EQ(read("/Users/sam/Library/Caches/item"), "1");
    EXPECT_EQ(kindOf(files().moveItemAtPath("/Users/sam", "/elsewhere")), ErrorKind::Protected);
    EXPECT_TRUE(files().removeItemAtPath("/alias")); // the link itself is nobody's folder
    EXPECT_TRUE(files().removeItemAtPath("/evil"));
    EXPECT_TRUE(files().removeItemAtPath("/Users/sam/Library/Caches/item"));
    EXPECT_TRUE(exists("/Users/sam/Library/Caches"));
}

TEST_F(RemovalRefusalTest, ProtectedFolderThatIsALinkIsKnownByItsPlaceToo) {
    write("/private/var/cache/item", "1");
    link("/var", "private/var");
    remove("/Users/sam/Library/Caches");
    write("/Volumes/Data/sam/caches/item", "2");
    link("/Users/sam/Library/Caches", "/Volumes/Data/sam/caches");
    EXPECT_EQ(kindOf(files().removeItemAtPath("/var/cache/item")), ErrorKind::Protected);
    files().removals().refreshGuard();
    for (const std::string path : {"/var", "/private/var", "/private", "/Users/sam/Library/Caches", "/Volumes/Data",
                                   "/Volumes/Data/sam", "/Volumes/Data/sam/caches"})
        EXPECT_EQ(kindOf(files().removeItemAtPath(path)), ErrorKind::Protected) << path;
    EXPECT_TRUE(files().removeItemAtPath("/var/cache/item"));
    EXPECT_TRUE(files().removeItemAtPath("/Users/sam/Library/Caches/item"));
    EXPECT_FALSE(exists("/private/var/cache/item"));
    EXPECT_FALSE(exists("/Volumes/Data/sam/caches/item"));
}

TEST_F(RemovalRefusalTest, FolderThatBecameALinkDuringTheRunLeadsNowhere) {
    write("/Users/sam/Documents/item", "precious");
    write("/Users/sam/Library/Caches/app/item", "1");
    files().removals().refreshGuard();
    remove("/Users/sam/Library/Caches/app");
    link("/Users/sam/Library/Caches/app", "/Users/sam/Documents");
    EXPECT_EQ(kindOf(files().removeItemAtPath("/Users/sam/Library/Caches/app/item")), ErrorKind::Protected);
    EXPECT_EQ(read("/Users/sam/Documents/item"), "precious");
}

TEST(RemovalGuardTest, ProtectsWhatAFolderStandsInButNotItsContents) {
    RemovalGuard guard;
    guard.protect("/Users/sam/Library/");
    EXPECT_THAT(guard.paths(), UnorderedElementsAre("/Users/sam/Library", "/Users/sam", "/Users"));
    for (const char* path : {"/users/Sam/library", "/Users/", "/Users/sam/.", "", "x", "/a/..", "/../a", "/"})
        EXPECT_NE(guard.reasonAgainst(path), "") << path;
    for (const char* path : {"/Users/sam/Library/x", "/Users/samuel", "/a..b", "/...", "/Users/sam/..x"})
        EXPECT_EQ(guard.reasonAgainst(path), "") << path;
}

} // namespace
} // namespace sweeply
