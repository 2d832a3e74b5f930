#include "platform/TreeRemover.h"

#include "platform/FileManager.h"
#include "platform/TestFolder.h"

#include <atomic>
#include <gtest/gtest.h>
#include <thread>

namespace sweeply {
namespace {

/// A tree to remove, "tree", beside a folder "victim" that links in it lead to.
class TreeRemoverTest : public testing::Test {
  protected:
    TreeRemoverTest() {
        m_folder.makeFile("victim/precious");
        m_folder.makeFile("victim/inside/precious");
    }

    Result<void> remove(const std::string& name = "tree") const { return removeTree(m_folder.fd(), name); }

    void makeBigTree(const std::string& name = "tree") const {
        for (int i = 0; i < 40; ++i)
            for (int j = 0; j < 30; ++j)
                m_folder.makeFile(name + "/a/d" + std::to_string(i % 20) + "/e" + std::to_string(i) + "/" +
                                  std::to_string(j));
        for (int i = 0; i < 1500; ++i)
            m_folder.makeFile(name + "/flat/file" + std::to_string(i));
        m_folder.makeLink(name + "/flat/link", m_folder.path("victim"));
        m_folder.makeLink(name + "/a/d3/loop", "../..");
    }

    void expectVictimWhole() const {
        EXPECT_TRUE(m_folder.contains("victim/precious") && m_folder.contains("victim/inside/precious"));
    }

    const TestFolder m_folder;
};

TEST_F(TreeRemoverTest, SingleItemsGoAsThemselves) {
    m_folder.makeFolder("empty");
    m_folder.makeLink("link to a folder", "victim");
    m_folder.makeLink("dangling", "nowhere");
    m_folder.makeFile("\xff\n\"quoted\"");
    ::mkfifo(m_folder.path("pipe").c_str(), 0644);
    for (const char* name : {"empty", "link to a folder", "dangling", "\xff\n\"quoted\"", "pipe"}) {
        EXPECT_TRUE(remove(name)) << name;
        EXPECT_FALSE(m_folder.contains(name)) << name;
    }
    expectVictimWhole();
    const auto removed = remove("nothing");
    EXPECT_EQ(removed.error().kind, ErrorKind::NotFound);
    EXPECT_EQ(removed.error().path, "nothing");
}

TEST_F(TreeRemoverTest, BigTreeGoesWholeAndItsLinksAreNotFollowed) {
    makeBigTree();
    const auto removed = remove();
    EXPECT_TRUE(removed) << removed.error().message();
    EXPECT_FALSE(m_folder.contains("tree"));
    expectVictimWhole();
}

TEST_F(TreeRemoverTest, TreeDeeperThanTheDescriptorsGoesWholeAndAReferenceToTheParentIsEnough) {
    m_folder.makeDeepTree("tree", 1500);
    const UniqueFd reference(::open(m_folder.path().c_str(), O_PATH | O_CLOEXEC));
    const FewDescriptors few(64);
    const auto removed = removeTree(reference.get(), "tree");
    EXPECT_TRUE(removed) << removed.error().message();
    EXPECT_FALSE(m_folder.contains("tree"));
}

TEST_F(TreeRemoverTest, WhatCannotBeRemovedStaysAndTheRestGoes) {
    makeBigTree();
    m_folder.makeFile("tree/a/d7/locked/file");
    m_folder.setMode("tree/a/d7/locked", 0555);
    const auto removed = remove();
    m_folder.setMode("tree/a/d7/locked", 0755);
    ASSERT_FALSE(removed);
    EXPECT_EQ(removed.error().kind, ErrorKind::PermissionDenied);
    EXPECT_EQ(removed.error().path, "tree/a/d7/locked/file");
    const std::filesystem::recursive_directory_iterator left(m_folder.path("tree"));
    EXPECT_EQ(std::distance(begin(left), end(left)), 4); // a, d7, locked, file
    EXPECT_TRUE(remove());
    EXPECT_FALSE(m_folder.contains("tree"));
}

TEST_F(TreeRemoverTest, UnreadableFolderGoesOnlyIfEmpty) {
    m_folder.makeFolder("tree/empty");
    m_folder.makeFile("tree/full/file");
    m_folder.setMode("tree/empty", 0);
    m_folder.setMode("tree/full", 0);
    const auto removed = remove();
    m_folder.setMode("tree/full", 0755);
    ASSERT_FALSE(removed);
    EXPECT_EQ(removed.error().path, "tree/full");
    EXPECT_EQ(removed.error().kind, ErrorKind::PermissionDenied);
    EXPECT_FALSE(m_folder.contains("tree/empty"));
    EXPECT_TRUE(m_folder.contains("tree/full/file"));
}

TEST_F(TreeRemoverTest, FolderSwappedForALinkDuringTheRemovalLeadsNowhere) {
    for (int round = 0; round < 4; ++round) {
        makeBigTree();
        std::atomic<bool> isOver = false;
        std::jthread swapper([&] {
            const std::string folder = m_folder.path("tree/a/d5");
            const std::string aside = m_folder.path("tree/a/aside");
            while (!isOver) {
                if (::rename(folder.c_str(), aside.c_str()) != 0)
                    continue;
                ::symlink(m_folder.path("victim").c_str(), folder.c_str());
                std::this_thread::yield();
                ::unlink(folder.c_str());
                ::rename(aside.c_str(), folder.c_str());
            }
        });
        (void)remove(); // may fail: the tree does not hold still
        isOver = true;
        swapper.join();
        expectVictimWhole();
        m_folder.remove("tree");
    }
}

TEST_F(TreeRemoverTest, DeepFolderMovedElsewhereDuringTheRemovalDoesNotDrawItThere) {
    std::string middle = "tree";
    for (int i = 0; i < 60; ++i)
        middle += "/d";
    for (int round = 0; round < 4; ++round) {
        m_folder.makeDeepTree("tree", 150);
        std::jthread mover([&] {
            // By now the removal may be above the folder, in it, or through with it.
            while (m_folder.contains("tree/before"))
                std::this_thread::yield();
            ::rename(m_folder.path(middle).c_str(), m_folder.path("victim/inside/moved").c_str());
        });
        (void)remove(); // fails where the folder was pulled away from it
        mover.join();
        expectVictimWhole();
        m_folder.remove("tree");
        m_folder.remove("victim/inside/moved");
    }
}

TEST_F(TreeRemoverTest, SeveralRemoversOfOneTreeAllSucceed) {
    makeBigTree();
    {
        std::vector<std::jthread> removers;
        for (int i = 0; i < 4; ++i)
            removers.emplace_back([this] {
                const auto removed = remove();
                EXPECT_TRUE(removed || removed.error().kind == ErrorKind::NotFound) << removed.error().message();
            });
    }
    EXPECT_FALSE(m_folder.contains("tree"));
}

} // namespace
} // namespace sweeply
