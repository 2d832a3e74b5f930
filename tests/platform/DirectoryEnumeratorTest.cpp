#include "platform/DirectoryEnumerator.h"
#include "platform/DirectoryReader.h"
#include "platform/TestFolder.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <map>
#include <set>

namespace sweeply {
namespace {

namespace fs = std::filesystem;
using testing::Pair;
using testing::UnorderedElementsAre;

DirectoryEnumerator enumeratorOf(const std::string& path) {
    return DirectoryEnumerator(UniqueFd(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)));
}

TEST(DirectoryReaderTest, ReadInTwoPartsGivesEveryNameOnce) {
    const TestFolder folder;
    std::multiset<std::string> expected;
    for (int i = 0; i < 1500; ++i)
        folder.makeFile(*expected.insert("a rather long name for a file, number " + std::to_string(i)));
    std::multiset<std::string> names;
    DirectoryReader first(folder.fd());
    for (int i = 0; i < 617; ++i)
        names.emplace(first.next()->name);
    const UniqueFd again(::open(folder.path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    DirectoryReader second(again.get(), first.position());
    while (const auto entry = second.next())
        names.emplace(entry->name);
    EXPECT_EQ(names, expected);
    EXPECT_EQ(second.errorNumber(), 0);
}

TEST(DirectoryReaderTest, WhatIsNoFolderIsAFailureAndNotEmpty) {
    const TestFolder folder;
    folder.makeFile("file");
    const UniqueFd file(::open(folder.path("file").c_str(), O_RDONLY | O_CLOEXEC));
    DirectoryReader reader(file.get());
    EXPECT_FALSE(reader.next());
    EXPECT_EQ(reader.errorNumber(), ENOTDIR);
}

TEST(DirectoryEnumeratorTest, EveryItemComesOnceParentsFirstAndLinksAreNotFollowed) {
    const TestFolder folder;
    folder.makeFolder("empty");
    folder.makeFile("a/b/file", 77);
    folder.makeFile("a/new\nline");
    folder.makeFile("a/\xff\xfe not UTF-8");
    folder.makeFile("skipped/inside/file");
    folder.makeLink("a/loop", ".");
    folder.makeLink("a/absolute", folder.path("a"));
    folder.makeLink("a/dangling", "nowhere");
    ::mkfifo(folder.path("pipe").c_str(), 0644);
    auto enumerator = enumeratorOf(folder.path());
    std::multimap<std::string, std::string> items;
    std::set<std::string> open{""};
    while (const auto entry = enumerator.next()) {
        const std::string parent = fs::path(entry->path).parent_path();
        EXPECT_TRUE(open.contains(parent)) << entry->path;
        EXPECT_EQ(entry->level, std::ranges::count(entry->path, '/')) << entry->path;
        std::string what = entry->type == FileType::Other ? "other" : "folder";
        if (entry->type == FileType::Regular || entry->type == FileType::SymbolicLink)
            what =
                (entry->type == FileType::Regular ? "file " : "link ") + std::to_string(enumerator.attributes()->size);
        items.emplace(entry->path, what);
        open.insert(entry->path);
        if (entry->path == "skipped")
            enumerator.skipDescendants();
    }
    EXPECT_FALSE(enumerator.failure());
    const auto length = std::to_string(folder.path("a").size());
    EXPECT_THAT(items, UnorderedElementsAre(Pair("empty", "folder"), Pair("a", "folder"), Pair("a/b", "folder"),
                                            Pair("a/b/file", "file 77"), Pair("a/new\nline", "file 1"),
                                            Pair("a/\xff\xfe not UTF-8", "file 1"), Pair("a/loop", "link 1"),
                                            Pair("a/absolute", "link " + length), Pair("a/dangling", "link 7"),
                                            Pair("pipe", "other"), Pair("skipped", "folder")));
}

TEST(DirectoryEnumeratorTest, WhatCannotBeOpenedIsPassedOverAndRemembered) {
    const TestFolder folder;
    folder.makeFile("a/closed/file");
    folder.makeFile("b/file");
    folder.setMode("a/closed", 0);
    auto enumerator = enumeratorOf(folder.path());
    std::set<std::string> paths;
    while (const auto entry = enumerator.next())
        paths.insert(entry->path);
    folder.setMode("a/closed", 0755);
    EXPECT_THAT(paths, UnorderedElementsAre("a", "a/closed", "b", "b/file"));
    ASSERT_TRUE(enumerator.failure());
    EXPECT_EQ(enumerator.failure()->kind, ErrorKind::PermissionDenied);
    EXPECT_EQ(enumerator.failure()->path, "a/closed");

    DirectoryEnumerator none(Failure(Error{ErrorKind::NotFound, "/gone", "No such file or directory"}));
    EXPECT_FALSE(none.next() || none.attributes());
    EXPECT_EQ(none.failure().value().path, "/gone");
}

TEST(DirectoryEnumeratorTest, TreeDeeperThanTheDescriptorsIsWalkedWhole) {
    const TestFolder folder;
    const int items = folder.makeDeepTree("deep", 500);
    const FewDescriptors few(64);
    auto enumerator = enumeratorOf(folder.path("deep"));
    int count = 0;
    int deepest = 0;
    while (const auto entry = enumerator.next()) {
        ++count;
        deepest = std::max(deepest, entry->level);
        if (entry->type == FileType::Regular) {
            ASSERT_EQ(enumerator.attributes()->size, 1u);
        }
    }
    EXPECT_EQ(count, items);
    EXPECT_EQ(deepest, 499);
    EXPECT_FALSE(enumerator.failure());
}

TEST(DirectoryEnumeratorTest, FolderSwappedForALinkDuringTheWalkLeadsNowhere) {
    const TestFolder folder;
    folder.makeFile("victim/file");
    folder.makeFile("walked/d/file");
    auto enumerator = enumeratorOf(folder.path("walked"));
    ASSERT_EQ(enumerator.next()->path, "d");
    fs::rename(folder.path("walked/d"), folder.path("elsewhere"));
    folder.makeLink("walked/d", folder.path("victim"));
    EXPECT_FALSE(enumerator.next());
}

TEST(DirectoryEnumeratorTest, DeepFolderMovedElsewhereDuringTheWalkEndsIt) {
    const TestFolder folder;
    folder.makeFile("other/file");
    folder.makeDeepTree("deep", 120);
    std::string middle = "deep";
    for (int i = 0; i < 60; ++i)
        middle += "/d";
    auto enumerator = enumeratorOf(folder.path("deep"));
    bool isMoved = false;
    while (const auto entry = enumerator.next()) {
        if (entry->level == 119 && !isMoved) {
            fs::rename(folder.path(middle), folder.path("other/moved"));
            isMoved = true;
        }
        ASSERT_NE(entry->path, "file"); // that of "other", where ".." leads now
    }
    EXPECT_TRUE(isMoved);
    EXPECT_TRUE(enumerator.failure());
}

} // namespace
} // namespace sweeply
