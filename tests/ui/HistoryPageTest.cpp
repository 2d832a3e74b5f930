#include "ui/HistoryPage.h"
#include "ui/SectionView.h"
#include "ui/WindowWorld.h"

#include <QAbstractItemModelTester>
#include <QLabel>
#include <QTreeWidget>
#include <fstream>
#include <map>

namespace sweeply {
namespace {

class HistoryPageTest : public WindowWorld {
  protected:
    static constexpr const char* kPreferences = "/Users/sam/Library/Preferences/com.northbay.ledger.plist";

    Application& application() { return m_window->session()->application(); }
    template<typename Kind>
    Kind& widget() {
        for (auto* candidate : m_window->findChildren<QWidget*>()) {
            if (auto* found = dynamic_cast<Kind*>(candidate))
                return *found;
        }
        throw std::logic_error("no such widget");
    }
    HistoryPage& history() { return widget<HistoryPage>(); }
    SectionModel& items() { return widget<SectionView>().sectionModel(); }
    std::multiset<std::string> pathsIn(const std::string& title) {
        std::multiset<std::string> paths;
        for (const auto& section : items().sections()) {
            for (const auto& item : section.items)
                title == section.title ? (void)paths.insert(item.path) : (void)0;
        }
        return paths;
    }
    bool waitFor(const std::string& title) {
        return waitUntil([&] { return !pathsIn(title).empty(); });
    }
    void press(const char* title) {
        for (auto* button : history().findChildren<QPushButton*>()) {
            if (button->text() == QLatin1String(title)) {
                EXPECT_TRUE(button->isEnabled()) << title;
                QTest::mouseClick(button, Qt::LeftButton);
            }
        }
    }
    std::string contents(const std::string& path) {
        return {std::istreambuf_iterator<char>(std::ifstream(root() + path).rdbuf()), {}};
    }
    void uninstallLedger() {
        drop(page(7), root() + "/Applications/Ledger.app");
        answer(QStringLiteral("Yes"));
        tool("Uninstall")->trigger();
        ASSERT_TRUE(waitUntil([this] { return !controller().isRemoving(); }));
        ASSERT_TRUE(waitFor("Kept"));
    }
};

TEST_F(HistoryPageTest, ReportsARunAsItsRecordDoesAndPutsEverythingBack) {
    const auto before = contents(kPreferences);
    ASSERT_FALSE(before.empty());
    uninstallLedger();
    const QAbstractItemModelTester tester(&items(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    EXPECT_TRUE(history().isVisible()) << "it comes by itself after a run";
    const auto record = application().runs().record(*application().runs().run());
    ASSERT_TRUE(record);
    std::map<std::string, std::multiset<std::string>> recorded;
    for (const auto& item : record->items)
        recorded[item.outcome].insert(item.path);
    EXPECT_TRUE(recorded["kept"] == pathsIn("Kept"));
    EXPECT_TRUE(recorded["failed"] == pathsIn("Still there"));
    EXPECT_FALSE(isThere(kPreferences));

    m_folder.makeFile("volume" + std::string(kPreferences), 11);
    press("Put Back");
    ASSERT_TRUE(waitFor("Still there"));
    EXPECT_TRUE(pathsIn("Still there") == std::multiset<std::string>{kPreferences}) << "never over something";
    EXPECT_EQ(contents(kPreferences).size(), 11U);
    std::filesystem::remove(root() + kPreferences);
    EXPECT_TRUE(isThere("/Applications/Ledger.app"));
    auto* runs = history().findChild<QTreeWidget*>();
    ASSERT_TRUE(waitUntil([&] { return runs->topLevelItemCount() == 2; }));
    runs->setCurrentItem(runs->topLevelItem(1));
    ASSERT_TRUE(waitFor("Kept"));
    press("Put Back");
    ASSERT_TRUE(waitUntil([this] { return isThere(kPreferences); }));
    EXPECT_EQ(contents(kPreferences), before);
    EXPECT_TRUE(application().runs().kept().empty());
}

TEST_F(HistoryPageTest, FreesForGoodOnlyAfterYesAndTellsWhatStays) {
    uninstallLedger();
    answer(QStringLiteral("Cancel"));
    press("Free Now");
    EXPECT_FALSE(application().runs().kept().empty());
    answer(QStringLiteral("Free Now"));
    press("Free Now");
    ASSERT_TRUE(waitFor("Removed"));
    EXPECT_TRUE(application().runs().kept().empty());
    EXPECT_FALSE(isThere(kPreferences));
}

TEST_F(HistoryPageTest, ChangesNothingWhileSomethingRunsAndNothingBeginsMeanwhile) {
    uninstallLedger();
    controller().startScan();
    press("Put Back");
    EXPECT_FALSE(isThere("/Applications/Ledger.app"));
    ASSERT_TRUE(waitUntil([this] { return !controller().isScanning(); }));
    std::atomic<bool> mayEnd{false};
    std::atomic<bool> hasEnded{false};
    ASSERT_TRUE(controller().doAlone([&](const std::stop_token&) { mayEnd.wait(false); }, [&] { hasEnded = true; }));
    controller().remove();
    controller().startScan();
    EXPECT_FALSE(controller().isRemoving() || controller().isScanning());
    EXPECT_FALSE(controller().doAlone([](const std::stop_token&) {}, [] {}));
    mayEnd = true;
    mayEnd.notify_all();
    EXPECT_TRUE(waitUntil([&] { return hasEnded.load(); }));
}

TEST(RunReportTest, WhatStayedSaysWhatWouldHelp) {
    std::vector<RecordedItem> items;
    for (const auto& [kind, error] : {std::pair{OutcomeKind::Failed, ErrorKind::PermissionDenied},
                                      {OutcomeKind::Failed, ErrorKind::ReadOnly},
                                      {OutcomeKind::Changed, ErrorKind::Other},
                                      {OutcomeKind::Emptied, ErrorKind::Other}}) {
        const ChangeReport report{"/a", "logs", ChangedKind::Log, 100, {kind, {error, "/a", "because"}}, {}};
        const auto line = itemLine(recordedItem(report));
        const auto header = headerLine({"r", "clean", "1", "/", "sam", "2026-11-24T05:00:00Z", 0});
        items.push_back(parseRunRecord(header + line)->items.at(0));
    }
    const auto report = reportOfItems("", items, SizeUnits::Decimal);
    ASSERT_EQ(report.sections.size(), 2U);
    const auto& stayed = report.sections[0].items;
    EXPECT_NE(stayed.at(0).note.find("because. An administrator"), std::string::npos);
    EXPECT_NE(stayed.at(1).note.find("mount it for writing"), std::string::npos);
    EXPECT_NE(stayed.at(2).note.find("A new scan"), std::string::npos);
    EXPECT_EQ(report.summary, QStringLiteral("Freed: 0.10 KB. Still there: 3."));
}

} // namespace
} // namespace sweeply
