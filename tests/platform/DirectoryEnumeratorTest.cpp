#include "platform/DirectoryEnumerator.h"
#include "platform/DirectoryReader.h"
#include "platform/TestFolder.h"

#include <gmock/gmock.h>
#include <map>
#include <set>

namespace sweeply {
namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::ElementsAre;
using testing::Pair;
using testing::UnorderedElementsAre;

DirectoryEnumerator enumeratorOf(const std::string& path) {
    return DirectoryEnumerator(UniqueFd(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)));
}

std::map<std::string, FileType> walk(DirectoryEnumerator enumerator) {
    std::map<std::string, FileType> items;
    while (const auto entry = enumerator.next())
        EXPECT_TRUE(items.emplace(entry->path, entry->type).second) << entry->path;
    EXPECT_FALSE(enumerator.failure()) << enumerator.failure()->message();
    return items;
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

TEST(DirectoryEnumeratorTest, EveryItemIsReturnedOnceAndLinksAreNotFollowed) {
    const TestFolder folder;
    folder.makeFolder("empty");
    folder.makeFile("a/b/file");
    folder.makeFile("a/new\nline");
    folder.makeFile("a/\xff\xfe not UTF-8");
    folder.makeLink("a/loop", ".");
    folder.makeLink("a/absolute", folder.path("a"));
    folder.makeLink("a/dangling", "nowhere");
    ::mkfifo(folder.path("pipe").c_str(), 0644);

    EXPECT_THAT(walk(enumeratorOf(folder.path())),
                UnorderedElementsAre(Pair("empty", FileType::Directory), Pair("a", FileType::Directory),
                                     Pair("a/b", FileType::Directory), Pair("a/b/file", FileType::Regular),
                                     Pair("a/new\nline", FileType::Regular),
                                     Pair("a/\xff\xfe not UTF-8", FileType::Regular),
                                     Pair("a/loop", FileType::SymbolicLink), Pair("a/absolute", FileType::SymbolicLink),
                                     Pair("a/dangling", FileType::SymbolicLink), Pair("pipe", FileType::Other)));
}

TEST(DirectoryEnumeratorTest, ParentsComeFirstWithLevelsAndAttributesOfTheItemItself) {
    const TestFolder folder;
    folder.makeFile("a/b/file", 77);
    folder.makeLink("a/b/zlink", "file");

    auto enumerator = enumeratorOf(folder.path());
    std::vector<std::pair<std::string, int>> order;
    std::map<std::string, std::uint64_t> sizes;
    while (const auto entry = enumerator.next()) {
        if (entry->type == FileType::Directory)
            order.emplace_back(entry->path, entry->level);
        else
            sizes[entry->path] = enumerator.attributes()->size;
    }
    EXPECT_THAT(order, ElementsAre(Pair("a", 0), Pair("a/b", 1)));
    EXPECT_THAT(sizes, UnorderedElementsAre(Pair("a/b/file", 77u), Pair("a/b/zlink", 4u)));
}

TEST(DirectoryEnumeratorTest, SkippedFolderIsNotEntered) {
    const TestFolder folder;
    folder.makeFile("skipped/inside/file");
    folder.makeFile("entered/file");

    auto enumerator = enumeratorOf(folder.path());
    std::set<std::string> paths;
    while (const auto entry = enumerator.next()) {
        paths.insert(entry->path);
        if (entry->path == "skipped")
            enumerator.skipDescendants();
    }
    EXPECT_THAT(paths, UnorderedElementsAre("skipped", "entered", "entered/file"));
}

TEST(DirectoryEnumeratorTest, UnreadableFolderIsPassedOverAndRemembered) {
    const TestFolder folder;
    folder.makeFile("a/closed/file");
    folder.makeFile("b/file");
    folder.setMode("a/closed", 0);
    if (::access(folder.path("a/closed").c_str(), R_OK) == 0)
        GTEST_SKIP() << "nothing is unreadable to this user";

    auto enumerator = enumeratorOf(folder.path());
    std::set<std::string> paths;
    while (const auto entry = enumerator.next())
        paths.insert(entry->path);
    folder.setMode("a/closed", 0755);

    EXPECT_THAT(paths, UnorderedElementsAre("a", "a/closed", "b", "b/file"));
    ASSERT_TRUE(enumerator.failure());
    EXPECT_EQ(enumerator.failure()->kind, ErrorKind::PermissionDenied);
    EXPECT_EQ(enumerator.failure()->path, "a/closed");
}

TEST(DirectoryEnumeratorTest, FolderThatWasNotOpenedIsEmptyAndTheFailureStays) {
    DirectoryEnumerator enumerator(Failure(Error{ErrorKind::NotFound, "/gone", "No such file or directory"}));
    EXPECT_FALSE(enumerator.next());
    EXPECT_FALSE(enumerator.attributes());
    ASSERT_TRUE(enumerator.failure());
    EXPECT_EQ(enumerator.failure()->path, "/gone");
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
