#include "engine/FakeModule.h"
#include "engine/TestWorld.h"

#include <gmock/gmock.h>
#include <stdexcept>

namespace sweeply {
namespace {

using namespace testing;

class ADScanControllerTest : public testing::Test {
  protected:
    ADScanControllerTest() {
        m_kept = m_world.notifications->observe<RemovedAmountOfSpace>(
            [this](const RemovedAmountOfSpace& event) { m_removed.push_back(event.removedSize); });
    }
    static Node::Pointer leaf(const std::string& path, std::uint64_t size, bool enabled = true) {
        return FakeView::leaf(path, size, enabled);
    }

    TestWorld m_world;
    FakeView& m_module = m_world.add(3, std::make_unique<FakeView>("Fake", m_world.services(), *m_world.coordinator));
    std::vector<std::uint64_t> m_removed;
    NotificationCenter::Subscription m_kept;
};

TEST_F(ADScanControllerTest, ProgressOfAScanCountsUnitsAndWithoutAnyIsComplete) {
    EXPECT_EQ(m_module.procentDone(), 1.0F);
    std::vector<float> seen;
    m_module.whenScanning = [&](FakeView& module) {
        seen.push_back(module.procentDone());
        module.incTotalProcentageBy(4);
        module.incProgressBy(3);
        seen.push_back(module.procentDone());
    };
    m_world.scan();
    EXPECT_THAT(seen, ElementsAre(1.0F, 0.75F));
    EXPECT_EQ(m_module.totalProcentage(), 0U);
    EXPECT_EQ(m_module.procentDone(), 1.0F);
}

TEST_F(ADScanControllerTest, ModuleSwitchedOffFinishesAtOnceAndKeepsWhatItHolds) {
    m_module.addChildNode(leaf("/a", 5));
    m_module.setTakesPartInScan(false);
    m_module.startScan();
    EXPECT_FALSE(m_module.ifScanRunning());
    EXPECT_EQ(m_module.filesFound(), 1U);
    EXPECT_THAT(m_world.log.lines(), Contains("FakeModule scan finished and found: 0.01 KB"));
}

TEST_F(ADScanControllerTest, AScanReplacesTheResultsOfTheLastOne) {
    m_module.whenScanning = [](FakeView& module) { module.addChildNode(leaf("/a", 5)); };
    m_world.scan();
    m_world.scan();
    EXPECT_EQ(m_module.filesFound(), 1U);
    EXPECT_EQ(m_module.totalSize(), 5U);
    EXPECT_EQ(m_module.statusText(), "Found: 0.01 KB");
}

TEST_F(ADScanControllerTest, AScanThatThrowsEndsAndIsLogged) {
    m_module.whenScanning = [](FakeView&) { throw std::runtime_error("odd volume"); };
    m_world.scan();
    EXPECT_FALSE(m_module.ifScanRunning());
    EXPECT_TRUE(m_module.stopped());
    EXPECT_THAT(m_world.log.lines(), Contains("Handle Exception odd volume in main thread = 0"));
}

TEST_F(ADScanControllerTest, ACleanWalksDepthFirstAndTakesOutWhatIsGone) {
    const auto kept = leaf("/kept", 8, false);
    const auto full = FakeView::group("full", true, {leaf("/1", 1), leaf("/2", 2)});
    const auto inner = FakeView::group("inner", true, {leaf("/3", 4)});
    const auto mixed = FakeView::group("mixed", true, {inner, kept});
    for (const auto& node : {full, mixed, leaf("/top", 16), leaf("/off", 32, false)})
        m_module.addChildNode(node);

    m_world.remove();

    EXPECT_THAT(m_module.cleaned, ElementsAre("/1", "/2", "/3", "/top"));
    EXPECT_THAT(m_removed, ElementsAre(1, 2, 4, 16));
    EXPECT_EQ(full->parentNode(), nullptr);
    EXPECT_EQ(inner->parentNode(), nullptr);
    EXPECT_EQ(kept->parentNode(), mixed.get());
    EXPECT_EQ(m_module.filesFound(), 2U);
    EXPECT_THAT(m_world.log.lines(), IsSupersetOf({"FakeModule clean started",
                                                   "FakeModule clean finished, 0.04 KB of uncleaned files left"}));
}

TEST_F(ADScanControllerTest, GroupWithItsOwnMarkOffOrNotCleanableIsNotEntered) {
    const auto off = FakeView::group("off", false, {leaf("/1", 1)});
    const auto busy = FakeView::group("busy", true, {leaf("/2", 2)});
    m_module.addChildNode(FakeView::group("outer", true, {off, leaf("/3", 4)}));
    m_module.addChildNode(busy);
    m_module.uncleanable = busy.get();

    m_world.remove();

    EXPECT_THAT(m_module.cleaned, ElementsAre("/3"));
    EXPECT_EQ(busy->childrenCount(), 1U);
}

TEST_F(ADScanControllerTest, VisibleItemBesideInvisibleOnesIsRemovedFromDiskButStaysListed) {
    const auto group = FakeView::group("group", true, {leaf("/shown", 1)});
    const auto hidden = leaf("/hidden", 2);
    group->addInvisibleChild(hidden);
    m_module.addChildNode(group);

    m_world.remove();

    EXPECT_THAT(m_module.cleaned, ElementsAre("/shown", "/hidden"));
    EXPECT_EQ(hidden->parentNode(), nullptr);
    EXPECT_EQ(group->childrenCount(), 1U);
}

TEST_F(ADScanControllerTest, FailedRemovalAdvancesProgressAndKeepsTheItemChecked) {
    std::vector<float> seen;
    m_module.immovable = {"/a"};
    m_module.whenCleaning = [&](const std::string&) {
        seen.push_back(m_module.procentDone());
        EXPECT_EQ(m_module.totalProcentage(), 100U);
        return true;
    };
    m_module.addChildNode(leaf("/a", 75));
    m_module.addChildNode(leaf("/b", 25));

    m_world.remove();

    EXPECT_THAT(seen, ElementsAre(0.75F));
    EXPECT_THAT(m_removed, ElementsAre(25));
    ASSERT_EQ(m_module.filesFound(), 1U);
    EXPECT_TRUE(m_module.objectAtIndex(0)->ifEnabled());
}

TEST_F(ADScanControllerTest, ACleanThatThrowsEndsTheRemovalAndIsLogged) {
    m_module.whenCleaning = [](const std::string&) -> bool { throw std::runtime_error("odd item"); };
    m_module.addChildNode(leaf("/a", 1));
    m_world.remove();
    EXPECT_FALSE(m_module.ifCleanRunning());
    EXPECT_EQ(m_module.filesFound(), 1U);
    EXPECT_THAT(m_world.log.lines(), Contains("[Global Clean] Exception occured: odd item"));
}

/// A delegate that knows nothing of rights.
struct PlainDelegate : ScanDelegate {
    ChangeOutcome perform(const ChangeRequest&) override { return {OutcomeKind::Removed}; }
    void cleanIsFinished(ADScanController&) override { ++finished; }
    int finished = 0;
};

TEST_F(ADScanControllerTest, WithoutAnybodyToAskForRightsACleanNeitherRunsNorFinishes) {
    PlainDelegate delegate;
    FakeChild module("Rights", m_world.services());
    module.setDelegate(&delegate);
    module.addChildNode(leaf("/a", 1));
    module.needsRights = true;
    module.startClean();
    m_world.runPending();
    EXPECT_EQ(delegate.finished, 0);
    module.needsRights = false;
    module.startClean();
    module.startClean(); // nothing is left: finishes at once
    m_world.runPending();
    EXPECT_EQ(delegate.finished, 2);
    EXPECT_THAT(module.cleaned, ElementsAre("/a"));
}

TEST_F(ADScanControllerTest, DroppedFilesAreAnalysedOnceEach) {
    m_module.addChildNode(FakeView::group("group", true, {leaf("/known", 1)}));
    m_module.receiveDragData({"/known", "", "/new", "/new"});
    EXPECT_TRUE(m_world.coordinator->isScanning());
    EXPECT_FALSE(m_world.coordinator->actionButtons().pause.isEnabled);
    m_world.waitUntil([&] { return !m_world.coordinator->isScanning(); });
    ASSERT_EQ(m_module.filesFound(), 2U);
    EXPECT_EQ(m_module.objectAtIndex(1)->path(), "/new");
}

TEST_F(ADScanControllerTest, FilesDroppedDuringARemovalAreIgnored) {
    auto& late = m_world.add(4, std::make_unique<FakeView>("Late", m_world.services(), *m_world.coordinator));
    m_module.addChildNode(leaf("/a", 1));
    m_module.whenCleaning = [&](const std::string&) {
        m_world.loop.runAndWait([&] {
            EXPECT_FALSE(late.validateDrop());
            late.receiveDragData({"/never looked at"});
        });
        return true;
    };
    m_world.remove();
    EXPECT_EQ(late.filesFound(), 0U);
    EXPECT_THAT(late.cleaned, IsEmpty());
}

TEST_F(ADScanControllerTest, SwitchIsStoredOnceAndTakenOver) {
    m_module.initUserDefaults();
    EXPECT_TRUE(m_world.defaults->boolForKey("Fake"));
    m_world.defaults->setBool("Fake", false);
    m_module.initUserDefaults();
    EXPECT_FALSE(m_module.ifAnyEnabled());
    m_world.defaults->setBool("Fake", true);
    m_module.preffernecesUpdated();
    EXPECT_TRUE(m_module.ifAnyEnabled());
}

} // namespace
} // namespace sweeply
