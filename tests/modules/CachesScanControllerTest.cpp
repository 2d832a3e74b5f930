#include "modules/caches/CachesScanController.h"

#include "modules/ModuleWorld.h"
#include "modules/caches/UserCacheDirectory.h"
#include "platform/Workspace.h"

#include <gmock/gmock.h>

namespace sweeply {
namespace {

namespace fs = std::filesystem;
using namespace testing;

const std::string kUser = "/Users/sam/Library/Caches";
const std::string kPerUser = "/private/var/folders/zz/zyx/-Caches-";

/// The caches as the program builds them.
class CachesTest : public ModuleTest {
  protected:
    explicit CachesTest(const char* version = "10.6.8") : ModuleTest(version) { start(); }
    ~CachesTest() override { m_world.end(); }

    /// Builds the program anew over the same volume.
    void start(const std::string& leoUserCacheDir = {}) {
        restart();
        m_caches = &m_world.add(
            1, std::make_unique<CachesScanController>(services(), *m_world.coordinator, m_workspace, leoUserCacheDir));
    }
    ADScanController& module(std::size_t number) { return *m_caches->scanControllers()[number]; }
    Node::Pointer found(const std::string& path) { return module(0).rootNode()->childWithEqualPath(path); }
    Paths names(std::size_t number) { return namesOf(*module(number).rootNode()); }

    Workspace m_workspace{m_world.files(), "/Applications"};
    CachesScanController* m_caches = nullptr;
};

TEST_F(CachesTest, CompanionIsPartOfItsItem) {
    const std::string companion("\0\5\26\7 more", 9);
    write(kUser + "/item");
    write(kUser + "/._item", companion);
    write(kUser + "/._lone", companion);
    write(kUser + "/text");
    write(kUser + "/._text", "no companion");
    m_world.scan();
    EXPECT_THAT(names(0), UnorderedElementsAre("item", "._lone", "text", "._text"));
    EXPECT_EQ(found(kUser + "/item")->longSize(), 8000U);
    EXPECT_EQ(found(kUser + "/text")->longSize(), 4000U);
    m_world.remove();
    EXPECT_TRUE(fs::is_empty(host(kUser)));
}

class CachesOfASystemTest : public CachesTest, public testing::WithParamInterface<const char*> {
  protected:
    CachesOfASystemTest() : CachesTest(GetParam()) {}
};

TEST_P(CachesOfASystemTest, EveryDirectEntryIsOneItemInWholeBlocks) {
    const bool isDecimal = m_world.units == SizeUnits::Decimal;
    writeAll({kUser + "/.DS_Store", kUser + "/.hidden", kUser + "/app/a/1", "/System/Library/Caches/kernel",
              "/Library/Caches/shared"});
    write(kUser + "/app/2", std::string(4001, 'x'));
    write(kPerUser + "/temporary", "");
    start(kPerUser);
    m_world.scan();
    EXPECT_THAT(names(0), UnorderedElementsAre(".hidden", "app", "temporary"));
    EXPECT_THAT(names(2), IsEmpty()); // off until the person switches it on
    const auto app = found(kUser + "/app");
    ASSERT_TRUE(app);
    EXPECT_EQ(app->longSize(), isDecimal ? 12000U : 8192U);
    EXPECT_TRUE(app->ifEnabled() && app->storeState() && app->needExpand());
    EXPECT_EQ(m_caches->statusText(), isDecimal ? "Found: 16.00 KB" : "Found: 12.00 KB");
    EXPECT_THAT(m_problems, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Systems, CachesOfASystemTest, testing::Values("10.5.8", "10.6.8"));

TEST_F(CachesTest, SwitchesAreStoredWithTheSystemsCachesOff) {
    EXPECT_TRUE(m_world.defaults->boolForKey("CleanCaches") && m_world.defaults->boolForKey("CleanPhotoSyncCache"));
    EXPECT_TRUE(m_world.defaults->objectForKey("CleanSystemCaches"));
    EXPECT_FALSE(m_world.defaults->boolForKey("CleanSystemCaches") || m_world.defaults->objectForKey("Caches"));
}

TEST_F(CachesTest, FolderThatIsMissingIsMadeAndOnlyTheHousekeepingFileIsNothing) {
    fs::remove_all(host(kUser));
    write(kPerUser + "/.DS_Store");
    start(kPerUser);
    m_world.scan();
    EXPECT_TRUE(m_world.exists(kUser));
    EXPECT_EQ(m_caches->filesFound(), 0U);
    m_world.coordinator->remove();
    EXPECT_THAT(m_world.alerts.texts(), ElementsAre("Your System is clean!|"));
}

TEST_F(CachesTest, FolderThatCannotBeReadIsReportedAndTheScanEnds) {
    setMode(kUser, 0);
    m_world.scan();
    setMode(kUser, 0700);
    EXPECT_THAT(m_problems, ElementsAre(kUser + ": Permission denied"));
    EXPECT_FALSE(m_caches->ifScanRunning());
}

TEST_F(CachesTest, OddNamesAndLinksAreRemovedAndNothingElse) {
    write("/Users/sam/Documents/thesis", "precious");
    link(kUser + "/absolute", "/Users/sam/Documents");
    link(kUser + "/climbing", "../../../../../../../../etc");
    link(kUser + "/app/inner", "../../../Documents/thesis");
    link(kUser + "/dangling", "nowhere");
    for (const std::string name : {"quo\"te", "new\nline", "$(touch pwned)", "-rf", "bad\xff\xfe", "; rm -rf .", "~"})
        write(kUser + "/" + name);
    m_world.scan();
    ASSERT_EQ(m_caches->filesFound(), 11U);
    const auto size = m_caches->totalSize();
    m_world.remove();
    EXPECT_TRUE(fs::is_empty(host(kUser)));
    EXPECT_EQ(fs::file_size(host("/Users/sam/Documents/thesis")), 8U);
    EXPECT_EQ(m_caches->filesFound(), 0U);
    EXPECT_EQ(m_world.statistics->numberTotalSizeSaved(), size);
    EXPECT_THAT(m_world.alerts.shown, IsEmpty());
}

TEST_F(CachesTest, UncheckedItemsStayOnDiskAndStayUncheckedForTheNextProgram) {
    writeAll({kUser + "/keep\xff", kUser + "/go"});
    m_world.scan();
    m_caches->toggleOutlineItem(*found(kUser + "/keep\xff"));
    start();
    m_world.scan();
    EXPECT_FALSE(found(kUser + "/keep\xff")->ifEnabled());
    m_world.remove();
    EXPECT_THAT(there({kUser + "/keep\xff", kUser + "/go"}), ElementsAre(kUser + "/keep\xff"));
    m_caches->toggleOutlineItem(*found(kUser + "/keep\xff"));
    start();
    m_world.scan();
    EXPECT_TRUE(found(kUser + "/keep\xff")->ifEnabled());
}

TEST_F(CachesTest, SystemsCachesNeedRightsAndGoWithThem) {
    writeAll({"/Library/Caches/shared/file", kUser + "/own"});
    setMode("/Library/Caches/shared", 0500);
    module(2).setTakesPartInScan(true);
    m_world.scan();
    m_world.remove(); // skipped
    EXPECT_THAT(there({"/Library/Caches/shared", kUser + "/own"}), ElementsAre("/Library/Caches/shared"));
    m_world.alerts.answers["Some items can only be removed by an administrator"] = 0;
    m_world.rights.beforeRun = [&] { setMode("/Library/Caches/shared", 0700); };
    m_world.remove();
    EXPECT_FALSE(m_world.exists("/Library/Caches/shared"));
    EXPECT_THAT(m_world.rights.calls, ElementsAre(ElementsAre("-rf", "./shared")));
    EXPECT_EQ(m_caches->filesFound(), 0U);
}

TEST_F(CachesTest, ItemThatCannotBeRemovedStaysListedAndIsReported) {
    write(kUser + "/locked/file");
    setMode(kUser + "/locked", 0500);
    m_world.scan();
    m_world.remove();
    setMode(kUser + "/locked", 0700);
    EXPECT_EQ(m_caches->filesFound(), 1U);
    ASSERT_EQ(m_world.alerts.shown.size(), 1U);
    EXPECT_EQ(m_world.alerts.shown[0].title, "Sweeply could not remove some files");
    EXPECT_EQ(m_world.statistics->numberTotalSizeSaved(), 0U);
}

TEST_F(CachesTest, PhotoCachesAreFoundInLibrariesAndFoldersOnly) {
    const std::string cache = "/iPod Photo Cache/F00/T1.ithmb";
    const std::string bookkeeping = "/iPod Photo Cache/Photo Database";
    const std::string home = "/Users/sam/";
    m_world.target.makeBundle(
        "/Applications/iPhoto.app",
        {{"CFBundleIdentifier", "com.apple.iPhoto"},
         {"CFBundleDocumentTypes",
          plist::Array{plist::Dictionary(std::vector<plist::Dictionary::Member>{
              {"CFBundleTypeExtensions", plist::Array{"photolibrary"}}, {"LSTypeIsPackage", true}})}}});
    for (const char* place : {"Pictures/Mine.photolibrary", "Pictures/Fine.aplibrary", "Pictures/Plain",
                              "Pictures/Other.app", "Library/x", "Music/x", "Movies/x", "Sites/x", "Pictures/Music"})
        write(home + place + cache);
    write(home + "Pictures/Books" + bookkeeping);
    write(home + "Pictures/Books/iPod Photo Cache/iPodInfo.plist");
    m_world.target.makeFolder(home + "Pictures/Empty/iPod Photo Cache");
    link(home + "Pictures/Link/iPod Photo Cache", "/Users/sam/Library/x/iPod Photo Cache");
    write(home + "Pictures/File/iPod Photo Cache");
    const std::string closed = home + "Pictures/Closed/iPod Photo Cache";
    m_world.target.makeFolder(closed);
    setMode(closed, 0);
    m_world.scan();
    setMode(closed, 0700);
    EXPECT_THAT(names(1),
                UnorderedElementsAre("\"Mine.photolibrary\" Photo Cache", "\"Fine.aplibrary\" Photo Cache",
                                     "\"Plain\" Photo Cache", "\"Music\" Photo Cache", "\"Closed\" Photo Cache"));
}

TEST_F(CachesTest, CleanedPhotoCacheKeepsItsBooks) {
    const std::string cache = "/Users/sam/Pictures/Lib/iPod Photo Cache";
    writeAll({cache + "/Photo Database", cache + "/iPodInfo.plist", cache + "/.DS_Store", cache + "/F00/T1.ithmb"});
    m_world.scan();
    m_world.remove();
    EXPECT_THAT(m_world.target.names(cache), UnorderedElementsAre("Photo Database", "iPodInfo.plist"));
    m_world.scan();
    EXPECT_EQ(m_caches->filesFound(), 0U);
}

TEST_F(CachesTest, PhotoCacheReplacedByALinkSinceTheScanIsLeftAlone) {
    const std::string cache = "/Users/sam/Pictures/Lib/iPod Photo Cache";
    writeAll({cache + "/F00/T1.ithmb", "/Users/sam/Documents/thesis"});
    m_world.scan();
    fs::remove_all(host(cache));
    link(cache, "/Users/sam/Documents");
    m_world.remove();
    EXPECT_TRUE(m_world.exists("/Users/sam/Documents/thesis"));
    EXPECT_EQ(m_caches->filesFound(), 1U);
}

TEST_F(CachesTest, PerUserFolderIsTheOnlyOneThatBelongsToTheUser) {
    EXPECT_EQ(userCacheDirectory(m_world.files(), m_world.folders), "");
    m_world.target.makeFolder(kPerUser);
    m_world.target.makeFolder("/private/var/folders/aa/bbb/-Tmp-");
    m_world.target.makeFolder("/private/var/folders/-Caches-/x/y");
    link("/private/var/folders/aa/ccc/-Caches-", "/Users/sam");
    EXPECT_EQ(userCacheDirectory(m_world.files(), m_world.folders), kPerUser);
    m_world.target.makeFolder("/private/var/folders/aa/bbb/-Caches-"); // whose is whose?
    EXPECT_EQ(userCacheDirectory(m_world.files(), m_world.folders), "");
}

} // namespace
} // namespace sweeply
