#include "ui/NodeModel.h"

#include "engine/FakeModule.h"
#include "engine/TestWorld.h"
#include "ui/Pictures.h"
#include "ui/ScrollAnchor.h"
#include "ui/Text.h"

#include <QAbstractItemModelTester>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTreeView>
#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <tuple>

namespace sweeply {
namespace {

class NodeModelTest : public testing::Test {
  protected:
    NodeModelTest() {
        m_module = &m_world.add(3, std::make_unique<FakeView>("key", m_world.services(), *m_world.coordinator));
        m_model = std::make_unique<NodeModel>(*m_module, m_world.treeLock, SizeUnits::Decimal, m_pictures);
    }
    ~NodeModelTest() override {
        m_model.reset();
        m_world.end();
    }
    const Node& root() const { return *m_module->rootNode(); }
    void sort(int column, Qt::SortOrder order) {
        m_column = column;
        m_order = order;
        m_model->sort(column, order);
    }
    [[nodiscard]] bool isBefore(const Node& a, const Node& b) const {
        const auto& [first, second] = m_order == Qt::AscendingOrder ? std::tie(a, b) : std::tie(b, a);
        return m_column == NodeModel::Name   ? first.name() < second.name()
               : m_column == NodeModel::Size ? first.longSize() < second.longSize()
                                             : first.count() < second.count();
    }
    /// Does the model show exactly the tree below this node, in order?
    void expectShows(const Node& node, const QModelIndex& index = {}) {
        ASSERT_EQ(m_model->rowCount(index), static_cast<int>(node.childrenCount()));
        auto sorted = node.children();
        std::ranges::stable_sort(sorted, [this](const auto& a, const auto& b) { return isBefore(*a, *b); });
        for (std::size_t row = 0; row < sorted.size(); ++row) {
            const auto child = m_model->index(static_cast<int>(row), 0, index);
            ASSERT_EQ(m_model->nodeAt(child), sorted[row]);
            ASSERT_EQ(m_model->indexOf(*sorted[row]), child);
            ASSERT_EQ(m_model->parent(child), index);
            expectShows(*sorted[row], child);
        }
    }

    TestWorld m_world;
    Pictures m_pictures{m_world.files()};
    FakeView* m_module = nullptr;
    std::unique_ptr<NodeModel> m_model;
    int m_column = NodeModel::Size;
    Qt::SortOrder m_order = Qt::DescendingOrder;
};

TEST_F(NodeModelTest, ShowsTheTreeAfterEveryChange) {
    const QAbstractItemModelTester tester(m_model.get(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    QTreeView view; // keeps indexes across the changes
    view.setModel(m_model.get());
    std::mt19937 random(4711);
    const auto below = [&](std::size_t count) { return random() % count; };
    m_module->seemsToScan = true;
    Node::Pointer current;
    for (int step = 0; step < 600; ++step) {
        Node::Pointer place = m_module->rootNode();
        while (place->childrenCount() > 0 && below(3) > 0) {
            const auto child = place->childAtIndex(below(place->childrenCount()));
            if (child->path().ends_with("leaf"))
                break;
            place = child;
        }
        switch (below(6)) {
        case 0:
        case 1:
            for (std::size_t count = below(5); count > 0; --count)
                place->addChild(
                    FakeView::leaf("/" + std::to_string(step) + "." + std::to_string(count) + "leaf", step));
            break;
        case 2:
            place->addChild(FakeView::group("group" + std::to_string(step), true, {}));
            break;
        case 3:
            for (std::size_t count = below(4); count > 0 && place->childrenCount() > 0; --count)
                place->removeChildAtIndex(below(place->childrenCount()));
            break;
        case 4:
            sort(static_cast<int>(below(3)), below(2) ? Qt::AscendingOrder : Qt::DescendingOrder);
            break;
        default:
            place->killChildren();
        }
        if (below(2))
            view.expandAll();
        m_model->update();
        expectShows(root());
        const bool isThere = current && m_model->indexOf(*current).isValid();
        ASSERT_TRUE(!isThere || m_model->nodeAt(view.currentIndex()) == current) << "in step " << step;
        if (!isThere || below(20) == 0) {
            view.setCurrentIndex(m_model->index(0, 0));
            current = view.currentIndex().isValid() ? m_model->nodeAt(view.currentIndex()) : nullptr;
        }
    }
    m_module->seemsToScan = false;
}

TEST_F(NodeModelTest, ItemsThatComeInTakeTheirPlacesAndWhatIsSelectedAndSeenStays) {
    QTreeView view;
    view.setUniformRowHeights(true);
    view.setModel(m_model.get());
    ScrollAnchor anchor(view);
    anchor.watchModel();
    view.resize(300, 300);
    view.show();
    std::mt19937 random(3);
    m_module->seemsToScan = true;
    const auto add = [&](int count) {
        for (; count > 0; --count)
            m_module->addChildNode(FakeView::leaf("/" + std::to_string(random()), 1 + random() % 1'000'000));
        m_model->update();
        QCoreApplication::processEvents();
    };
    add(300);
    int resets = 0;
    QObject::connect(m_model.get(), &QAbstractItemModel::modelReset, [&] { ++resets; });
    view.setCurrentIndex(m_model->index(150, 0));
    const auto node = m_model->nodeAt(view.currentIndex());
    const int top = view.visualRect(view.currentIndex()).top();
    for (int round = 0; round < 5; ++round) {
        add(200);
        ASSERT_EQ(m_model->nodeAt(view.currentIndex()), node);
        ASSERT_EQ(view.selectionModel()->selectedRows(), QModelIndexList{view.currentIndex()});
        ASSERT_EQ(view.visualRect(view.currentIndex()).top(), top);
        expectShows(root());
    }
    EXPECT_EQ(resets, 0);
    m_module->seemsToScan = false;
}

TEST_F(NodeModelTest, ClickOnABoxMovesNoRow) {
    m_module->addChildNode(FakeView::group("a", true, {FakeView::leaf("/a", 3000), FakeView::leaf("/b", 3000)}));
    m_module->addChildNode(FakeView::group("b", true, {FakeView::leaf("/c", 4000)}));
    m_model->update();
    m_model->setData(m_model->index(0, 0, m_model->index(0, 0)), {}, Qt::CheckStateRole);
    m_model->update();
    EXPECT_EQ(root().childAtIndex(0)->longSize(), 3000U);
    EXPECT_EQ(m_model->nodeAt(m_model->index(0, 0))->name(), "a");
}

TEST_F(NodeModelTest, ClickOnABoxChecksAsTheEngineDoes) {
    m_module->addChildNode(FakeView::group("group", true, {FakeView::leaf("/b", 1000), FakeView::leaf("/a", 2000)}));
    m_model->update();
    const auto group = m_model->index(0, 0);
    const auto leaf = m_model->index(0, 0, group);
    EXPECT_TRUE(m_model->setData(leaf, {}, Qt::CheckStateRole));
    EXPECT_EQ(m_model->data(leaf, Qt::CheckStateRole).toInt(), Qt::Unchecked);
    EXPECT_EQ(m_model->data(group, Qt::CheckStateRole).toInt(), Qt::PartiallyChecked);
    EXPECT_EQ(utf8(m_model->data(m_model->index(0, NodeModel::Size), Qt::DisplayRole).toString()), "1.00 KB");
    EXPECT_EQ(utf8(m_model->data(leaf, Qt::ToolTipRole).toString()), "/a");
}

TEST_F(NodeModelTest, TwoHundredThousandRowsAreNoTrouble) {
    constexpr int kRows = 200000;
    QTreeView view;
    view.setUniformRowHeights(true);
    view.setModel(m_model.get());
    view.show();
    std::mt19937 random(1);
    for (int row = 0; row < kRows; ++row)
        m_module->addChildNode(FakeView::leaf("/folder/item " + std::to_string(row), random()));
    const auto takes = [](const char* what, const std::function<void()>& action) {
        QElapsedTimer time;
        time.start();
        action();
        QCoreApplication::processEvents();
        RecordProperty(what, static_cast<int>(time.elapsed()));
    };
    takes("updateMs", [&] { m_model->update(); });
    takes("scrollMs", [&] { view.scrollTo(m_model->index(kRows - 1, 0)); });
    takes("toggleMs", [&] { m_model->setData(m_model->index(kRows / 2, 0), {}, Qt::CheckStateRole); });
    takes("sortMs", [&] { m_model->sort(NodeModel::Size, Qt::AscendingOrder); });
    ASSERT_EQ(m_model->rowCount(), kRows);
    EXPECT_LE(m_model->nodeAt(m_model->index(0, 0))->longSize(),
              m_model->nodeAt(m_model->index(kRows - 1, 0))->longSize());
    takes("removeMs", [&] {
        const auto all = root().children();
        for (int row = 0; row < kRows / 4; ++row)
            m_module->removeNodeOnMainThread(*all[static_cast<std::size_t>(row)]);
        m_model->update();
    });
    EXPECT_EQ(m_model->rowCount(), kRows - kRows / 4);
}

TEST_F(NodeModelTest, NamesOfStrangersCannotBreakALine) {
    m_module->addChildNode(FakeView::leaf("/a\nb\x1B[31m\xFF\u202E.txt", 1));
    m_model->update();
    const auto name = m_model->data(m_model->index(0, 0), Qt::DisplayRole).toString();
    for (const QChar character : name)
        EXPECT_TRUE(character.isPrint() || character == QChar::ReplacementCharacter) << int(character.unicode());
}

} // namespace
} // namespace sweeply
