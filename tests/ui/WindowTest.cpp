#include "ui/WindowWorld.h"

#include "ui/ProblemReport.h"
#include "ui/UncheckedItemsPage.h"

#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTabWidget>
#include <QTreeView>
#include <QTreeWidget>
#include <fstream>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace sweeply {
namespace {

using WindowTest = WindowWorld;

TEST_F(WindowTest, PersonScansUnchecksPausesAndRemoves) {
    scan();
    auto& caches = page(1);
    caches.model().update();
    auto& model = caches.model();
    const auto group = model.index(0, 0);
    const auto first = model.index(0, 0, group);
    const auto kept = model.nodeAt(first)->path();
    model.setData(first, {}, Qt::CheckStateRole);
    const auto found = controller().foundSize();
    tool("Remove")->trigger();
    tool("Pause")->trigger();
    EXPECT_TRUE(controller().isPaused());
    tool("Resume")->trigger();
    ASSERT_TRUE(waitUntil([this] { return !controller().isRemoving(); }));
    EXPECT_TRUE(isThere(kept));
    EXPECT_FALSE(isThere("/Users/sam/Library/Caches/com.northbay.ledger"));
    const auto freed = m_window->session()->application().statistics().currentRemovedAmountOfSpace();
    EXPECT_EQ(freed, found - m_window->session()->application().gate().sums().keptSize);
    QTest::qWait(250);
    QStringList texts;
    for (const auto* label : m_window->findChildren<QLabel*>())
        texts << label->text();
    const auto shownFreed = QString::fromStdString(stringSizeFromLong(freed, SizeUnits::Decimal));
    EXPECT_TRUE(texts.filter(QStringLiteral("Freed now: ") + shownFreed).size() == 1);
}

TEST_F(WindowTest, ModuleWhoseListKeepsSomethingStaysCheckedAndIsScannedAgain) {
    const QListWidget* modules = nullptr;
    for (const auto* list : m_window->findChildren<QListWidget*>()) {
        if (list->accessibleName() == QStringLiteral("Modules"))
            modules = list;
    }
    ASSERT_NE(modules, nullptr);
    const auto* row = modules->findItems(QStringLiteral("Logs"), Qt::MatchStartsWith).value(0);
    ASSERT_NE(row, nullptr);
    scan();
    auto& logs = page(2);
    logs.model().update();
    logs.model().setData(logs.model().index(0, 0, logs.model().index(0, 0)), {}, Qt::CheckStateRole);
    tool("Remove")->trigger();
    ASSERT_TRUE(waitUntil([this] { return !controller().isRemoving(); }));
    EXPECT_EQ(logs.module().filesFound(), 1U);
    m_folder.makeFile("volume/Users/sam/Library/Logs/new.log", 20000);
    scan();
    EXPECT_EQ(row->checkState(), Qt::Checked);
    EXPECT_EQ(logs.module().filesFound(), 2U);
}

TEST_F(WindowTest, DroppedApplicationIsUninstalledAndDroppedFileErased) {
    auto& uninstaller = page(7);
    drop(uninstaller, root() + "/Applications/Safari.app");
    drop(uninstaller, root() + "/Applications/Ledger.app");
    drop(uninstaller, "/etc/hostname");
    EXPECT_EQ(uninstaller.module().filesFound(), 2U) << "what is not on the Mac is not taken";
    for (const char* button : {"Yes", "No", "Ok"})
        answer(QLatin1String(button));
    tool("Uninstall")->trigger();
    ASSERT_TRUE(waitUntil([this] { return !controller().isRemoving(); }));
    EXPECT_EQ(m_asked.value(0), QStringLiteral("Uninstall selected objects?"));
    EXPECT_EQ(m_asked.value(1), QStringLiteral("Deleting system application"));
    EXPECT_TRUE(isThere("/Applications/Safari.app"));
    EXPECT_FALSE(isThere("/Applications/Ledger.app"));
    EXPECT_FALSE(isThere("/Users/sam/Library/Preferences/com.northbay.ledger.plist"));
    EXPECT_TRUE(isThere("/Users/sam/Library/Application Support/Sweeply/Kept")) << "the box is checked the first time";

    auto& eraser = page(8);
    drop(eraser, root() + "/Users/sam/Library/Cookies/Cookies.plist");
    EXPECT_EQ(eraser.module().filesFound(), 1U);
    tool("Remove")->trigger();
    ASSERT_TRUE(waitUntil([this] { return !controller().isRemoving(); }));
    EXPECT_FALSE(isThere("/Users/sam/Library/Cookies/Cookies.plist"));
    EXPECT_EQ(m_asked.size(), 3) << "what waits in the uninstaller is not even asked about";
}

TEST_F(WindowTest, WhatWasUncheckedIsForgottenInThePreferences) {
    auto& items = m_window->session()->application().ignoreList().uncheckedItems();
    const std::string odd = "/Users/sam/Library/Caches/two\nlines";
    items.addKeys({odd, odd, "/b"}, "CleanCaches");
    UncheckedItemsPage preferences(items);
    auto* list = preferences.findChild<QTreeWidget*>();
    ASSERT_EQ(list->topLevelItemCount(), 2);
    list->topLevelItem(0)->setSelected(list->topLevelItem(0)->text(0) != QStringLiteral("/b"));
    list->topLevelItem(1)->setSelected(list->topLevelItem(1)->text(0) != QStringLiteral("/b"));
    preferences.findChild<QPushButton*>()->click();
    EXPECT_EQ(items.ignoreListForController("CleanCaches"), std::vector<std::string>{"/b"});
    EXPECT_EQ(list->topLevelItemCount(), 1);
}

TEST_F(WindowTest, LaunchDatabaseIsRebuiltByItsButton) {
    page(7);
    QPushButton* button = nullptr;
    for (auto* candidate : m_window->findChildren<QPushButton*>()) {
        if (candidate->text() == QStringLiteral("Rebuild"))
            button = candidate;
    }
    ASSERT_NE(button, nullptr);
    button->click();
    EXPECT_EQ(button->text(), QStringLiteral("Rebuilding..."));
    EXPECT_TRUE(waitUntil([&] { return button->isEnabled(); }));
    EXPECT_TRUE(isThere("/Users/sam/Library/Application Support/Sweeply/RegisteredApplications.plist"));
}

TEST_F(WindowTest, FilesOfTheCommandLineAreAskedAbout) {
    QTimer clicks;
    QObject::connect(&clicks, &QTimer::timeout, [] {
        const auto* dialog = QApplication::activeModalWidget();
        for (auto* button : dialog ? dialog->findChildren<QPushButton*>() : QList<QPushButton*>()) {
            if (button->text() == QStringLiteral("Uninstall"))
                return QTest::mouseClick(button, Qt::LeftButton);
        }
    });
    clicks.start(20);
    m_window->session()->takeRequests({root() + "/Applications/Ledger.app", "/etc/hostname"});
    auto* uninstaller = controller().moduleForViewCode(7);
    EXPECT_TRUE(waitUntil([&] { return uninstaller->filesFound() == 1 && !controller().isScanning(); }));
    EXPECT_EQ(uninstaller->pathsOfRows({0}), std::vector<std::string>{"/Applications/Ledger.app"});
}

TEST_F(WindowTest, ExtensionsAreListedOnTheirTabsAndGoOnlyAfterYes) {
    m_window->showView(6);
    auto* tabs = m_window->findChild<QTabWidget*>();
    tabs->setCurrentIndex(1);
    ASSERT_TRUE(waitUntil([this] { return !controller().isScanning(); }));
    EXPECT_EQ(tool("Uninstall")->isEnabled(), true);
    answer(QStringLiteral("Cancel"));
    tool("Uninstall")->trigger();
    EXPECT_TRUE(isThere("/Users/sam/Library/Widgets/Tides.wdgt"));
    answer(QStringLiteral("Yes"));
    tool("Uninstall")->trigger();
    ASSERT_TRUE(waitUntil([this] { return !controller().isRemoving(); }));
    EXPECT_FALSE(isThere("/Users/sam/Library/Widgets/Tides.wdgt"));
    tabs->setCurrentIndex(0);
    EXPECT_EQ(tool("Remove")->text(), QStringLiteral("Remove"));
}

TEST_F(WindowTest, FilterShowsWhatHasTheTextAndTheBoxesStillWork) {
    scan();
    auto& caches = page(1);
    caches.model().update();
    caches.findChild<QLineEdit*>()->setText(QStringLiteral("ledger"));
    auto* shownModel = caches.outline().model();
    ASSERT_EQ(shownModel->rowCount(), 1);
    const auto group = shownModel->index(0, 0);
    ASSERT_GE(shownModel->rowCount(group), 1);
    const auto item = shownModel->index(0, 0, group);
    EXPECT_TRUE(item.data().toString().contains(QStringLiteral("ledger"), Qt::CaseInsensitive));
    EXPECT_TRUE(shownModel->setData(item, Qt::Unchecked, Qt::CheckStateRole));
    EXPECT_EQ(item.data(Qt::CheckStateRole).toInt(), Qt::Unchecked);
    caches.findChild<QLineEdit*>()->clear();
    EXPECT_EQ(caches.outline().model(), &caches.model());
}

TEST_F(WindowTest, InterfaceIsNeverBlockedByAScan) {
    constexpr int kItems = 20000;
    for (int item = 0; item < kItems; ++item)
        m_folder.makeFile("volume/Users/sam/Library/Caches/item" + std::to_string(item));
    m_window->showView(1);
    qint64 longest = 0;
    QElapsedTimer sinceLast;
    QTimer heartbeat;
    heartbeat.setTimerType(Qt::PreciseTimer);
    QObject::connect(&heartbeat, &QTimer::timeout, [&] {
        longest = std::max(longest, sinceLast.elapsed());
        sinceLast.start();
    });
    sinceLast.start();
    heartbeat.start(1);
    scan();
    heartbeat.stop();
    EXPECT_GT(controller().filesFound(), static_cast<std::uint64_t>(0));
    RecordProperty("longestBlockMs", static_cast<int>(longest));
#if defined(NDEBUG)
    EXPECT_LT(longest, 50) << "milliseconds";
#else
    EXPECT_LT(longest, 2000) << "milliseconds, in a build for debugging, beside others";
#endif
}

TEST_F(WindowTest, ClosedInTheMiddleOfARunItEndsAtOnce) {
    tool("Scan")->trigger();
    m_window.reset();
    openWindow();
    scan();
    tool("Remove")->trigger();
    m_window.reset(); // whose threads wait for it
    EXPECT_TRUE(isThere("/Applications/Ledger.app"));
}

TEST_F(WindowTest, TargetThatDisappearsIsNoCrash) {
    std::filesystem::rename(root(), root() + ".away");
    std::filesystem::remove_all(root() + ".away");
    scan();
    m_window->showView(3);
    EXPECT_EQ(controller().foundSize(), 0U) << "of what is gone nothing can be freed";
}

TEST(ProblemReportTest, UncaughtExceptionLeavesAReportToRead) {
    const TestFolder folder;
    const pid_t process = ::fork();
    if (process == 0) {
        reportUncaughtExceptions(folder.path("new/reports"), "1.2");
        std::thread([] { throw std::runtime_error("what went wrong"); }).join();
    }
    int status = 0;
    ASSERT_EQ(::waitpid(process, &status, 0), process);
    EXPECT_TRUE(WIFSIGNALED(status));
    std::string text;
    for (const auto& entry : std::filesystem::directory_iterator(folder.path("new/reports")))
        text += std::string(std::istreambuf_iterator<char>(std::ifstream(entry.path()).rdbuf()), {});
    EXPECT_NE(text.find("What was thrown: what went wrong"), std::string::npos) << text;
}

TEST(StartTest, WithoutAMacTheWindowAsksForOne) {
    Desktop desktop;
    MainWindow window(desktop, {"sweeply"});
    EXPECT_TRUE(window.open({"/nothing", {}, {}, {}}, {}));
    window.show();
    EXPECT_EQ(window.session(), nullptr);
    QStringList texts;
    for (const auto* label : window.findChildren<QLabel*>())
        texts << label->text();
    EXPECT_EQ(texts.filter(QStringLiteral("/nothing: ")).size(), 1);
}

} // namespace
} // namespace sweeply
