#include "ui/WindowWorld.h"

#include <QAccessible>
#include <QDialog>
#include <QDockWidget>
#include <QListWidget>
#include <QPushButton>
#include <QTreeView>
#include <QTreeWidget>

namespace sweeply {
namespace {

class LayoutTest : public WindowWorld {
  protected:
    /// What can have the focus in the window now.
    static std::set<QWidget*> controls(const QWidget& window) {
        std::set<QWidget*> found;
        for (auto* widget : window.findChildren<QWidget*>()) {
            if (widget->focusPolicy() & Qt::TabFocus && !widget->focusProxy() && widget->isEnabled() &&
                widget->isVisibleTo(&window) && !widget->objectName().startsWith(QStringLiteral("qt_")))
                found.insert(widget);
        }
        return found;
    }
    /// Expects that those who cannot see the controls, or have no mouse, can do without.
    static void expectReachable(QWidget& window, const std::string& where) {
        const auto expected = controls(window);
        std::set<QWidget*> reached;
        for (std::size_t step = 0; step <= 2 * expected.size(); ++step) {
            QTest::keyClick(&window, Qt::Key_Tab);
            reached.insert(QApplication::focusWidget());
        }
        for (auto* widget : expected) {
            const std::string control = where + ": " + widget->metaObject()->className();
            auto* accessible = QAccessible::queryAccessibleInterface(widget);
            ASSERT_NE(accessible, nullptr) << control;
            EXPECT_FALSE(accessible->text(QAccessible::Name).isEmpty()) << control << " has no name";
            EXPECT_TRUE(reached.contains(widget)) << control << " is not reached by the Tab key";
        }
    }
    void fit(int width, int height) {
        m_window->resize(width, height);
        QApplication::processEvents();
    }
    void makeUnreadable(const std::string& path) {
        m_folder.makeFile("volume" + path + "/inside");
        std::filesystem::permissions(root() + path, std::filesystem::perms::none);
    }
};

TEST_F(LayoutTest, EveryControlHasANameAndIsReachedByTheKeyboard) {
    makeUnreadable("/Users/sam/Library/Caches/closed");
    m_window->activateWindow();
    ASSERT_TRUE(waitUntil([this] { return m_window->isActiveWindow(); }));
    scan();
    for (const int view : {0, 1, 2, 3, 4, 5, 6, 7, 8}) {
        const auto viewCode = static_cast<std::uint8_t>(view);
        m_window->showView(viewCode);
        if (controller().moduleForViewCode(viewCode) && view != 6) {
            page(viewCode).model().update();
            page(viewCode).outline().setCurrentIndex(page(viewCode).model().index(0, 0));
        }
        QApplication::processEvents();
        expectReachable(*m_window, "page " + std::to_string(view));
    }
}

TEST_F(LayoutTest, InformationTakesNoRoomThatItDoesNotNeed) {
    auto* dock = m_window->findChild<QDockWidget*>();
    scan();
    fit(1200, 700);
    auto& caches = page(1);
    caches.model().update();
    EXPECT_FALSE(dock->isVisible());
    caches.outline().setCurrentIndex(caches.model().index(0, 0));
    EXPECT_TRUE(dock->isVisible());
    EXPECT_EQ(m_window->dockWidgetArea(dock), Qt::RightDockWidgetArea);
    fit(800, 500);
    EXPECT_EQ(m_window->size(), QSize(800, 500)) << "nothing needs more";
    EXPECT_EQ(m_window->dockWidgetArea(dock), Qt::BottomDockWidgetArea);
    dock->close();
    caches.outline().setCurrentIndex(caches.model().index(0, 0, caches.model().index(0, 0)));
    EXPECT_FALSE(dock->isVisible()) << "not before it is asked for again";
    QTest::keyClick(m_window.get(), Qt::Key_I, Qt::ControlModifier);
    EXPECT_TRUE(dock->isVisible());
    page(2);
    EXPECT_FALSE(dock->isVisible());
}

TEST_F(LayoutTest, WhatCouldNotBeReadIsCountedAndListed) {
    const auto button = [this] {
        for (auto* candidate : m_window->findChildren<QPushButton*>()) {
            if (candidate->text() == QStringLiteral("Show…") && candidate->isVisible())
                return candidate;
        }
        return static_cast<QPushButton*>(nullptr);
    };
    scan();
    EXPECT_EQ(button(), nullptr);
    makeUnreadable("/Users/sam/Library/Caches/closed");
    scan();
    ASSERT_TRUE(waitUntil([&] { return button() != nullptr; }));
    QStringList rows;
    QTimer::singleShot(0, m_window.get(), [&] {
        auto* dialog = QApplication::activeModalWidget();
        ASSERT_TRUE(waitUntil([&] { return dialog->isActiveWindow(); }));
        const auto* list = dialog->findChild<QTreeWidget*>();
        for (int row = 0; row < list->topLevelItemCount(); ++row)
            rows << list->topLevelItem(row)->text(0);
        expectReachable(*dialog, "list");
        qobject_cast<QDialog*>(dialog)->reject();
    });
    button()->click();
    EXPECT_EQ(rows, QStringList{QStringLiteral("/Users/sam/Library/Caches/closed")});
}

} // namespace
} // namespace sweeply
