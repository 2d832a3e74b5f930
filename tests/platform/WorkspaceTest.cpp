#include "platform/Workspace.h"

#include "formats/PropertyList.h"
#include "platform/LaunchServices.h"
#include "platform/Volume.h"

#include <gmock/gmock.h>

namespace sweeply {
namespace {

using plist::Array;
using plist::Dictionary;

class WorkspaceTest : public VolumeTest {
  protected:
    static plist::Value documentType(const std::string& extension, bool isPackage, const std::string& role) {
        return Dictionary({{"CFBundleTypeExtensions", Array{extension, "*"}},
                           {"LSTypeIsPackage", isPackage},
                           {"CFBundleTypeRole", role}});
    }
};

TEST_F(WorkspaceTest, PackagesAreKnownByExtensionOrByBeingABundle) {
    for (const char* folder : {"/A.app", "/B.PrefPane", "/Plain folder", "/Plain.folder", "/C.framework/Versions"})
        makeFolder(folder);
    write("/file.app", "");
    makeBundle("/Odd", {{"CFBundlePackageType", "BNDL"}});
    makeBundle("/Unfinished", {});
    write("/Damaged/Contents/Info.plist", "<plist>");
    const Workspace workspace(files(), "/Applications");
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
    const Workspace workspace(files(), "/Applications/");
    const auto novel = workspace.applicationForFile("/Users/ann/Mine.NOVEL").value();
    EXPECT_EQ(novel.bundleIdentifier, "com.writer");
    EXPECT_EQ(novel.path, "/Applications/Office/Writer.app");
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
    const Workspace without(files(), "/Applications");
    EXPECT_EQ(without.applicationForFile("/Users/ann/Pictures/x.photolibrary")->bundleIdentifier, "com.apple.iPhoto");
    EXPECT_EQ(without.applicationForFile("/Users/ann/Pictures/x.photolibrary")->path, "");
    makeBundle("/Applications/iPhoto.app", {{"CFBundleIdentifier", "com.apple.iPhoto"}});
    const Workspace with(files(), "/Applications");
    EXPECT_EQ(with.applicationForFile("/x.MigratedPhotoLibrary")->path, "/Applications/iPhoto.app");
}

TEST_F(WorkspaceTest, TheRegistryNamesApplicationsThatAreThere) {
    const RegisteredApplicationsFile registry(files(), "/registry.plist");
    EXPECT_EQ(registry.copyAllApplicationURLs().error().kind, ErrorKind::NotFound);
    for (const auto& damaged : {std::string("neither"), plist::writeXml(Dictionary{})}) {
        write("/registry.plist", damaged);
        EXPECT_EQ(registry.copyAllApplicationURLs().error().kind, ErrorKind::Damaged);
    }
    makeFolder("/Applications/A.app");
    write("/registry.plist", plist::writeBinary(Array{"/Applications/A.app", 7, "/Applications/Gone.app", "A.app",
                                                      "/Applications/A.app"}));
    EXPECT_THAT(*registry.copyAllApplicationURLs(), testing::ElementsAre("/Applications/A.app", "/Applications/A.app"));
}

} // namespace
} // namespace sweeply
