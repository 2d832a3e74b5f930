#include "ui/SectionView.h"
#include "ui/WindowWorld.h"

#include <QAbstractItemModelTester>
#include <QCheckBox>
#include <QLabel>

namespace sweeply {
namespace {

class RemovalSheetTest : public WindowWorld {
  protected:
    Application& application() { return m_window->session()->application(); }
    /// Leaves only the results of these rows checked.
    void checkOnly(std::initializer_list<std::uint8_t> views) {
        for (const auto& row : controller().rows())
            row->correspondingScanController()->setEveryObjectEnabled(std::ranges::find(views, row->viewName()) !=
                                                                      views.end());
    }
    /// Presses Remove, and `button` in the sheet after a look at it. How often there was a sheet.
    int remove(const char* button, std::function<void(RemovalSheet&)> look) {
        int sheets = 0;
        m_sheetButton = QLatin1String(button);
        m_lookAtSheet = [&](RemovalSheet& sheet) {
            ++sheets;
            look(sheet);
        };
        tool("Remove")->trigger();
        EXPECT_TRUE(waitUntil([this] { return !controller().isRemoving(); }));
        m_lookAtSheet = {};
        return sheets;
    }
    std::set<std::string> everything() const {
        std::set<std::string> paths;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(root()))
            paths.insert(entry.path());
        return paths;
    }
    static QString defaultButton(const RemovalSheet& sheet) {
        for (const auto* button : sheet.findChildren<QPushButton*>()) {
            if (button->isDefault())
                return button->text();
        }
        return {};
    }
};

TEST_F(RemovalSheetTest, ShowsExactlyWhatThenGoesAndNothingGoesAfterCancel) {
    scan();
    std::multiset<std::string> shown;
    std::uint64_t size = 0;
    std::uint64_t count = 0;
    std::uint64_t toKeep = 0;
    const auto look = [&](RemovalSheet& sheet) {
        shown.clear();
        size = count = 0;
        auto& model = sheet.findChild<SectionView*>()->sectionModel();
        const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
        for (const auto& section : model.sections()) {
            std::uint64_t inSection = 0;
            for (const auto& item : section.items) {
                shown.insert(item.path);
                inSection += item.size;
            }
            EXPECT_EQ(section.size, inSection) << section.title;
            EXPECT_EQ(section.count, section.items.size()) << section.title;
            toKeep = section.note.empty() ? toKeep : section.size;
            size += section.size;
            count += section.count;
        }
        EXPECT_EQ(size, controller().foundSize());
        EXPECT_EQ(defaultButton(sheet), QStringLiteral("Cancel")) << "launch items cannot be made again";
    };
    const auto before = everything();
    EXPECT_EQ(remove("Cancel", look), 1);
    EXPECT_GT(shown.size(), 10U);
    EXPECT_EQ(everything(), before);

    EXPECT_EQ(remove("Remove", look), 1);
    std::multiset<std::string> gone;
    for (const auto& report : application().gate().reports()) {
        EXPECT_TRUE(report.outcome.isDone()) << report.path << ": " << report.outcome.error.reason;
        gone.insert(report.path);
    }
    const std::string link =
        "/Applications/Harbor Mail.app/Contents/Frameworks/Kindling.framework/Versions/A/Resources/";
    shown.insert(link + "fr_CA.lproj"); // goes with the neighbour that it leads to, and is no item
    EXPECT_TRUE(gone == shown);
    const auto sums = application().gate().sums();
    EXPECT_EQ(sums.removed + sums.kept, count + 1);
    EXPECT_EQ(sums.keptSize, toKeep) << "the box is checked the first time";
    EXPECT_EQ(sums.freed, size - toKeep);
}

TEST_F(RemovalSheetTest, OnlyCachesAndLogsMayGoUnaskedAndOnlyAfterThatWasChosen) {
    scan();
    checkOnly({1, 2});
    const auto look = [&](RemovalSheet& sheet) {
        EXPECT_EQ(defaultButton(sheet), QStringLiteral("Remove"));
        ASSERT_EQ(sheet.findChildren<QCheckBox*>().size(), 1);
        sheet.findChild<QCheckBox*>()->setChecked(true);
    };
    EXPECT_EQ(remove("Cancel", look), 1) << "what was ticked counts only with a yes";
    EXPECT_EQ(remove("Remove", look), 1);
    m_folder.makeFile("volume/Users/sam/Library/Caches/new", 5000);
    scan();
    checkOnly({1, 3});
    EXPECT_EQ(remove("Cancel", [](auto&) {}), 1) << "languages are among it";
    checkOnly({1});
    EXPECT_EQ(remove("Cancel", [](auto&) {}), 0);
    EXPECT_FALSE(isThere("/Users/sam/Library/Caches/new"));
}

TEST_F(RemovalSheetTest, WhatChangesWhileItIsShownIsShownAgain) {
    auto& eraser = page(8);
    drop(eraser, root() + "/Users/sam/Library/Cookies/Cookies.plist");
    m_folder.makeFile("volume/Users/sam/other", 5000);
    EXPECT_EQ(remove("Remove",
                     [&](RemovalSheet& sheet) {
                         EXPECT_EQ(defaultButton(sheet), QStringLiteral("Cancel"));
                         eraser.module().receiveDragData({"/Users/sam/other"});
                         EXPECT_TRUE(waitUntil([&] { return eraser.module().filesFound() == 2; }));
                         EXPECT_TRUE(waitUntil([&] { return !controller().ifScanRunning(); }));
                         m_lookAtSheet = [this](RemovalSheet& again) {
                             EXPECT_EQ(again.findChild<SectionView*>()->sectionModel().sections().at(0).count, 2U);
                             m_sheetButton = QStringLiteral("Cancel");
                         };
                     }),
              1);
    EXPECT_TRUE(isThere("/Users/sam/other"));
    EXPECT_TRUE(isThere("/Users/sam/Library/Cookies/Cookies.plist"));
}

} // namespace
} // namespace sweeply
