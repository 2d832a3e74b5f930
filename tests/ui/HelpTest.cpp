#include "ui/ManualPage.h"
#include "ui/SampleButton.h"
#include "ui/TourBar.h"
#include "ui/WindowWorld.h"

#include <QLabel>
#include <QLineEdit>
#include <QTextBrowser>

namespace sweeply {
namespace {

class HelpTest : public WindowWorld {
  protected:
    template<typename Widget>
    Widget& only() {
        for (auto* widget : m_window->findChildren<QWidget*>()) {
            if (auto* found = dynamic_cast<Widget*>(widget))
                return *found;
        }
        throw std::logic_error("no such widget");
    }
};

TEST_F(HelpTest, TourOnASampleGoesOnAsThePersonDoes) {
    m_window = std::make_unique<MainWindow>(m_desktop, std::vector<std::string>{"sweeply"});
    m_window->open({"/nothing", {}, {}, {}}, {});
    m_window->show();
    EXPECT_FALSE(only<TourBar>().isVisible());
    only<SampleButton>().makeTemporary();
    ASSERT_NE(m_window->session(), nullptr);
    const auto sample = m_window->session()->application().target().files->rootPath();
    const auto says = [this](const char* beginning) {
        return waitUntil(
            [&] { return only<TourBar>().findChild<QLabel*>()->text().startsWith(QLatin1String(beginning)); });
    };
    EXPECT_TRUE(says("1 of 4"));
    scan();
    EXPECT_TRUE(says("2 of 4"));
    auto& caches = page(1);
    EXPECT_TRUE(says("3 of 4"));
    QTest::qWait(250); // the step sees what is checked
    caches.model().update();
    caches.model().setData(caches.model().index(0, 0, caches.model().index(0, 0)), {}, Qt::CheckStateRole);
    EXPECT_TRUE(says("4 of 4"));
    tool("Remove")->trigger();
    EXPECT_TRUE(says("That is all"));
    m_window.reset();
    EXPECT_FALSE(std::filesystem::exists(sample)) << "a temporary one goes with the window";
}

TEST_F(HelpTest, ManualIsAPageWithoutANetworkAndLeadsBack) {
    QAction* manual = nullptr;
    for (auto* action : m_window->findChildren<QAction*>()) {
        if (action->shortcut() == QKeySequence(Qt::Key_F1))
            manual = action;
    }
    ASSERT_NE(manual, nullptr);
    manual->trigger();
    auto& page = only<ManualPage>();
    ASSERT_TRUE(page.isVisible());
    auto& text = *page.findChild<QTextBrowser*>();
    for (const char* told : {"Take a Tour on a Sample", "--all-users", "SUDO_ASKPASS"})
        EXPECT_TRUE(text.toPlainText().contains(QLatin1String(told))) << told;
    QTest::keyClicks(page.findChild<QLineEdit*>(), QStringLiteral("roots-from"));
    EXPECT_EQ(text.textCursor().selectedText(), QStringLiteral("roots-from"));
    m_window->showView(1);
    EXPECT_FALSE(page.isVisible()) << "what shows a module shows it";
}

TEST_F(HelpTest, ToolsSayWhatTheyDoNowAndByWhichKey) {
    const auto said = tool("Remove")->toolTip();
    EXPECT_TRUE(said.endsWith(QStringLiteral("(Ctrl+D)")));
    m_window->showView(7);
    EXPECT_NE(tool("Uninstall")->toolTip(), said);
}

} // namespace
} // namespace sweeply
