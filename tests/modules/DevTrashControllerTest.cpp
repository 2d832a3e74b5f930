#include "modules/devjunk/DevTrashController.h"

#include "modules/ModuleWorld.h"

#include <gmock/gmock.h>

namespace sweeply {
namespace {

using namespace testing;

class DevTrashTest : public ModuleTest {
  protected:
    DevTrashTest() {
        makeApplication("One", "com.example.one");
        m_module = &m_world.add(5, std::make_unique<DevTrashController>(services(), *m_world.coordinator));
    }
    void scan() {
        findApplications();
        m_world.scan();
    }
    std::string listed() { return textOf(*m_module->rootNode()); }
    std::string inOne(const std::string& name) const { return "/Applications/One.app/Contents/" + name; }

    DevTrashController* m_module = nullptr;
};

TEST_F(DevTrashTest, FilesForDevelopersInApplicationsAreOneItemForEachApplication) {
    const Paths junk{inOne("Resources/en.lproj/Main.nib/classes.nib"),
                     inOne("Resources/en.lproj/Main.nib/info.nib"),
                     inOne("Resources/x/data.dependency"),
                     inOne("Frameworks/A.framework/Headers/a.h"),
                     inOne("b.hpp"),
                     inOne("designable.nib")};
    const Paths others{inOne("Resources/en.lproj/Main.nib/keyedobjects.nib"),
                       inOne("a.m"),
                       inOne("h"),
                       inOne(".h"),
                       inOne("a.H"),
                       inOne("a.hxx")};
    writeAll(junk);
    writeAll(others);
    scan();
    EXPECT_EQ(listed(), "[x] Development Junk 24000\n  [x] One 24000\n");
    const auto one = m_module->rootNode()->childAtIndex(0)->childAtIndex(0);
    EXPECT_THAT(pathsOf(one->invisibleChildren()), UnorderedElementsAreArray(junk));
    m_world.remove();
    EXPECT_EQ(listed(), "");
    EXPECT_THAT(there(junk), IsEmpty());
    EXPECT_EQ(there(others), others);
    scan();
    EXPECT_EQ(listed(), "") << "the category never stays empty";
}

TEST_F(DevTrashTest, ListedApplicationIsNotLookedAtUnlessThePersonInsists) {
    write(inOne("a.h"));
    ignoreList().applicationList().addBundleToList("com.example.one");
    scan();
    drop(*m_module, {"/Applications/One.app"});
    EXPECT_EQ(listed(), "");
    m_world.alerts.answers["One is in the ignore list"] = 0;
    drop(*m_module, {"/Applications/One.app"});
    EXPECT_EQ(listed(), "[x] Development Junk 4000\n  [x] One 4000\n");
}

TEST_F(DevTrashTest, ClutterOfADroppedFolderIsSortedByItsKind) {
    const std::string disk = "/Users/sam/Old.disk";
    const Paths gone{disk + "/.DS_Store",           disk + "/a/.DS_Store",          disk + "/.Spotlight-V100/store",
                     disk + "/photos/Thumbs.db",    disk + "/.Trashes/501/old.txt", disk + "/home/.Trash/folder/inner",
                     disk + "/Two.app/Contents/b.h"};
    const Paths kept{disk + "/photos/Thumbs.DB", disk + "/home/.Trash/plain file", disk + "/.Trashes/501",
                     "/Users/sam/Library/Caches"};
    writeAll(gone);
    writeAll({kept[0], kept[1], disk + "/.Trashes/501/folder/.DS_Store"});
    link(disk + "/home/.Trash/link", "/Users/sam/Library");
    drop(*m_module, {disk, disk});
    std::vector<std::string> categories;
    for (const auto& category : m_module->rootNode()->children())
        categories.push_back(std::string(category->name()) + " " + std::to_string(category->longSize()));
    EXPECT_THAT(categories, UnorderedElementsAre("Development Junk 4000", "Finder Junk 12000", "MS Windows Junk 4000",
                                                 "Trashes 12000"));
    EXPECT_THAT(listed(), HasSubstr("  [x] Old 12000\n"));
    m_world.remove();
    EXPECT_EQ(listed(), "");
    EXPECT_THAT(there(gone), IsEmpty());
    EXPECT_EQ(there(kept), kept) << "a link in the trash leads to no trash";
    EXPECT_TRUE(m_world.exists(disk + "/home/.Trash/link"));
}

TEST_F(DevTrashTest, TrashIsListedOneAndTwoLevelsDown) {
    writeAll({"/t/.Trash/a/1", "/t/.Trash/b"});
    EXPECT_THAT(DevTrashController::enumerateAllTrashAtPath(m_world.files(), "/t/.Trash"),
                UnorderedElementsAre("/t/.Trash/a", "/t/.Trash/b"));
    EXPECT_THAT(DevTrashController::enumerateAllTrashesAtPath(m_world.files(), "/t/.Trash"),
                ElementsAre("/t/.Trash/a/1"));
    EXPECT_TRUE(DevTrashController::enumerateAllTrashesAtPath(m_world.files(), "/nothing").empty());
}

} // namespace
} // namespace sweeply
