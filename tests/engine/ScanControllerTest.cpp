#include "engine/FakeModule.h"
#include "engine/TestWorld.h"

#include <gmock/gmock.h>
#include <latch>

namespace sweeply {
namespace {

using namespace testing;

constexpr const char* kRightsTitle = "Some items can only be removed by an administrator";
constexpr const char* kSomethingStayed =
    "Sweeply could not remove some files|Please try cleaning in authorized mode!\nClick on the lock below to enter "
    "your user name and password.";

/// A window that only keeps what it was told.
struct RecordingWindow : MainView {
    void actionButtonsChanged(const ActionButtons& now) override { buttons = now; }
    void terminate() override { ++terminated; }
    ActionButtons buttons;
    int terminated = 0;
};

class ScanControllerTest : public testing::Test {
  protected:
    ScanControllerTest() { controller().setMainView(&m_window); }
    ~ScanControllerTest() override { m_world.end(); }

    ScanController& controller() { return *m_world.coordinator; }
    FakeView& module(std::uint8_t code, const std::vector<std::uint64_t>& sizes = {}) {
        auto& added = m_world.add(
            code, std::make_unique<FakeView>("Fake" + std::to_string(code), m_world.services(), controller()));
        for (const auto size : sizes)
            added.addChildNode(FakeView::leaf("/" + std::to_string(code) + "/" + std::to_string(size), size));
        return added;
    }

    TestWorld m_world;
    RecordingWindow m_window;
};

TEST_F(ScanControllerTest, NothingCheckedToScanIsSaidAndStartsNothing) {
    module(3).setTakesPartInScan(false);
    module(7, {1});
    module(8, {1});
    controller().refreshInterface();
    controller().startScan();
    EXPECT_FALSE(controller().isScanning());
    EXPECT_THAT(m_world.alerts.texts(),
                ElementsAre("There is nothing to scan|Please check at least one object to scan!"));
    EXPECT_THAT(m_world.alerts.shown[0].buttons, ElementsAre("Ok"));
    EXPECT_EQ(controller().lastScannedOn(), "");
}

TEST_F(ScanControllerTest, NothingToRemoveIsSaidInOneOfTwoWays) {
    auto& only = module(3);
    controller().remove();
    only.addChildNode(FakeView::leaf("/a", 1, false));
    controller().remove();
    controller().uninstall();
    EXPECT_FALSE(controller().isRemoving());
    EXPECT_THAT(m_world.alerts.texts(),
                ElementsAre("Your System is clean!|",
                            "There is nothing to clean|Please check at least one object to clean!",
                            "There is nothing to uninstall|Please check at least one object to uninstall!"));
}

TEST_F(ScanControllerTest, ScanShowsButtonsAndTellsWhatItFound) {
    std::latch isOver(1);
    module(3).whenScanning = [&](FakeView& found) {
        found.addChildNode(FakeView::leaf("/a", 2'500'000));
        isOver.wait();
    };
    module(8, {1'000'000}).setEveryObjectEnabled(false);
    m_world.coordinator->startScan();
    EXPECT_EQ(m_window.buttons.scan.title, "Stop Scan");
    EXPECT_TRUE(m_window.buttons.pause.isEnabled);
    isOver.count_down();
    m_world.waitUntil([&] { return !controller().isScanning(); });
    EXPECT_EQ(m_window.buttons.scan.title, "Scan");
    EXPECT_FALSE(m_window.buttons.pause.isEnabled);
    EXPECT_TRUE(m_window.buttons.remove.isEnabled);
    EXPECT_THAT(m_world.desktop.shown,
                ElementsAre("SCAN_FINISHED|Scan is finished|Sweeply can clean 2.50 MB from your Mac!"));
    EXPECT_EQ(m_world.desktop.attentions, 1);
    EXPECT_EQ(controller().lastScannedOn(), "June 1, 2009");
    EXPECT_EQ(controller().totalSize(), 3'500'000U);
    EXPECT_EQ(controller().foundSize(), 2'500'000U);
    EXPECT_EQ(controller().filesFound(), 2U);
    EXPECT_EQ(controller().filesFoundInEnabled(), 1U);
}

TEST_F(ScanControllerTest, NoModuleCountsForMoreThanItsOwnWork) {
    EXPECT_EQ(controller().totalProcentDone(), 1.0F);
    std::latch announced(2);
    std::latch isOver(1);
    const auto works = [&](std::uint32_t total, std::uint32_t done) {
        return [&, total, done](FakeView& scanning) {
            scanning.incTotalProcentageBy(total);
            scanning.incProgressBy(done);
            announced.count_down();
            isOver.wait();
        };
    };
    module(3).whenScanning = works(10, 50);
    module(4).whenScanning = works(10, 0);
    controller().startScan();
    announced.wait();
    EXPECT_EQ(controller().totalProcentDone(), 0.5F);
    isOver.count_down();
    m_world.waitUntil([&] { return !controller().isScanning(); });
}

TEST_F(ScanControllerTest, ManyModulesEndingAtTheSameTimeEndTheScanOnce) {
    for (std::uint8_t code = 1; code <= 6; ++code)
        module(code);
    for (int i = 1; i <= 100; ++i) {
        m_world.scan();
        ASSERT_EQ(m_world.desktop.shown.size(), static_cast<std::size_t>(i));
    }
}

TEST_F(ScanControllerTest, PauseAndStopReachAModuleInTheMiddleOfItsItem) {
    std::atomic<int> items = 0;
    auto& endless = module(3);
    endless.whenScanning = [&](FakeView& scanning) {
        while (!scanning.stopped()) {
            scanning.addChildNode(FakeView::leaf("/" + std::to_string(++items), 1));
            scanning.waitWhilePaused();
        }
    };
    controller().startScan();
    controller().pauseScan();
    EXPECT_TRUE(endless.ifPaused());
    EXPECT_EQ(m_window.buttons.pause.title, "Resume");
    controller().pauseScan();
    const int before = items;
    m_world.waitUntil([&] { return endless.filesFound() > static_cast<std::size_t>(before); });
    controller().pauseScan();

    controller().stopScan(); // "Cancel" by default
    EXPECT_TRUE(controller().isPaused());
    m_world.alerts.answers["Are you sure you want to stop the Scan now?"] = 1;
    controller().stopScan();
    m_world.waitUntil([&] { return !controller().isScanning(); });
    EXPECT_EQ(endless.filesFound(), static_cast<std::size_t>(items));
    EXPECT_THAT(m_world.alerts.texts(), Contains("Are you sure you want to stop the Scan now?|It is recommended to "
                                                 "finish the scan for best results."));
    EXPECT_THAT(m_world.alerts.shown[0].buttons, ElementsAre("Cancel", "Stop Now"));
}

TEST_F(ScanControllerTest, RemovalCleansCheckedRowsInOrderAndKeepsTheBooks) {
    std::vector<std::string> order;
    for (const std::uint8_t code : std::initializer_list<std::uint8_t>{5, 3, 4}) {
        auto& added = module(code, {1000, 200});
        added.whenCleaning = [&](const std::string& path) {
            order.push_back(path);
            return true;
        };
        if (code == 4)
            added.setEveryObjectEnabled(false);
    }
    controller().refreshInterface();
    m_world.defaults->setUnsigned("totalSizeSaved", 7);

    m_world.remove();

    EXPECT_THAT(order, ElementsAre("/5/1000", "/5/200", "/3/1000", "/3/200"));
    EXPECT_EQ(m_world.statistics->currentRemovedAmountOfSpace(), 2400U);
    EXPECT_EQ(m_world.statistics->lastRunSizeSaved(), "2.40 KB");
    EXPECT_THAT(m_world.desktop.shown,
                ElementsAre("CLEAN_FINISHED|Clean is finished|Sweeply has cleaned 2.40 KB from your Mac!"));
    EXPECT_THAT(m_world.alerts.shown, IsEmpty());
    EXPECT_EQ(m_window.buttons.remove.title, "Remove");
    m_world.restart();
    EXPECT_EQ(m_world.statistics->numberTotalSizeSaved(), 2407U);
    EXPECT_EQ(m_world.statistics->numberLastRunSizeSaved(), 0U);
}

TEST_F(ScanControllerTest, WhatStayedIsReportedOnceAtTheEnd) {
    auto& only = module(3, {1000, 200});
    only.immovable = {"/3/200"};
    only.whenCleaning = [&](const std::string&) {
        m_world.gate.stays({Operation::Remove, "/3/200"}, "why not");
        return true;
    };
    m_world.desktop.isActive = true;
    m_world.remove();
    EXPECT_THAT(m_world.desktop.shown, IsEmpty());
    EXPECT_THAT(m_world.alerts.texts(), ElementsAre(kSomethingStayed));
    m_world.desktop.isActive = false;
    only.addChildNode(FakeView::leaf("/3/300", 3000));
    m_world.remove();
    EXPECT_THAT(m_world.desktop.shown,
                ElementsAre("ERROR|Clean process has finished with errors|Sweeply has cleaned 3.00 KB from your Mac! "
                            "But there were some errors."));
    EXPECT_EQ(m_world.alerts.shown.size(), 2U);
}

TEST_F(ScanControllerTest, SecondRemovalAndScanAskedForDuringOneAreDropped) {
    auto& only = module(3, {1000, 200});
    only.whenCleaning = [&](const std::string&) {
        m_world.loop.runAndWait([&] {
            controller().remove();
            controller().startScan();
            only.quickScan();
        });
        return true;
    };
    m_world.remove();
    EXPECT_FALSE(controller().isScanning());
    EXPECT_EQ(only.cleaned.size(), 2U);
    EXPECT_EQ(m_world.statistics->currentRemovedAmountOfSpace(), 1200U);
    EXPECT_EQ(m_world.desktop.attentions, 1);
}

TEST_F(ScanControllerTest, RemovalAskedForDuringAScanIsDropped) {
    std::latch isOver(1);
    auto& only = module(3);
    only.whenScanning = [&](FakeView& scanning) {
        scanning.addChildNode(FakeView::leaf("/a", 1));
        isOver.wait();
        scanning.addChildNode(FakeView::leaf("/unseen", 1));
    };
    controller().startScan();
    m_world.waitUntil([&] { return only.filesFound() == 1; });
    controller().remove();
    EXPECT_FALSE(controller().isRemoving());
    isOver.count_down();
    m_world.waitUntil([&] { return !controller().isScanning(); });
    EXPECT_THAT(only.cleaned, IsEmpty());
}

TEST_F(ScanControllerTest, ClicksDuringARemovalDecideAboutWhatIsYetToCome) {
    auto& first = module(3, {1});
    auto& second = module(4, {2, 3});
    first.whenCleaning = [&](const std::string&) {
        m_world.loop.runAndWait([&] {
            second.toggleOutlineItem(*second.objectAtIndex(0));
            EXPECT_FALSE(controller().rows()[0]->enabled());
        });
        return true;
    };
    m_world.remove();
    EXPECT_THAT(second.cleaned, ElementsAre("/4/3"));
}

TEST_F(ScanControllerTest, StoppedRemovalEndsAtItsNextItemAndAQuitFollows) {
    auto& first = module(3, {1, 2});
    auto& second = module(4, {3});
    first.whenCleaning = [&](const std::string&) {
        m_world.loop.runAndWait([&] {
            controller().setTerminating(true);
            controller().stopRemoval();
            EXPECT_FALSE(m_window.buttons.remove.isEnabled);
        });
        return true;
    };
    m_world.remove();
    EXPECT_THAT(first.cleaned, ElementsAre("/3/1"));
    EXPECT_THAT(second.cleaned, IsEmpty());
    EXPECT_EQ(m_window.terminated, 1);
    EXPECT_THAT(m_world.desktop.shown, IsEmpty());
}

class RightsTest : public ScanControllerTest, public testing::WithParamInterface<std::tuple<std::size_t, int, int>> {};

TEST_P(RightsTest, AnswerDecidesWhatIsCleanedAndIsAskedForOnce) {
    const auto [answer, privileged, plain] = GetParam();
    auto& first = module(3, {1});
    auto& second = module(4, {2});
    auto& third = module(5, {3});
    first.needsRights = second.needsRights = true;
    m_world.alerts.answers[kRightsTitle] = answer;

    m_world.remove();

    EXPECT_EQ(first.cleaned.size() + second.cleaned.size(), static_cast<std::size_t>(privileged));
    EXPECT_EQ(third.cleaned.size(), static_cast<std::size_t>(plain));
    constexpr std::size_t kSkipped = 1;
    ASSERT_EQ(m_world.alerts.shown.size(), answer == kSkipped ? 2U : 1U) << "what stays after a skip is reported";
    EXPECT_EQ(m_world.gate.sums().failed, answer == kSkipped ? 2U : 0U);
    EXPECT_THAT(m_world.alerts.shown[0].buttons, ElementsAre("Authenticate", "Skip", "Cancel"));
    EXPECT_EQ(m_world.alerts.shown[0].safeButton, 1U);
    EXPECT_EQ(m_world.authorisation->isAuthorised(), answer == 0);
}

INSTANTIATE_TEST_SUITE_P(Answers, RightsTest,
                         testing::Values(std::tuple{0U, 2, 1}, std::tuple{1U, 0, 1}, std::tuple{2U, 0, 0}));

TEST_F(ScanControllerTest, LockObtainsRightsAndGivesThemBack) {
    m_world.rights.isRefusing = true;
    controller().authentificate();
    EXPECT_EQ(m_world.authorisation->lockText(), "Permition denied!");
    EXPECT_EQ(m_world.authorisation->menuItemTitle(), "Authorize…");
    m_world.rights.isRefusing = false;
    controller().authentificate();
    EXPECT_EQ(m_world.authorisation->lockText(), "         Authorized");
    EXPECT_EQ(m_world.authorisation->menuItemTitle(), "Deauthorize…");
    controller().authentificate();
    EXPECT_FALSE(m_world.authorisation->isAuthorised());
    EXPECT_EQ(m_world.rights.givenBack, 2); // what was reached but refused, too
    EXPECT_THAT(m_world.log.lines(), Contains("Failed to copy rights -60006"));
}

TEST_F(ScanControllerTest, ModesNameTheRemoveButtonAndWhatEnablesIt) {
    module(3, {1});
    controller().gotoUninstallerMode();
    EXPECT_EQ(m_window.buttons.remove.title, "Uninstall");
    controller().gotoCleanerMode();
    EXPECT_EQ(m_window.buttons.remove.title, "Remove");
    EXPECT_TRUE(m_window.buttons.remove.isEnabled);
    EXPECT_EQ(m_window.buttons.scan.title, "Scan");
}

TEST_F(ScanControllerTest, WhatIsUncheckedInAListSwitchesNoModuleOff) {
    auto& only = module(3);
    only.whenScanning = [](FakeView& found) {
        found.addChildNode(FakeView::leaf("/kept", 1));
        found.addChildNode(FakeView::leaf("/gone", 1));
    };
    ScanObject& row = *controller().rows()[0];
    m_world.scan();
    only.toggleOutlineItem(*only.objectAtIndex(0));
    m_world.remove();
    EXPECT_THAT(only.cleaned, ElementsAre("/gone"));
    EXPECT_TRUE(row.checked());
    m_world.scan();
    EXPECT_EQ(only.filesFound(), 2U);

    row.setChecked(false);
    EXPECT_FALSE(only.ifAnyEnabled());
    only.toggleOutlineItem(*only.objectAtIndex(1));
    EXPECT_FALSE(row.checked());
    m_world.remove();
    EXPECT_THAT(only.cleaned, ElementsAre("/gone", "/gone")) << "what is checked goes, wherever it is listed";
    m_world.scan();
    EXPECT_EQ(only.filesFound(), 1U) << "and nothing is looked for any more";
}

TEST_F(ScanControllerTest, RowChecksItsModuleAndShowsItsFigures) {
    auto& only = module(3, {2000});
    ScanObject& row = *controller().rows()[0];
    EXPECT_EQ(row.description(), "Found: 2.00 KB");
    EXPECT_EQ(row.size(), 2000U);
    EXPECT_EQ(row.progressLeft(), 0.0F);
    EXPECT_TRUE(row.check());
    EXPECT_FALSE(row.checked() || only.ifAnyEnabled());
    row.quietSetEnabled(true);
    EXPECT_FALSE(only.ifAnyEnabled());

    ScanObject plain;
    plain.setAsHeaderRow();
    EXPECT_TRUE(plain.enabled() && plain.checked() && plain.isHeaderRow());
    EXPECT_FALSE(plain.checkable());
    EXPECT_EQ(plain.description(), "description");
    EXPECT_EQ(plain.progressLeft(), 1.0F);
}

TEST_F(ScanControllerTest, ChangedPreferencesReachRowsAndModules) {
    auto& languages = module(3);
    languages.key = "CleanLanguageTranslations";
    m_world.defaults->setBool("CleanLanguageTranslations", false);
    controller().preferencesChanged();
    m_world.runPending();
    EXPECT_FALSE(controller().rows()[0]->checked() || languages.ifAnyEnabled());
    m_world.defaults->setBool("CleanLanguageTranslations", true);
    controller().preferencesChanged();
    m_world.runPending();
    EXPECT_TRUE(controller().rows()[0]->checked() && languages.ifAnyEnabled());
}

} // namespace
} // namespace sweeply
