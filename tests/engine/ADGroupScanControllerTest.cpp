#include "engine/FakeModule.h"
#include "engine/TestWorld.h"

#include <barrier>
#include <gmock/gmock.h>
#include <latch>

namespace sweeply {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ADGroupScanControllerTest : public testing::Test {
  protected:
    TestWorld m_world;
    FakeGroup& m_group = m_world.add(1, std::make_unique<FakeGroup>(m_world.services(), *m_world.coordinator));
    FakeChild& m_first = m_group.add("First", m_world.services());
    FakeChild& m_second = m_group.add("Second", m_world.services());

    ADGroupScanControllerTest() { m_world.coordinator->refreshInterface(); }
};

TEST_F(ADGroupScanControllerTest, FiguresAreThoseOfTheSubModulesTogether) {
    m_first.addChildNode(FakeChild::leaf("/a", 1));
    m_first.addChildNode(FakeChild::leaf("/b", 2, false));
    m_second.addChildNode(FakeChild::leaf("/c", 4, false));

    EXPECT_EQ(m_group.filesFound(), 3U);
    EXPECT_EQ(m_group.filesFoundInEnabled(), 2U);
    EXPECT_TRUE(m_group.ifAnyEnabled());
    m_group.setEveryObjectEnabled(false);
    EXPECT_FALSE(m_group.ifAnyEnabled());
    EXPECT_EQ(m_group.totalSize(), 7U);
    m_group.setEveryObjectEnabled(true);
    EXPECT_EQ(m_group.filesFoundInEnabled(), 3U);
    m_first.rootNode()->childAtIndex(0)->becomeEnabled(false);
    EXPECT_EQ(m_group.totalSize(), 6U);
}

TEST_F(ADGroupScanControllerTest, SubModulesScanAtTheSameTimeAndCountTogether) {
    std::barrier together(2); // never passed if one waits for the other
    m_first.whenScanning = m_second.whenScanning = [&](FakeChild& module) {
        module.incTotalProcentageBy(2);
        module.incProgress();
        together.arrive_and_wait();
        EXPECT_EQ(m_group.procentDone(), 0.5F);
        module.addChildNode(FakeChild::leaf("/" + module.key, 1));
        together.arrive_and_wait();
    };
    m_world.scan();
    EXPECT_EQ(m_group.filesFound(), 2U);
    EXPECT_TRUE(m_group.stopped());
    m_world.scan();
    EXPECT_EQ(m_group.totalSize(), 2U);
}

TEST_F(ADGroupScanControllerTest, BoxOfASubModuleIsItsSwitchUntilThereAreResults) {
    m_group.toggleOutlineItem(*m_second.rootNode());
    m_first.whenScanning = [](FakeChild& module) { module.addChildNode(FakeChild::leaf("/a", 1)); };
    m_second.whenScanning = [](FakeChild&) { ADD_FAILURE(); };
    m_world.scan();
    m_group.checkSelectedItems({m_first.rootNode()});
    EXPECT_FALSE(m_group.ifAnyEnabled());
    EXPECT_TRUE(m_world.coordinator->rows()[0]->checked());
    m_world.scan();
    EXPECT_TRUE(m_first.ifAnyEnabled());
}

TEST_F(ADGroupScanControllerTest, GroupRunsWhileASubModuleWithSomethingCheckedDoes) {
    m_group.setStopped(false);
    m_first.setStopped(true);
    m_group.childControllerStopped();
    EXPECT_FALSE(m_group.stopped());
    m_second.rootNode()->setEnabledWithoutRecalc(false);
    m_group.childControllerStopped();
    EXPECT_TRUE(m_group.stopped());
    EXPECT_TRUE(m_second.stopped());
}

TEST_F(ADGroupScanControllerTest, EndOfOneSubModuleDoesNotCutShortAnotherThatFoundNothingCheckedYet) {
    std::latch firstIsOver(1);
    m_second.whenScanning = [&](FakeChild& module) {
        module.addChildNode(FakeChild::leaf("/remembered", 1, false));
        firstIsOver.wait();
        EXPECT_FALSE(module.stopped());
        module.addChildNode(FakeChild::leaf("/more", 1));
    };
    m_world.coordinator->startScan();
    m_first.joinScanThread();
    firstIsOver.count_down();
    m_world.waitUntil([&] { return !m_world.coordinator->isScanning(); });
    EXPECT_EQ(m_second.filesFound(), 2U);
}

TEST_F(ADGroupScanControllerTest, SubModulesCleanInOrderAndRightsAreAskedForBeforeTheFirst) {
    std::vector<std::string> order;
    for (auto* module : {&m_first, &m_second}) {
        module->addChildNode(FakeChild::leaf("/" + module->key, 1));
        module->whenCleaning = [&, module](const std::string&) {
            order.push_back(module->key + " after " + std::to_string(m_world.alerts.shown.size()));
            return true;
        };
    }
    m_second.needsRights = true;
    m_world.alerts.answers["Some items can only be removed by an administrator"] = 0;
    m_world.remove();
    EXPECT_THAT(order, ElementsAre("First after 1", "Second after 1"));
}

TEST_F(ADGroupScanControllerTest, SkippingTheRightsLeavesTheSubModuleThatNeedsThem) {
    m_first.addChildNode(FakeChild::leaf("/a", 1));
    m_second.addChildNode(FakeChild::leaf("/b", 1));
    m_second.needsRights = true;
    m_world.remove();
    EXPECT_THAT(m_first.cleaned, ElementsAre("/a"));
    EXPECT_THAT(m_second.cleaned, IsEmpty());
}

} // namespace
} // namespace sweeply
