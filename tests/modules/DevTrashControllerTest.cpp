#include "modules/devjunk/DevTrashController.h"

#include "modules/ModuleWorld.h"

#include <gmock/gmock.h>

namespace sweeply {
namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;

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
    static std::vector<std::string> hidden(const Node& node) {
        std::vector<std::string> paths;
        for (const auto& child : node.invisibleChildren())
            paths.push_back(child->path());
        return paths;
    }
    std::string inOne(const std::string& name) const { return "/Applications/One.app/Contents/" + name; }

    DevTrashController* m_module = nullptr;
};

TEST_F(DevTrashTest, FilesForDevelopersInApplicationsAreOneItemForEachApplication) {
    const std::vector<std::string> junk{inOne("Resources/en.lproj/Main.nib/classes.nib"),
                                        inOne("Resources/en.lproj/Main.nib/info.nib"),
                                        inOne("Resources/x/data.dependency"),
                                        inOne("Frameworks/A.framework/Headers/a.h"),
                                        inOne("b.hpp"),
                                        inOne("designable.nib")};
    for (const auto& path : junk)
        write(path);
    for (const char* name : {"Resources/en.lproj/Main.nib/keyedobjects.nib", "a.m", "h", ".h", "a.H", "a.hxx"})
        write(inOne(name));
    scan();
    EXPECT_EQ(listed(), "[x] Development Junk 24000\n  [x] One 24000\n");
    const auto one = m_module->rootNode()->childAtIndex(0)->childAtIndex(0);
    EXPECT_THAT(hidden(*one), testing::UnorderedElementsAreArray(junk));
    m_world.remove();
    EXPECT_EQ(listed(), "");
    for (const auto& path : junk)
        EXPECT_FALSE(m_world.exists(path)) << path;
    for (const char* name : {"Resources/en.lproj/Main.nib/keyedobjects.nib", "a.m", "h", ".h", "a.H", "a.hxx"})
        EXPECT_TRUE(m_world.exists(inOne(name))) << name;
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
    write(disk + "/.DS_Store");
    write(disk + "/a/.DS_Store");
    write(disk + "/.Spotlight-V100/store");
    write(disk + "/photos/Thumbs.db");
    write(disk + "/photos/Thumbs.DB");
    write(disk + "/.Trashes/501/old.txt");
    write(disk + "/.Trashes/501/folder/.DS_Store");
    write(disk + "/home/.Trash/folder/inner");
    write(disk + "/home/.Trash/plain file");
    m_world.target.makeLink(disk + "/home/.Trash/link", "/Users/sam/Library");
    write(disk + "/Two.app/Contents/b.h");
    drop(*m_module, {disk, disk});
    std::vector<std::string> categories;
    for (const auto& category : m_module->rootNode()->children())
        categories.push_back(std::string(category->name()) + " " + std::to_string(category->longSize()));
    EXPECT_THAT(categories, UnorderedElementsAre("Development Junk 4000", "Finder Junk 12000", "MS Windows Junk 4000",
                                                 "Trashes 12000"));
    EXPECT_THAT(listed(), testing::HasSubstr("  [x] Old 12000\n"));
    m_world.remove();
    EXPECT_EQ(listed(), "");
    for (const char* gone : {"/.DS_Store", "/a/.DS_Store", "/.Spotlight-V100", "/photos/Thumbs.db",
                             "/.Trashes/501/old.txt", "/home/.Trash/folder/inner", "/Two.app/Contents/b.h"})
        EXPECT_FALSE(m_world.exists(disk + gone)) << gone;
    for (const char* kept : {"/photos/Thumbs.DB", "/home/.Trash/plain file", "/home/.Trash/link", "/.Trashes/501"})
        EXPECT_TRUE(m_world.exists(disk + kept)) << kept;
    EXPECT_TRUE(m_world.exists("/Users/sam/Library/Caches")) << "a link in the trash leads to no trash";
}

TEST_F(DevTrashTest, TrashIsListedOneAndTwoLevelsDown) {
    write("/t/.Trash/a/1");
    write("/t/.Trash/b");
    const auto one = DevTrashController::enumerateAllTrashAtPath(m_world.files(), "/t/.Trash");
    EXPECT_THAT(one, UnorderedElementsAre("/t/.Trash/a", "/t/.Trash/b"));
    EXPECT_THAT(DevTrashController::enumerateAllTrashesAtPath(m_world.files(), "/t/.Trash"),
                ElementsAre("/t/.Trash/a/1"));
    EXPECT_TRUE(DevTrashController::enumerateAllTrashesAtPath(m_world.files(), "/nothing").empty());
}

} // namespace
} // namespace sweeply
