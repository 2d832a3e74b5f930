#include "ui/WindowWorld.h"

#include "app/ModuleCatalog.h"

#include <QCheckBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QTreeView>
#include <fstream>

namespace sweeply {
namespace {

class InformationPanelTest : public WindowWorld {
  protected:
    /// Makes the first item current whose name is the last of `names`, below those before it.
    void select(std::uint8_t viewCode, const QStringList& names) {
        auto& results = page(viewCode);
        results.model().update();
        QModelIndex place;
        for (const auto& name : names) {
            const auto matches = results.model().match(results.model().index(0, 0, place), Qt::DisplayRole, name, 1,
                                                       Qt::MatchExactly | Qt::MatchCaseSensitive);
            ASSERT_EQ(matches.size(), 1) << name.toStdString();
            place = matches.front();
        }
        results.outline().setCurrentIndex(place);
    }
    QString said(const char* title) {
        for (const auto* label : m_window->findChildren<QLabel*>()) {
            if (label->accessibleName() == QLatin1String(title))
                return label->text();
        }
        return {};
    }
    /// What the item stands for; none when the list is hidden.
    QStringList behind() {
        for (const auto* list : m_window->findChildren<QPlainTextEdit*>()) {
            if (list->accessibleName() == QStringLiteral("What it stands for") && list->isVisibleTo(m_window.get()))
                return list->toPlainText().split(QLatin1Char('\n'));
        }
        return {};
    }
};

TEST_F(InformationPanelTest, ItemsNameWhatGoesWithThemUnseen) {
    m_folder.makeFile("volume/Applications/Paper Trail.app/Contents/a\nb.h");
    scan();
    select(3, {QStringLiteral("Ledger"), QStringLiteral("French")});
    EXPECT_EQ(said("Where"), QStringLiteral("/Applications/Ledger.app"));
    EXPECT_EQ(behind(), QStringList{QStringLiteral("Contents/Resources/French.lproj")});
    select(3, {QStringLiteral("Ledger")});
    EXPECT_EQ(behind(), QStringList()) << "its languages are rows of their own";
    select(5, {QStringLiteral("Development Junk"), QStringLiteral("Paper Trail")});
    EXPECT_EQ(behind().size(), 4);
    EXPECT_EQ(behind().filter(QStringLiteral("/classes.nib")).size(), 1);
    EXPECT_EQ(behind().filter(QStringLiteral("Contents/a\uFFFDb.h")).size(), 1) << "one line an item";
}

TEST_F(InformationPanelTest, LogsAndBinariesAreSaidToStay) {
    scan();
    for (const std::uint8_t view : std::initializer_list<std::uint8_t>{kCachesView, kLogsView, kBinariesView}) {
        auto& results = page(view);
        results.model().update();
        results.outline().setCurrentIndex(results.model().index(0, 0, results.model().index(0, 0)));
        EXPECT_EQ(said("What removing it means").contains(QStringLiteral("stays")), view != kCachesView);
    }
}

TEST_F(InformationPanelTest, ClaimedItemsNameTheirClaimantsAndWeakOnesFollowTheBox) {
    m_window.reset();
    m_folder.makeFile("volume/Applications/Ledger Pro.app/Contents/MacOS/Ledger Pro");
    std::ofstream(m_folder.path("volume/Applications/Ledger Pro.app/Contents/Info.plist"))
        << "<plist><dict><key>CFBundleIdentifier</key><string>com.northbay.ledgerpro</string></dict></plist>";
    m_folder.makeFile("volume/Users/sam/Library/Preferences/com.northbay.ledgerpro.plist");
    m_folder.makeFile("volume/Users/sam/Library/Application Support/My Ledger/data");
    openWindow();
    drop(page(7), root() + "/Applications/Ledger.app");
    const auto markOf = [this](const QString& item) {
        select(7, {QStringLiteral("Ledger"), item});
        return page(7).outline().currentIndex().data(Qt::CheckStateRole).toInt();
    };
    const auto claimed = QStringLiteral("~/Library/Preferences/com.northbay.ledgerpro.plist");
    const auto weak = QStringLiteral("~/Library/Application Support/My Ledger");
    auto* box = m_window->findChild<QCheckBox*>();
    ASSERT_EQ(box->text(), QStringLiteral("Check weak matches too"));
    ASSERT_TRUE(waitUntil([box] { return box->isEnabled(); }));
    box->click();
    EXPECT_EQ(markOf(weak), Qt::Checked);
    box->click();
    EXPECT_EQ(markOf(weak), Qt::Unchecked);
    const auto saysWhyAtLast = [this](const QString& end) {
        return waitUntil([&] { return said("Why it is listed").endsWith(end); });
    };
    EXPECT_TRUE(saysWhyAtLast(QStringLiteral("Not checked: only a part of its name matches.")));
    EXPECT_EQ(markOf(claimed), Qt::Unchecked);
    const auto claimant = QStringLiteral(" belong to /Applications/Ledger Pro.app.");
    EXPECT_TRUE(saysWhyAtLast(QStringLiteral("Not checked: it may") + claimant));
    page(7).model().setData(page(7).outline().currentIndex(), {}, Qt::CheckStateRole);
    EXPECT_TRUE(saysWhyAtLast(QStringLiteral("It may also") + claimant));
}

} // namespace
} // namespace sweeply
