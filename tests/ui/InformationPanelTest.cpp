#include "ui/WindowWorld.h"

#include "app/ModuleCatalog.h"

#include <QLabel>
#include <QPlainTextEdit>
#include <QTreeView>

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

} // namespace
} // namespace sweeply
