#include "ui/StartPage.h"

#include "cli/sample/SampleVolume.h"
#include "ui/Drawings.h"
#include "ui/Text.h"

#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QSettings>
#include <QStandardPaths>
#include <QStorageInfo>
#include <QVBoxLayout>

namespace sweeply {

namespace {

constexpr const char* kLastTargets = "lastTargets";
constexpr int kTargetsKept = 5;

bool holdsMac(const QString& folder) {
    return QDir(folder).exists(QStringLiteral("System/Library/CoreServices/SystemVersion.plist"));
}

} // namespace

StartPage::StartPage(std::function<void(const QString&)> choose)
    : m_choose(std::move(choose)), m_places(new QListWidget), m_problem(new QLabel) {
    auto* picture = new QLabel;
    picture->setPixmap(drawings::application().pixmap(96, 96));
    picture->setAlignment(Qt::AlignCenter);
    auto* title = new QLabel(localized("Which Mac shall be cleaned?"));
    auto font = title->font();
    font.setPointSizeF(font.pointSizeF() * 1.7);
    font.setBold(true);
    title->setFont(font);
    title->setAlignment(Qt::AlignCenter);
    auto* text =
        new QLabel(localized("Sweeply works on a Mac OS X system (10.4 to 10.6) in a folder of this machine: its disk, "
                             "a disk image, or a backup. Nothing is removed before you have seen it."));
    text->setWordWrap(true);
    text->setAlignment(Qt::AlignCenter);
    m_places->setAccessibleName(localized("Places that hold a Mac OS X system"));
    m_places->setMaximumHeight(180);
    m_problem->setWordWrap(true);
    m_problem->setTextFormat(Qt::PlainText);
    m_problem->setAlignment(Qt::AlignCenter);
    m_problem->hide();
    auto* folder = new QPushButton(localized("Choose a Folder…"));
    folder->setDefault(true);
    auto* sample = new QPushButton(localized("Try It on a Sample"));
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(folder);
    buttons->addWidget(sample);
    buttons->addStretch(1);
    auto* column = new QVBoxLayout;
    column->setSpacing(14);
    column->addStretch(2);
    column->addWidget(picture);
    column->addWidget(title);
    column->addWidget(text);
    column->addWidget(m_places);
    column->addLayout(buttons);
    column->addWidget(m_problem);
    column->addStretch(3);
    auto* row = new QHBoxLayout(this);
    row->addStretch(1);
    row->addLayout(column, 3);
    row->addStretch(1);
    connect(folder, &QPushButton::clicked, this, [this] { chooseFolder(); });
    connect(sample, &QPushButton::clicked, this, [this] { makeSample(); });
    connect(m_places, &QListWidget::itemActivated, this,
            [this](QListWidgetItem* item) { m_choose(item->data(Qt::UserRole).toString()); });
    connect(m_places, &QListWidget::itemClicked, this,
            [this](QListWidgetItem* item) { m_choose(item->data(Qt::UserRole).toString()); });
    fill();
}

void StartPage::fill() {
    QStringList places;
    for (const auto& volume : QStorageInfo::mountedVolumes()) {
        if (volume.isReady() && holdsMac(volume.rootPath()))
            places << volume.rootPath();
    }
    for (const auto& last : QSettings().value(QLatin1String(kLastTargets)).toStringList()) {
        if (!places.contains(last) && holdsMac(last))
            places << last;
    }
    for (const auto& place : places) {
        auto* item = new QListWidgetItem(drawings::module(0), place, m_places);
        item->setData(Qt::UserRole, place);
    }
    m_places->setVisible(!places.isEmpty());
}

void StartPage::remember(const QString& folder) {
    QSettings settings;
    auto last = settings.value(QLatin1String(kLastTargets)).toStringList();
    last.removeAll(folder);
    last.prepend(folder);
    settings.setValue(QLatin1String(kLastTargets), last.mid(0, kTargetsKept));
}

void StartPage::showProblem(const QString& text) {
    m_problem->setText(text);
    m_problem->setVisible(!text.isEmpty());
}

void StartPage::chooseFolder() {
    const auto folder = QFileDialog::getExistingDirectory(this, localized("The Folder That Holds the Mac's Files"));
    if (!folder.isEmpty())
        m_choose(folder);
}

void StartPage::makeSample() {
    const QString folder = QDir(QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation))
                               .filePath(QStringLiteral("sweeply/sample"));
    if (!holdsMac(folder)) {
        QDir().mkpath(QFileInfo(folder).absolutePath());
        if (const auto written = writeSampleVolume(utf8(folder), 1); !written) {
            showProblem(QString::fromStdString(written.error().message()));
            return;
        }
    }
    m_choose(folder);
}

} // namespace sweeply
