#include "engine/ColumnValues.h"
#include "engine/FakeModule.h"
#include "engine/ModuleSettings.h"
#include "engine/TestWorld.h"

#include <gmock/gmock.h>
#include <latch>

namespace sweeply {
namespace {

using namespace testing;

class ADScanControllerViewTest : public testing::Test {
  protected:
    ADScanControllerViewTest() {
        for (const auto& [path, enabled] : {std::pair{"/1", true}, {"/2", false}, {"/3", true}}) {
            m_leaves.push_back(FakeView::leaf(path, 10, enabled));
            m_leaves.back()->setStoreState(true);
            m_module.addChildNode(m_leaves.back());
        }
    }
    std::vector<bool> marks() const {
        std::vector<bool> marks;
        for (const auto& leaf : m_leaves)
            marks.push_back(leaf->ifEnabled());
        return marks;
    }

    TestWorld m_world;
    FakeView& m_module = m_world.add(3, std::make_unique<FakeView>("Fake", m_world.services(), *m_world.coordinator));
    std::vector<Node::Pointer> m_leaves;
};

TEST_F(ADScanControllerViewTest, ClicksAreRememberedForItemsThatAskForIt) {
    m_leaves[2]->setStoreState(false);
    m_module.toggleOutlineItem(*m_leaves[0]);
    m_module.toggleOutlineItem(*m_leaves[1]);
    m_module.toggleOutlineItem(*m_leaves[2]);
    EXPECT_THAT(m_world.ignored.changes, ElementsAre("add Fake /1", "remove Fake /2"));
    EXPECT_THAT(marks(), ElementsAre(false, true, false));
}

TEST_F(ADScanControllerViewTest, MixedSelectionBecomesTheOppositeOfItsFirst) {
    m_leaves[1]->setStoreState(false);
    m_module.checkSelectedItems(m_leaves);
    EXPECT_THAT(marks(), ElementsAre(false, false, false));
    EXPECT_THAT(m_world.ignored.changes, ElementsAre("add Fake /1 /3"));
    m_module.checkSelectedItems({m_leaves[1], m_leaves[0]});
    EXPECT_THAT(marks(), ElementsAre(true, true, false));
    m_module.checkSelectedRows({1, 2, 9});
    EXPECT_THAT(marks(), ElementsAre(true, false, false));
    EXPECT_EQ(m_world.ignored.changes.size(), 2U);
}

TEST_F(ADScanControllerViewTest, TableRowCarriesTheRootsMark) {
    m_module.toggleTableRow(0);
    m_module.toggleTableRow(2);
    EXPECT_FALSE(m_module.rootNode()->ifEnabled());
    m_module.toggleTableRow(1);
    EXPECT_TRUE(m_module.rootNode()->ifEnabled());
    m_module.toggleTableRow(7);
    EXPECT_THAT(m_world.ignored.changes, IsEmpty());
}

TEST_F(ADScanControllerViewTest, TakingItemsOffTheListTakesEmptiedGroupsToo) {
    const auto inner = FakeView::group("group", true, {FakeView::leaf("/4", 1)});
    m_module.addChildNode(inner);
    m_module.removeSelectedItems({inner->childAtIndex(0), m_leaves[0]});
    EXPECT_EQ(m_module.filesFound(), 2U);
    m_module.removeSelectedRows({0, 1});
    EXPECT_EQ(m_module.filesFound(), 0U);
    EXPECT_EQ(m_module.totalSize(), 0U);
}

TEST_F(ADScanControllerViewTest, GroupAndItsItemTakenOffTogetherGoOnce) {
    const auto inner = FakeView::group("group", true, {FakeView::leaf("/4", 1), FakeView::leaf("/5", 1)});
    m_module.addChildNode(inner);
    m_module.removeSelectedItems({inner, inner->childAtIndex(0)});
    EXPECT_EQ(m_module.filesFound(), 3U);
    EXPECT_EQ(m_module.totalSize(), 20U);
}

TEST_F(ADScanControllerViewTest, EmptiedSubModuleLeavesItsGroupsTotal) {
    auto& group = m_world.add(1, std::make_unique<FakeGroup>(m_world.services(), *m_world.coordinator));
    auto& child = group.add("Child", m_world.services());
    child.addChildNode(FakeView::leaf("/6", 7));
    group.removeSelectedItems({child.rootNode()});
    EXPECT_EQ(group.totalSize(), 0U);
    EXPECT_EQ(group.childrenCount(), 1U);
}

TEST_F(ADScanControllerViewTest, ListIsLeftAloneDuringARun) {
    std::latch isOver(1);
    m_module.whenScanning = [&](FakeView& module) {
        module.addChildNode(m_leaves[0]);
        isOver.wait();
    };
    m_world.coordinator->startScan();
    m_world.waitUntil([&] { return m_module.filesFound() == 1; });
    m_module.removeSelectedRows({0});
    m_module.checkSelectedItems({m_leaves[0]});
    m_module.checkNone();
    m_module.quickClean();
    EXPECT_FALSE(m_module.validateDrop());
    EXPECT_EQ(m_module.filesFound(), 1U);
    EXPECT_TRUE(m_leaves[0]->ifEnabled());
    EXPECT_THAT(m_module.cleaned, IsEmpty());
    EXPECT_THAT(m_world.log.lines(), Contains("Forbided to remove during scan/clean"));
    isOver.count_down();
    m_world.waitUntil([&] { return !m_world.coordinator->isScanning(); });
}

TEST_F(ADScanControllerViewTest, QuickScanOfAnUncheckedModuleChecksAndScansIt) {
    m_module.setTakesPartInScan(false);
    m_world.coordinator->refreshInterface();
    m_module.whenScanning = [](FakeView& module) { module.addChildNode(FakeView::leaf("/new", 1)); };
    m_module.quickScan();
    m_world.waitUntil([&] { return !m_world.coordinator->isScanning(); });
    EXPECT_EQ(m_module.filesFound(), 1U);
    EXPECT_TRUE(m_world.coordinator->rows()[0]->checked());
    m_module.quickClean();
    EXPECT_THAT(m_module.cleaned, ElementsAre("/new"));
}

TEST(ColumnValuesTest, OutlineAndTableShowEachColumnTheirWay) {
    const auto node = Node::nodeWithName("n", Icon::UserCaches, 3, 2000, "/p", true);
    const auto mixed = FakeView::group("m", true, {node, FakeView::leaf("/q", 1, false)});
    const auto units = SizeUnits::Decimal;
    EXPECT_EQ(outlineValue(*mixed, "Enabled", units), ColumnValue(CheckState::Mixed));
    EXPECT_EQ(tableValue(*mixed, "Enabled", units), ColumnValue(true));
    EXPECT_EQ(outlineValue(*node, "Name", units), ColumnValue(std::string("n")));
    EXPECT_EQ(outlineValue(*node, "Size", units), ColumnValue(std::string("2.00 KB")));
    EXPECT_EQ(tableValue(*node, "Count", units), ColumnValue(std::string("3")));
    EXPECT_EQ(tableValue(*node, "Icon", units), ColumnValue(Icon::UserCaches));
    EXPECT_EQ(outlineValue(*node, "NodeExtended", units), ColumnValue(ExtendedName{"n", "/p"}));
    EXPECT_EQ(outlineValue(*node, "Other", units), ColumnValue(std::string("Other")));
    EXPECT_EQ(tableValue(*node, "Other", units), ColumnValue(node.get()));
}

TEST(ModuleSettingsTest, RowIsCheckedByAnyOfItsSwitches) {
    TestWorld world;
    world.defaults->setBool("CleanPhotoSyncCache", true);
    world.defaults->setBool("CleanWidgets", true);
    std::vector<bool> checked;
    for (std::uint8_t code = 0; code <= 8; ++code)
        checked.push_back(isRowCheckedByPreferences(code, *world.defaults));
    EXPECT_THAT(checked, ElementsAre(false, true, false, false, false, false, true, false, false));
}

} // namespace
} // namespace sweeply
