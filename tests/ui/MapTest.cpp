#include "ui/WindowWorld.h"

#include "ui/ResultMap.h"
#include "ui/SpacePage.h"

#include <QLabel>
#include <QListWidget>
#include <QToolButton>
#include <QTreeView>

namespace sweeply {
namespace {

class MapTest : public WindowWorld {
  protected:
    /// The page's map, shown.
    ResultMap& mapOf(ResultPage& page) {
        for (auto* button : page.findChildren<QToolButton*>()) {
            if (button->text() == QStringLiteral("Map"))
                button->setChecked(true);
        }
        ResultMap* map = nullptr;
        for (auto* widget : page.findChildren<QWidget*>()) {
            if (auto* candidate = dynamic_cast<ResultMap*>(widget))
                map = candidate;
        }
        EXPECT_TRUE(waitUntil([&] { return !map->view().boxes().empty(); }));
        return *map;
    }
    static QPoint middleOf(const MapArea& area) {
        return {static_cast<int>(area.x + area.width / 2), static_cast<int>(area.y + area.height / 2)};
    }
    QStringList moduleTexts() {
        QStringList texts;
        for (const auto* list : m_window->findChildren<QListWidget*>()) {
            for (int row = 0; row < list->count(); ++row)
                texts << list->item(row)->text();
        }
        return texts;
    }
};

TEST_F(MapTest, ResultsAreSortedAtOpeningAndListAndMapAgree) {
    EXPECT_EQ(moduleTexts().filter(QStringLiteral("not looked yet")).size(), 6);
    scan();
    auto& caches = page(1);
    caches.model().update();
    auto& outline = caches.outline();
    const auto group = caches.model().index(0, 0);
    for (int row = 1; row < caches.model().rowCount(group); ++row)
        EXPECT_GE(caches.model().nodeAt(caches.model().index(row - 1, 0, group))->longSize(),
                  caches.model().nodeAt(caches.model().index(row, 0, group))->longSize());
    auto& map = mapOf(caches);
    const auto& boxes = map.view().boxes();
    const auto leaf = std::ranges::find_if(boxes, [](const MapBox& box) { return !box.isOpen && box.folded == 0; });
    ASSERT_TRUE(leaf != boxes.end());
    const auto node = map.nodeOf(leaf->item);
    const auto isChecked = [&] {
        return caches.model().indexOf(*node).data(Qt::CheckStateRole).toInt() == Qt::Checked;
    };
    QTest::mouseClick(&map.view(), Qt::LeftButton, {}, middleOf(leaf->area));
    EXPECT_EQ(caches.model().nodeAt(outline.currentIndex()), node);
    ASSERT_TRUE(isChecked());
    QTest::keyClick(&map.view(), Qt::Key_Space);
    EXPECT_FALSE(isChecked());
    EXPECT_FALSE(node->ifEnabled());
    QTest::keyClick(&outline, Qt::Key_Space);
    EXPECT_TRUE(isChecked()) << "the same mark";
    outline.setCurrentIndex(group);
    EXPECT_EQ(map.nodeOf(map.view().current().value()), caches.model().nodeAt(group));
    QTest::keyClick(&map.view(), Qt::Key_Return);
    EXPECT_TRUE(waitUntil([&] { return map.view().boxes().front().item != leaf->item || !boxes.empty(); }));
    QTest::keyClick(&map.view(), Qt::Key_Backspace);
    tool("Remove")->trigger();
    m_window.reset(); // in the middle of it
}

TEST_F(MapTest, FoldersAreMeasuredEnteredAndLeftAndLinksLeadNowhere) {
    m_folder.makeFile("victim/large", 900'000);
    m_folder.makeFile("volume/Users/sam/Space/large/inner/file", 400'000);
    m_folder.makeFile("volume/Users/sam/Space/small", 1);
    m_folder.makeFile("volume/Users/sam/Space/closed/secret", 5000);
    std::filesystem::create_symlink(m_folder.path("victim"), root() + "/Users/sam/Space/link");
    std::filesystem::permissions(root() + "/Users/sam/Space/closed", std::filesystem::perms::none);
    SpacePage space({*m_window->session()->application().target().files, SizeUnits::Decimal, {}});
    const auto measure = [&](const std::string& path) {
        space.showFolder(path);
        EXPECT_TRUE(waitUntil([&] { return !space.isMeasuring(); }));
    };
    space.resize(700, 400);
    space.show();
    measure("/Users/sam/Space");
    ASSERT_EQ(space.parts().size(), 4U);
    EXPECT_EQ(space.parts()[0].name, "large");
    EXPECT_EQ(space.parts()[0].size, 400'000U);
    EXPECT_EQ(std::ranges::find(space.parts(), "link", &FolderPart::name)->size, 4000U);
    EXPECT_FALSE(std::ranges::find(space.parts(), "closed", &FolderPart::name)->isWhole);
    QStringList texts;
    for (const auto* label : space.findChildren<QLabel*>())
        texts << label->text();
    EXPECT_EQ(texts.filter(QStringLiteral("/Users/sam/Space/closed")).size(), 1);
    EXPECT_TRUE(m_window->session()->application().target().files->problems().isEmpty()) << "it was no scan";
    ASSERT_TRUE(waitUntil([&] { return !space.map().boxes().empty(); }));
    QTest::keyClick(&space.map(), Qt::Key_Home);
    QTest::keyClick(&space.map(), Qt::Key_Return);
    EXPECT_EQ(space.folder(), "/Users/sam/Space/large");
    QTest::keyClick(&space.map(), Qt::Key_Backspace);
    EXPECT_EQ(space.folder(), "/Users/sam/Space");
    std::filesystem::permissions(root() + "/Users/sam/Space/closed", std::filesystem::perms::owner_all);
    space.showFolder("/"); // and closed while it measures
}

} // namespace
} // namespace sweeply
