#include "ui/WindowWorld.h"

#include "ui/MacPlaces.h"
#include "ui/TargetVolume.h"
#include "ui/UserMenu.h"

#include <QListWidget>

namespace sweeply {
namespace {

using TargetsTest = WindowWorld;

TEST_F(TargetsTest, PlacesThatCannotBeChosenSayWhy) {
    const auto root = QString::fromStdString(m_folder.path("volume"));
    EXPECT_EQ(lookAtPlace(root).system, QStringLiteral("Mac OS X 10.6.8"));
    m_folder.makeFolder("empty");
    m_folder.write("old/System/Library/CoreServices/SystemVersion.plist",
                   "<plist><dict><key>ProductVersion</key><string>10.3.9</string></dict></plist>");
    m_folder.write("bad/System/Library/CoreServices/SystemVersion.plist", "no list");
    for (const auto& [name, reason] : {std::pair{"away", "not there now"},
                                       {"empty", "no Mac OS X system"},
                                       {"old", "10.3.9: older"},
                                       {"bad", "SystemVersion.plist"}}) {
        const auto place = lookAtPlace(QString::fromStdString(m_folder.path(name)));
        EXPECT_TRUE(place.obstacle.contains(QLatin1String(reason))) << name << ": " << place.obstacle.toStdString();
        EXPECT_TRUE(place.system.isEmpty());
    }
    const auto places = findMacPlaces({root, root, QString::fromStdString(m_folder.path("empty"))});
    EXPECT_EQ(std::ranges::count(places, root, &MacPlace::path), 1);
}

TEST_F(TargetsTest, VolumesAreCalledWhatTheyAreToTheMac) {
    const auto kind = [](const char* mountPoint, const char* device, const char* system) {
        return kindOf(
            {QLatin1String(mountPoint), QLatin1String(device), QLatin1String(system), QStringLiteral("Mac HD")},
            QStringLiteral("/mnt/mac"));
    };
    EXPECT_EQ(kind("/mnt/mac", "/dev/sdb2", "hfsplus"), VolumeKind::MacsDisk);
    EXPECT_EQ(kind("/mnt/mac", "/dev/loop0p2", "hfsplus"), VolumeKind::DiskImage);
    EXPECT_EQ(kind("/mnt/mac", "server:/macs", "nfs4"), VolumeKind::OtherVolume);
    EXPECT_EQ(kind("/mnt", "/dev/sda1", "ext4"), VolumeKind::FolderOnVolume);
    EXPECT_EQ(nameOfTarget({QStringLiteral("/mnt/mac"), {}, {}, QStringLiteral("Mac HD")}, QStringLiteral("/mnt/mac")),
              QStringLiteral("Mac HD"));
}

TEST_F(TargetsTest, OneOfSeveralUsersIsAskedForAndChangedInTheMenu) {
    EXPECT_EQ(m_window->windowTitle(), QStringLiteral("Sweeply – volume"));
    EXPECT_FALSE(m_window->findChild<UserMenu*>()->menuAction()->isVisible());
    m_window.reset();
    m_folder.makeFile("volume/Users/ada/Library/Caches/of ada", 5000);
    const auto openAs = [this](int row) {
        QTimer::singleShot(50, [row] {
            auto* dialog = QApplication::activeModalWidget();
            ASSERT_NE(dialog, nullptr);
            auto* list = dialog->findChild<QListWidget*>();
            ASSERT_EQ(list->count(), 2);
            list->setCurrentRow(row);
            QTest::keyClick(list, Qt::Key_Return);
        });
        openWindow();
    };
    openAs(1);
    const auto user = [this] { return m_window->session()->application().target().folders.userName; };
    ASSERT_EQ(user(), "sam");
    auto* menu = m_window->findChild<UserMenu*>();
    ASSERT_TRUE(menu->menuAction()->isVisible());
    tool("Scan")->trigger();
    menu->actions().front()->trigger();
    QTest::qWait(20);
    EXPECT_EQ(user(), "sam") << "not while something runs";
    ASSERT_TRUE(waitUntil([this] { return !controller().isScanning(); }));
    menu->actions().front()->trigger();
    ASSERT_TRUE(waitUntil([&] { return user() == "ada"; }));
    EXPECT_TRUE(menu->actions().front()->isChecked());
}

} // namespace
} // namespace sweeply
