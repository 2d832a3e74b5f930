#include "platform/TypedPath.h"

#include "platform/Volume.h"

#include <unistd.h>

namespace sweeply {
namespace {

/// What is meant, what else could be, or what is wrong.
class TypedPathTest : public VolumeTest {
  protected:
    ~TypedPathTest() override { std::filesystem::current_path(m_before); }

    std::string meant(const std::string& typed) const {
        const auto path = typedPath(files().root(), typed);
        if (!path)
            return "error";
        return path->path + (path->alsoMeans ? " or " + *path->alsoMeans : "");
    }
    void standIn(const std::string& folder) const { std::filesystem::current_path(folder); }

    const std::filesystem::path m_before = std::filesystem::current_path();
};

TEST_F(TypedPathTest, PathsAreMeantAsTheShellShowsThemAndAsTheTargetHasThem) {
    const std::string root = m_folder + "/root";
    write("/Applications/X.app/a", "1");
    makeFolder("/Users/sam/Downloads");
    makeFolder("/Volumes/Disk/deep");
    link("/Users/sam/disk", "/Volumes/Disk/deep");
    link("/Users/sam/up", "../../../../..");
    link("/../door", root);
    link("/itself", ".");
    const struct {
        std::string typed, meant;
    } rows[]{
        // What only the target or only the shell knows
        {"/Applications/X.app", "/Applications/X.app"},
        {"/nowhere//./x/", "/nowhere/x"},
        {root + "/Applications/X.app", "/Applications/X.app"},
        {root + "/Applications/X.app/", "/Applications/X.app"},
        {root + "/nowhere", "/nowhere"},
        {root, "/"},
        {root + "/", "/"},
        {m_folder + "/door/Applications/X.app", "/Applications/X.app"},
        {m_folder + "/root/../root/Applications", "/Applications"},
        {root + "/itself/Users", "/Users"},
        {m_folder + "/rooted/x", m_folder + "/rooted/x"},
        {m_folder + "/victim", m_folder + "/victim"},
        // "..", through links, never out of the root
        {"/Users/../Library", "/Library"},
        {"/../../Library", "/Library"},
        {"/Users/sam/disk/../x", "/Volumes/Disk/x"},
        {"/Users/sam/up/../x", "/x"},
        {"/Users/sam/disk/..", "/Volumes/Disk"},
        {"/Users/sam/disk", "/Users/sam/disk"},
        {"/Users/sam/disk/x", "/Users/sam/disk/x"},
        {"/nowhere/../x", "/nowhere/../x"},
        {root + "/Users/sam/disk/../x", "/Volumes/Disk/x"},
        {root + "/../victim", root + "/../victim"},
        {"", "error"},
        {"Applications", "error"},
    };
    standIn(m_folder);
    for (const auto& row : rows)
        EXPECT_EQ(meant(row.typed), row.meant) << row.typed;
    EXPECT_EQ(meant("root/Applications/X.app"), "/Applications/X.app") << "as completion types it";
    EXPECT_EQ(meant("victim"), "error");

    standIn(root + "/Users/sam");
    EXPECT_EQ(meant("Downloads"), "/Users/sam/Downloads");
    EXPECT_EQ(meant("./Downloads/."), "/Users/sam/Downloads");
    EXPECT_EQ(meant("../junk"), "/Users/junk");
    EXPECT_EQ(meant("disk/../x"), "/Volumes/Disk/x");
    EXPECT_EQ(meant("../../../victim"), "error") << "the target has nothing there";
    EXPECT_EQ(meant("../.."), "/");

    write(root + "/Applications/X.app", "the same letters, inside");
    EXPECT_EQ(meant(root + "/Applications/X.app"), root + "/Applications/X.app or /Applications/X.app");
}

TEST_F(TypedPathTest, OnTheMacItselfEveryPathIsItsOwn) {
    const auto host = FileManager::open("/").value();
    standIn(m_folder + "/root");
    EXPECT_EQ(typedPath(host->root(), "../victim")->path, m_folder + "/victim");
    EXPECT_EQ(typedPath(host->root(), "/usr/./../x")->path, "/x");
}

} // namespace
} // namespace sweeply
