#include "appcore/sizes/DiskSizes.h"

#include "platform/FileManager.h"
#include "platform/TestFolder.h"

#include <gtest/gtest.h>
#include <random>
#include <thread>
#include <vector>

namespace sweeply {
namespace {

namespace fs = std::filesystem;

class DiskSizesTest : public testing::Test {
  protected:
    DiskSizesTest() : m_files(std::move(FileManager::open(m_folder.path()).value())) {}

    const TestFolder m_folder;
    const std::unique_ptr<FileManager> m_files;
    const SystemVersion m_leopard = *SystemVersion::fromProductVersion("10.5.8");
    const SystemVersion m_snowLeopard = *SystemVersion::fromProductVersion("10.6.8");
    const DiskSizes m_sizes{*m_files, m_leopard};
    const DiskSizes m_decimalSizes{*m_files, m_snowLeopard};
};

TEST_F(DiskSizesTest, FileIsRoundedUpToItsSystemsBlocks) {
    struct Row {
        std::size_t size;
        std::uint64_t binary;
        std::uint64_t decimal;
    };
    for (const Row& row : {Row{0, 0, 0}, Row{1, 4096, 4000}, Row{4000, 4096, 4000}, Row{4001, 4096, 8000},
                           Row{4096, 4096, 8000}, Row{4097, 8192, 8000}}) {
        m_folder.makeFile("file", row.size);
        EXPECT_EQ(m_sizes.folderSizeAtPath("/file"), row.binary) << row.size;
        EXPECT_EQ(m_decimalSizes.folderSizeAtPath("/file"), row.decimal) << row.size;
        EXPECT_EQ(m_decimalSizes.slowFolderSizeAtPath("/file"), row.decimal) << row.size;
    }
}

TEST_F(DiskSizesTest, WhatIsNotThereOrEmptyCountsNothing) {
    m_folder.makeFolder("empty/inside/inside");
    for (const char* path : {"", "/missing", "/empty", "/empty/inside/", "relative"}) {
        EXPECT_EQ(m_sizes.folderSizeAtPath(path), 0u) << path;
        EXPECT_EQ(m_sizes.slowFolderSizeAtPath(path), 0u) << path;
    }
}

TEST_F(DiskSizesTest, EveryFileOfAFolderIsRoundedOnItsOwn) {
    for (int i = 0; i < 10; ++i)
        m_folder.makeFile("tree/" + std::to_string(i) + "/file");
    EXPECT_EQ(m_sizes.folderSizeAtPath("/tree"), 10 * 4096u);
    EXPECT_EQ(m_decimalSizes.folderSizeAtPath("/tree"), 10 * 4000u);
}

TEST_F(DiskSizesTest, LinkIsChargedForItselfAndTheSlowWalkLeavesSomeOut) {
    m_folder.makeFile("big", 100000);
    m_folder.makeFile("folder/file", 100000);
    m_folder.makeFolder("tree");
    m_folder.makeLink("tree/to file", "../big");
    m_folder.makeLink("tree/to folder", "/folder");
    m_folder.makeLink("tree/dangling", "nowhere");
    m_folder.makeLink("tree/loop", ".");
    EXPECT_EQ(m_sizes.folderSizeAtPath("/tree"), 4 * 4096u);
    EXPECT_EQ(m_sizes.slowFolderSizeAtPath("/tree"), 4096u);
}

TEST_F(DiskSizesTest, LinkAtThePathItselfHoldsNothing) {
    m_folder.makeFile("file", 5000);
    m_folder.makeFile("folder/file", 5000);
    m_folder.makeLink("to file", "/file");
    m_folder.makeLink("to folder", "/folder");
    EXPECT_EQ(m_sizes.folderSizeAtPath("/to folder"), 0u); // removing it would free none of the folder
    EXPECT_EQ(m_sizes.folderSizeAtPath("/to file"), 0u);
    EXPECT_EQ(m_sizes.slowFolderSizeAtPath("/to file"), 4096u);
}

TEST_F(DiskSizesTest, UnreadableFolderIsLeftOutAndNamedAndTheRestCounts) {
    m_folder.makeFile("tree/open/file");
    std::string deep = "tree/deep";
    m_folder.makeDeepTree(deep, 60);
    for (int level = 0; level < 60; ++level)
        deep += "/d";
    for (const std::string& closed : {std::string("tree/closed"), deep + "/closed", std::string("tree")}) {
        const std::uint64_t whole = m_sizes.folderSizeAtPath("/tree");
        m_folder.makeFile(closed + "/file");
        m_folder.setMode(closed, 0);
        const auto item = m_sizes.measure("/tree");
        EXPECT_EQ(item.size, closed == "tree" ? 0 : whole);
        EXPECT_FALSE(item.isWhole);
        EXPECT_TRUE(item.identity.isKnown());
        ASSERT_EQ(m_files->problems().all().size(), 1u);
        EXPECT_EQ(m_files->problems().all()[0].message(), "/" + closed + ": Permission denied");
        m_folder.setMode(closed, 0755);
        fs::remove(m_folder.path(closed + "/file"));
        m_files->problems().startOver();
        EXPECT_TRUE(m_sizes.measure("/tree").isWhole);
    }
    EXPECT_TRUE(m_files->problems().isEmpty());
}

TEST_F(DiskSizesTest, ListCountsWhatIsNamedTwiceTwice) {
    m_folder.makeFile("a/b/file");
    m_folder.makeFile("c");
    const std::vector<std::string> paths{"/a", "/a", "/a/b", "/c", "", "/missing"};
    EXPECT_EQ(m_sizes.sizeOfAllFilesAtPathes(paths), 4 * 4096u);
}

TEST_F(DiskSizesTest, TreeDeeperThanTheDescriptorsIsCountedWhole) {
    m_folder.makeDeepTree("deep", 500);
    const FewDescriptors few(128);
    EXPECT_EQ(m_sizes.folderSizeAtPath("/deep"), 1000 * 4096u);
}

TEST_F(DiskSizesTest, RandomTreeSumsLikeANaiveWalkFromSeveralThreadsAtOnce) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    std::vector<std::string> folders{"tree"};
    for (int i = 0; i < 3000; ++i) {
        // The first folder gets many, so that a flat one is among them.
        const std::string name =
            (random() % 2 ? folders[0] : folders[random() % folders.size()]) + "/n" + std::to_string(i);
        switch (random() % 8) {
        case 0:
            m_folder.makeFolder(name);
            folders.push_back(name);
            break;
        case 1:
            m_folder.makeFolder(folders[0]);
            m_folder.makeLink(name, random() % 2 ? "." : "nowhere");
            break;
        default:
            m_folder.makeFile(name, random() % 3 ? random() % 10 : random() % 20000);
        }
    }
    std::uint64_t expected = 0;
    for (const auto& entry : fs::recursive_directory_iterator(m_folder.path("tree"))) {
        if (entry.is_symlink())
            expected += 4000;
        else if (entry.is_regular_file())
            expected += (entry.file_size() + 3999) / 4000 * 4000;
    }
    const auto known = m_decimalSizes.measure("/tree");
    EXPECT_EQ(known.size, expected);
    std::vector<std::jthread> threads;
    for (int i = 0; i < 3; ++i)
        threads.emplace_back([&] { EXPECT_EQ(m_decimalSizes.measure("/tree"), known); });
}

TEST_F(DiskSizesTest, WhateverChangesInAnItemShowsInItsIdentity) {
    for (const char* file : {"tree/a/file", "tree/b/file", "tree/old"})
        m_folder.makeFile(file, 100);
    m_folder.makeFolder("tree/empty");
    const auto path = [this](const char* name) { return m_folder.path(name); };
    const auto yesterday = fs::file_time_type::clock::now() - std::chrono::hours(24);
    fs::last_write_time(path("tree/a/file"), yesterday + std::chrono::hours(72)); // hides what is newer
    const std::pair<const char*, std::function<void()>> changes[] = {
        {"nothing", [] {}},
        {"a file's time, as contents of the same size leave it",
         [&] { fs::last_write_time(path("tree/old"), yesterday); }},
        {"a file's size, with its time put back",
         [&] {
             const auto time = fs::last_write_time(path("tree/old"));
             fs::resize_file(path("tree/old"), 101);
             fs::last_write_time(path("tree/old"), time);
         }},
        {"a name", [&] { fs::rename(path("tree/b"), path("tree/c")); }},
        {"one more folder", [&] { m_folder.makeFolder("tree/empty/more"); }},
        {"one file less", [&] { fs::remove(path("tree/c/file")); }},
        {"its kind", [&] { fs::remove_all(path("tree")), m_folder.makeFile("tree", 100); }},
        {"a link in its place", [&] { fs::remove(path("tree")), m_folder.makeLink("tree", "nowhere"); }},
    };
    for (const auto& [what, change] : changes) {
        const auto before = m_sizes.measure("/tree").identity;
        change();
        EXPECT_EQ(m_sizes.measure("/tree").identity == before, what == std::string("nothing")) << what;
    }
    EXPECT_FALSE(m_sizes.measure("/none").identity.isKnown());
}

} // namespace
} // namespace sweeply
