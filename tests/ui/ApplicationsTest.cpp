#include "ui/ApplicationsPage.h"
#include "ui/TargetChooser.h"
#include "ui/WindowWorld.h"

#include "ui/Pictures.h"

#include <QAbstractItemModelTester>
#include <QLineEdit>
#include <QListView>
#include <QMap>
#include <QPushButton>
#include <QTreeView>
#include <set>

namespace sweeply {
namespace {

class ApplicationsTest : public WindowWorld {
  protected:
    ApplicationsPage& applications() {
        m_window->showView(7);
        auto* results = page(7).parentWidget();
        while (!dynamic_cast<ApplicationsPage*>(results))
            results = results->parentWidget();
        auto& found = dynamic_cast<ApplicationsPage&>(*results);
        EXPECT_TRUE(waitUntil([&] { return found.model().rowCount() > 0 && found.model().countUnmeasured() == 0; }));
        return found;
    }
    QStringList names() {
        const auto& list = *applications().list().model();
        QStringList shown;
        for (int row = 0; row < list.rowCount(); ++row)
            shown << list.index(row, 0).data().toString();
        return shown;
    }
    void select(const QString& name, QItemSelectionModel::SelectionFlag how) {
        auto& list = applications().list();
        const auto found = list.model()->match(list.model()->index(0, 0), Qt::DisplayRole, name, 1, Qt::MatchExactly);
        ASSERT_EQ(found.size(), 1) << name.toStdString();
        list.selectionModel()->select(found.front(), how | QItemSelectionModel::Rows);
    }
    /// Waits until these are what the uninstaller has listed, whole.
    void expectListed(const std::set<std::string>& paths) {
        auto& module = page(7).module();
        const auto listed = [&] {
            std::set<std::string> entries;
            const std::lock_guard lock(m_window->session()->application().treeLock());
            for (const auto& entry : module.rootNode()->children())
                entries.insert(entry->path());
            return entries;
        };
        EXPECT_TRUE(waitUntil([&] { return listed() == paths && !controller().isScanning(); }));
    }
    std::set<std::string> files() const {
        std::set<std::string> paths;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(root())) {
            const auto path = entry.path().string().substr(root().size());
            if (entry.symlink_status().type() != std::filesystem::file_type::directory &&
                path.find("/Library/Application Support/Sweeply/") == std::string::npos)
                paths.insert(path);
        }
        return paths;
    }
    QPushButton* button(const QString& text) {
        for (auto* candidate : applications().findChildren<QPushButton*>()) {
            if (candidate->text() == text)
                return candidate;
        }
        throw std::logic_error("no such button");
    }
};

TEST_F(ApplicationsTest, PersonFindsOneSeesWhatBelongsToItAndUninstallsExactlyThat) {
    m_folder.makeFile("volume/Users/sam/Library/Application Support/My Ledger/data"); // a weak match
    const auto before = files();
    EXPECT_EQ(names().size(), 12);
    const QAbstractItemModelTester tester(applications().list().model());
    for (auto* field : applications().findChildren<QLineEdit*>()) {
        if (field->accessibleName() == QStringLiteral("Search"))
            field->setText(QStringLiteral("bay.LEDGER"));
    }
    EXPECT_EQ(names(), QStringList{QStringLiteral("Ledger")});
    EXPECT_FALSE(button(QStringLiteral("Uninstall"))->isEnabled());
    select(QStringLiteral("Ledger"), QItemSelectionModel::ClearAndSelect);
    expectListed({"/Applications/Ledger.app"});

    auto& model = page(7).model();
    model.update();
    std::set<std::string> checked;
    QMap<QString, QString> reasons; // by the item's own name
    const auto entry = model.index(0, 0);
    for (int row = 0; row < model.rowCount(entry); ++row) {
        const auto item = model.index(row, 0, entry);
        if (item.data(Qt::CheckStateRole).toInt() == Qt::Checked)
            checked.insert(model.nodeAt(item)->path());
        reasons[item.data().toString().section(QLatin1Char('/'), -1)] =
            item.siblingAtColumn(NodeModel::Why).data().toString();
    }
    EXPECT_EQ(reasons[QStringLiteral("com.northbay.ledger.plist")],
              QStringLiteral("Certain: It is named after the identifier \"com.northbay.ledger\"."));
    EXPECT_TRUE(reasons[QStringLiteral("My Ledger")].startsWith(QStringLiteral("Weak: ")));
    EXPECT_TRUE(reasons[QStringLiteral("My Ledger")].contains(QStringLiteral(" Not checked: ")));
    ASSERT_TRUE(waitUntil([&] { return button(QStringLiteral("Uninstall"))->isEnabled(); }));
    answer(QStringLiteral("Yes"));
    button(QStringLiteral("Uninstall"))->click();
    ASSERT_TRUE(waitUntil([&] { return m_asked.size() == 1 && !controller().isRemoving(); }));

    const auto after = files();
    for (const auto& path : before) {
        const bool isListed = std::ranges::any_of(
            checked, [&](const auto& item) { return path == item || path.starts_with(item + '/'); });
        EXPECT_EQ(after.contains(path), !isListed) << path;
    }
    EXPECT_TRUE(waitUntil([&] { return names().isEmpty(); })) << "it is gone from the list as well";
}

TEST_F(ApplicationsTest, SelectionIsWhatIsListedAndDropsStay) {
    drop(page(7), root() + "/Applications/Safari.app");
    select(QStringLiteral("Ledger"), QItemSelectionModel::Select);
    select(QStringLiteral("Safari"), QItemSelectionModel::Select);
    select(QStringLiteral("Paper Trail"), QItemSelectionModel::Select);
    expectListed({"/Applications/Ledger.app", "/Applications/Paper Trail.app", "/Applications/Safari.app"});
    select(QStringLiteral("iPhoto"), QItemSelectionModel::ClearAndSelect);
    expectListed({"/Applications/Safari.app", "/Applications/iPhoto.app"});
    applications().list().clearSelection();
    expectListed({"/Applications/Safari.app"});
    m_window->showView(7);
    m_window.reset(); // with the survey under way
}

TEST_F(ApplicationsTest, AddedFilesAreChosenByTheMacsPathsAndNoneLiesOutside) {
    std::filesystem::create_symlink("/etc", root() + "/outside");
    auto& eraser = page(8);
    QTimer person;
    QStringList complaints;
    QObject::connect(&person, &QTimer::timeout, [&] {
        auto* chooser = dynamic_cast<TargetChooser*>(QApplication::activeModalWidget());
        if (!chooser)
            return;
        auto& list = *chooser->findChild<QListView*>();
        auto& path = *chooser->findChild<QLineEdit*>();
        const auto type = [&](const char* text) {
            path.setFocus();
            path.selectAll();
            QTest::keyClicks(&path, QLatin1String(text));
            QTest::keyClick(&path, Qt::Key_Return);
        };
        if (complaints.isEmpty()) {
            EXPECT_EQ(path.text(), QStringLiteral("/"));
            for (const char* outside : {"/outside/hostname", "/../../etc/hostname", "nowhere/at/all"}) {
                type(outside);
                EXPECT_EQ(chooser->folder(), "/");
                complaints << QString::fromLatin1(outside);
            }
            type("/Users/sam/Library/Cookies");
        } else if (list.model()->rowCount() > 0) {
            list.setCurrentIndex(list.model()->index(0, 0));
            for (auto* add : chooser->findChildren<QPushButton*>()) {
                if (add->text() == QStringLiteral("Add"))
                    add->click();
            }
        }
    });
    person.start(20);
    eraser.addFiles();
    EXPECT_TRUE(waitUntil([&] { return eraser.module().filesFound() == 1 && !controller().isScanning(); }));
    EXPECT_EQ(eraser.module().pathsOfRows({0}), std::vector<std::string>{"/Users/sam/Library/Cookies/Cookies.plist"});
}

TEST(ApplicationsListTest, QueriesFilterAndWhatIsUnknownComesLast) {
    const TestFolder folder;
    const auto files = FileManager::open(folder.path());
    Pictures pictures(**files);
    ApplicationsModel model(SizeUnits::Decimal, pictures);
    ApplicationsFilter filter(model);
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    const QAbstractItemModelTester filterTester(&filter, QAbstractItemModelTester::FailureReportingMode::Fatal);
    const auto now = std::time(nullptr);
    const SurveyedApplication big{"/Applications/Big.app", "Big", "org.big", "1.10", 300'000'000, true, now};
    const SurveyedApplication old{"/Old/apple.app", "apple", "com.apple.x", "1.9", 5, true, 1'000'000};
    const SurveyedApplication unread{"/Applications/New.app", "New", "", "", {}, true, 0};
    model.list({unread, {big.path, big.name, {}, {}, {}, true, 0}, old});
    model.learn({big, {"/gone.app", "gone", {}, {}, {}, true, 0}});
    const auto shownBy = [&](const ApplicationsQuery& query, int column = 0, Qt::SortOrder order = Qt::AscendingOrder) {
        filter.setQuery(query);
        filter.sort(column, order);
        QString shown;
        for (int row = 0; row < filter.rowCount(); ++row)
            shown += filter.index(row, 0).data().toString() + QLatin1Char(' ');
        return shown.toStdString();
    };
    EXPECT_EQ(shownBy({}), "apple Big New ");
    EXPECT_EQ(shownBy({{}, true, false, false}), "Big ");
    EXPECT_EQ(shownBy({{}, false, true, false}), "apple ");
    EXPECT_EQ(shownBy({{}, false, false, true}), "Big New ");
    EXPECT_EQ(shownBy({QStringLiteral("ORG."), false, false, true}), "Big ");
    EXPECT_EQ(shownBy({}, ApplicationsModel::Size), "apple Big New ");
    EXPECT_EQ(shownBy({}, ApplicationsModel::Size, Qt::DescendingOrder), "Big apple New ");
    EXPECT_EQ(shownBy({}, ApplicationsModel::Version, Qt::DescendingOrder), "Big apple New ");
    EXPECT_EQ(shownBy({}, ApplicationsModel::Changed), "apple Big New ");
    model.list({unread, {big.path, big.name, {}, {}, {}, true, 0}});
    EXPECT_EQ(shownBy({}, ApplicationsModel::Size), "Big New ") << "what is known of it is kept";
}

} // namespace
} // namespace sweeply
