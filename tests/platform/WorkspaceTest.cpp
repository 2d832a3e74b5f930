#include "platform/Workspace.h"

#include "formats/PropertyList.h"
#include "platform/LaunchServices.h"

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>

namespace sweeply {
namespace {

namespace fs = std::filesystem;
using plist::Array;
using plist::Dictionary;

class WorkspaceTest : public testing::Test {
  protected:
    void SetUp() override {
        std::string name = fs::temp_directory_path() / "workspace.XXXXXX";
        ASSERT_NE(::mkdtemp(name.data()), nullptr);
        m_root = name;
        m_files = std::move(FileManager::open(m_root).value());
    }
    void TearDown() override { fs::remove_all(m_root); }

    void makeFolder(const std::string& path) const { fs::create_directories(m_root + path); }
    void makeFile(const std::string& path, const std::string& contents) const {
        fs::create_directories(fs::path(m_root + path).parent_path());
        std::ofstream(m_root + path, std::ios::binary) << contents;
    }
    void makeBundle(const std::string& path, std::vector<Dictionary::Member> info) const {
        makeFile(path + "/Contents/Info.plist", plist::writeXml(Dictionary(std::move(info))));
    }
    static plist::Value documentType(const std::string& extension, bool isPackage, const std::string& role) {
        return Dictionary({{"CFBundleTypeExtensions", Array{extension, "*"}},
                           {"LSTypeIsPackage", isPackage},
                           {"CFBundleTypeRole", role}});
    }

    std::string m_root;
    std::unique_ptr<FileManager> m_files;
};

TEST_F(WorkspaceTest, PackagesAreKnownByExtensionOrByBeingABundle) {
    makeFolder("/A.app");
    makeFolder("/B.PrefPane");
    makeFolder("/Plain folder");
    makeFolder("/Plain.folder");
    makeFolder("/C.framework/Versions");
    makeFile("/file.app", "");
    makeBundle("/Odd", {{"CFBundlePackageType", "BNDL"}});
    makeBundle("/Unfinished", {});
    makeFile("/Damaged/Contents/Info.plist", "<plist>");
    const Workspace workspace(*m_files, "/Applications");

    for (const std::string path : {"/A.app", "/B.PrefPane", "/Odd", "/A.app/"})
        EXPECT_TRUE(workspace.isFilePackageAtPath(path)) << path;
    for (const std::string path :
         {"/Plain folder", "/Plain.folder", "/C.framework", "/file.app", "/Unfinished", "/Damaged", "/gone.app"})
        EXPECT_FALSE(workspace.isFilePackageAtPath(path)) << path;
}

TEST_F(WorkspaceTest, ApplicationsClaimTheirDocuments) {
    makeBundle("/Applications/Office/Writer.app",
               {{"CFBundleIdentifier", "com.writer"},
                {"CFBundleDocumentTypes",
                 Array{documentType("Novel", true, "Editor"), documentType("txt", false, "None"), "no dictionary"}}});
    makeBundle("/Applications/Zebra.app", {{"CFBundleIdentifier", "com.zebra"},
                                           {"CFBundleDocumentTypes", Array{documentType("novel", false, "Viewer"),
                                                                           documentType("txt", false, "Viewer")}}});
    makeFolder("/Users/ann/Mine.novel");
    makeFolder("/Users/ann/Mine.txt");
    const Workspace workspace(*m_files, "/Applications/");

    const auto novel = workspace.applicationForFile("/Users/ann/Mine.NOVEL");
    ASSERT_TRUE(novel);
    EXPECT_EQ(novel->bundleIdentifier, "com.writer");
    EXPECT_EQ(novel->path, "/Applications/Office/Writer.app");
    EXPECT_EQ(workspace.applicationForFile("/x.txt")->bundleIdentifier, "com.zebra");
    EXPECT_FALSE(workspace.applicationForFile("/Users/ann/x.unheard"));
    EXPECT_FALSE(workspace.applicationForFile("/Users/ann/novel"));

    EXPECT_TRUE(workspace.isFilePackageAtPath("/Users/ann/Mine.novel"));
    EXPECT_FALSE(workspace.isFilePackageAtPath("/Users/ann/Mine.txt"));
}

TEST_F(WorkspaceTest, PhotoLibrariesBelongToThePhotoApplication) {
    makeBundle("/Applications/Viewer.app",
               {{"CFBundleIdentifier", "com.viewer"},
                {"CFBundleDocumentTypes", Array{documentType("photolibrary", true, "Viewer")}}});
    const Workspace without(*m_files, "/Applications");
    EXPECT_EQ(without.applicationForFile("/Users/ann/Pictures/x.photolibrary")->bundleIdentifier, "com.apple.iPhoto");
    EXPECT_EQ(without.applicationForFile("/Users/ann/Pictures/x.photolibrary")->path, "");

    makeBundle("/Applications/iPhoto.app", {{"CFBundleIdentifier", "com.apple.iPhoto"}});
    const Workspace with(*m_files, "/Applications");
    EXPECT_EQ(with.applicationForFile("/x.MigratedPhotoLibrary")->path, "/Applications/iPhoto.app");
}

TEST_F(WorkspaceTest, TheRegistryNamesApplicationsThatAreThere) {
    const RegisteredApplicationsFile registry(*m_files, "/registry.plist");
    EXPECT_EQ(registry.copyAllApplicationURLs().error().kind, ErrorKind::NotFound);

    makeFile("/registry.plist", "neither");
    EXPECT_EQ(registry.copyAllApplicationURLs().error().kind, ErrorKind::Damaged);
    makeFile("/registry.plist", plist::writeXml(Dictionary{}));
    EXPECT_EQ(registry.copyAllApplicationURLs().error().kind, ErrorKind::Damaged);

    makeFolder("/Applications/A.app");
    makeFile("/registry.plist", plist::writeBinary(Array{"/Applications/A.app", 7, "/Applications/Gone.app", "A.app",
                                                         "/Applications/A.app"}));
    EXPECT_THAT(*registry.copyAllApplicationURLs(), testing::ElementsAre("/Applications/A.app", "/Applications/A.app"));
}

} // namespace
} // namespace sweeply
