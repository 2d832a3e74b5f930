#include "modules/caches/CachesScanController.h"

#include "appcore/SWApplicationCore.h"
#include "appcore/sizes/DiskSizes.h"
#include "engine/TestWorld.h"
#include "modules/IgnoreListWorld.h"
#include "modules/caches/UserCacheDirectory.h"
#include "platform/Workspace.h"

#include <gmock/gmock.h>

namespace sweeply {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

const std::string kUser = "/Users/sam/Library/Caches";
const std::string kPerUser = "/private/var/folders/zz/zyx/-Caches-";

/// The caches as the program builds them.
class CachesTest : public testing::Test {
  protected:
    explicit CachesTest(const char* version = "10.6.8")
        : m_version(SystemVersion::fromProductVersion(version).value()), m_world(version) {
        start();
    }
    ~CachesTest() override { m_world.end(); }

    /// Builds the program anew over the same volume.
    void start(const std::string& leoUserCacheDir = {}) {
        m_world.restart([this](UserDefaults& defaults) {
            return std::make_unique<IgnoreListController>(m_ignoreList.services(defaults));
        });
        const ModuleServices services{m_world.services(), m_world.files(),  m_sizes,
                                      m_world.folders,    *m_world.ownList, m_ignoreList.applications};
        m_caches = &m_world.add(
            1, std::make_unique<CachesScanController>(services, *m_world.coordinator, m_workspace, leoUserCacheDir));
        m_subscription = m_world.notifications->observe<ProblemFound>([this](const ProblemFound& problem) {
            std::lock_guard lock(m_world.treeLock);
            m_problems.push_back(problem.error.message());
        });
    }
    ADScanController& module(std::size_t number) { return *m_caches->scanControllers()[number]; }
    Node::Pointer found(std::size_t number, const std::string& path) {
        return module(number).rootNode()->childWithEqualPath(path);
    }
    std::vector<std::string> names(std::size_t number) {
        std::vector<std::string> names;
        for (const auto& child : module(number).rootNode()->children())
            names.emplace_back(child->name());
        return names;
    }
    void write(const std::string& path, const std::string& contents = "x") { m_world.target.makeFile(path, contents); }
    std::string host(const std::string& path) { return m_world.files().rootPath() + path; }

    SystemVersion m_version;
    TestWorld m_world;
    DiskSizes m_sizes{m_world.files(), m_version};
    Workspace m_workspace{m_world.files(), "/Applications"};
    IgnoreListWorld m_ignoreList{m_world};
    CachesScanController* m_caches = nullptr;
    NotificationCenter::Subscription m_subscription;
    std::vector<std::string> m_problems; ///< guarded by the tree lock
};

class CachesOfASystemTest : public CachesTest, public testing::WithParamInterface<const char*> {
  protected:
    CachesOfASystemTest() : CachesTest(GetParam()) {}
};

TEST_P(CachesOfASystemTest, EveryDirectEntryIsOneItemInWholeBlocks) {
    const bool isDecimal = m_world.units == SizeUnits::Decimal;
    write(kUser + "/.DS_Store");
    write(kUser + "/.hidden");
    write(kUser + "/app/a/1");
    write(kUser + "/app/2", std::string(4001, 'x'));
    write("/System/Library/Caches/kernel");
    write("/Library/Caches/shared");
    write(kPerUser + "/temporary", "");
    start(kPerUser);

    m_world.scan();

    EXPECT_THAT(names(0), UnorderedElementsAre(".hidden", "app", "temporary"));
    EXPECT_THAT(names(2), IsEmpty()); // off until the person switches it on
    const auto app = found(0, kUser + "/app");
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
    fs::permissions(host(kUser), fs::perms::none);
    m_world.scan();
    fs::permissions(host(kUser), fs::perms::owner_all);
    EXPECT_THAT(m_problems, ElementsAre(kUser + ": Permission denied"));
    EXPECT_FALSE(m_caches->ifScanRunning());
}

TEST_F(CachesTest, OddNamesAndLinksAreRemovedAndNothingElse) {
    write("/Users/sam/Documents/thesis", "precious");
    m_world.target.makeLink(kUser + "/absolute", "/Users/sam/Documents");
    m_world.target.makeLink(kUser + "/climbing", "../../../../../../../../etc");
    m_world.target.makeLink(kUser + "/app/inner", "../../../Documents/thesis");
    m_world.target.makeLink(kUser + "/dangling", "nowhere");
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
    write(kUser + "/keep\xff");
    write(kUser + "/go");
    m_world.scan();
    m_caches->toggleOutlineItem(*found(0, kUser + "/keep\xff"));
    start();
    m_world.scan();
    EXPECT_FALSE(found(0, kUser + "/keep\xff")->ifEnabled());
    m_world.remove();
    EXPECT_TRUE(m_world.exists(kUser + "/keep\xff"));
    EXPECT_FALSE(m_world.exists(kUser + "/go"));
    m_caches->toggleOutlineItem(*found(0, kUser + "/keep\xff"));
    start();
    m_world.scan();
    EXPECT_TRUE(found(0, kUser + "/keep\xff")->ifEnabled());
}

TEST_F(CachesTest, SystemsCachesNeedRightsAndGoWithThem) {
    write("/Library/Caches/shared/file");
    write(kUser + "/own");
    const auto locked = host("/Library/Caches/shared");
    fs::permissions(locked, fs::perms::owner_read | fs::perms::owner_exec);
    module(2).setTakesPartInScan(true);
    m_world.scan();
    m_world.remove(); // skipped
    EXPECT_TRUE(m_world.exists("/Library/Caches/shared"));
    EXPECT_FALSE(m_world.exists(kUser + "/own"));

    m_world.alerts.answers["Some items can only be removed by an administrator"] = 0;
    m_world.rights.beforeRun = [&] { fs::permissions(locked, fs::perms::owner_all); };
    m_world.remove();
    EXPECT_FALSE(m_world.exists("/Library/Caches/shared"));
    EXPECT_THAT(m_world.rights.calls, ElementsAre(ElementsAre("-rf", "./shared")));
    EXPECT_EQ(m_caches->filesFound(), 0U);
}

TEST_F(CachesTest, ItemThatCannotBeRemovedStaysListedAndIsReported) {
    write(kUser + "/locked/file");
    fs::permissions(host(kUser + "/locked"), fs::perms::owner_read | fs::perms::owner_exec);
    m_world.scan();
    m_world.remove();
    fs::permissions(host(kUser + "/locked"), fs::perms::owner_all);
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
    m_world.target.makeLink(home + "Pictures/Link/iPod Photo Cache", "/Users/sam/Library/x/iPod Photo Cache");
    write(home + "Pictures/File/iPod Photo Cache");
    const std::string closed = home + "Pictures/Closed/iPod Photo Cache";
    m_world.target.makeFolder(closed);
    fs::permissions(host(closed), fs::perms::none);

    m_world.scan();
    fs::permissions(host(closed), fs::perms::owner_all);

    EXPECT_THAT(names(1),
                UnorderedElementsAre("\"Mine.photolibrary\" Photo Cache", "\"Fine.aplibrary\" Photo Cache",
                                     "\"Plain\" Photo Cache", "\"Music\" Photo Cache", "\"Closed\" Photo Cache"));
}

TEST_F(CachesTest, CleanedPhotoCacheKeepsItsBooks) {
    const std::string cache = "/Users/sam/Pictures/Lib/iPod Photo Cache";
    for (const char* name : {"Photo Database", "iPodInfo.plist", ".DS_Store", "F00/T1.ithmb"})
        write(cache + "/" + name);
    m_world.scan();
    m_world.remove();
    std::vector<std::string> left;
    for (const auto& entry : fs::directory_iterator(host(cache)))
        left.push_back(entry.path().filename());
    EXPECT_THAT(left, UnorderedElementsAre("Photo Database", "iPodInfo.plist"));
    m_world.scan();
    EXPECT_EQ(m_caches->filesFound(), 0U);
}

TEST_F(CachesTest, PhotoCacheReplacedByALinkSinceTheScanIsLeftAlone) {
    const std::string cache = "/Users/sam/Pictures/Lib/iPod Photo Cache";
    write(cache + "/F00/T1.ithmb");
    write("/Users/sam/Documents/thesis");
    m_world.scan();
    fs::remove_all(host(cache));
    m_world.target.makeLink(cache, "/Users/sam/Documents");
    m_world.remove();
    EXPECT_TRUE(m_world.exists("/Users/sam/Documents/thesis"));
    EXPECT_EQ(m_caches->filesFound(), 1U);
}

TEST_F(CachesTest, PerUserFolderIsTheOnlyOneThatBelongsToTheUser) {
    EXPECT_EQ(userCacheDirectory(m_world.files(), m_world.folders), "");
    m_world.target.makeFolder(kPerUser);
    m_world.target.makeFolder("/private/var/folders/aa/bbb/-Tmp-");
    m_world.target.makeFolder("/private/var/folders/-Caches-/x/y");
    m_world.target.makeLink("/private/var/folders/aa/ccc/-Caches-", "/Users/sam");
    EXPECT_EQ(userCacheDirectory(m_world.files(), m_world.folders), kPerUser);
    m_world.target.makeFolder("/private/var/folders/aa/bbb/-Caches-"); // whose is whose?
    EXPECT_EQ(userCacheDirectory(m_world.files(), m_world.folders), "");
}

} // namespace
} // namespace sweeply
