#include "ui/StartPage.h"

#include "ui/DiskImageHelp.h"
#include "ui/Drawings.h"
#include "ui/SampleButton.h"
#include "ui/Text.h"

#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QSettings>
#include <QVBoxLayout>
#include <stop_token>

namespace sweeply {

namespace {

constexpr const char* kLastTargets = "lastTargets";
constexpr int kTargetsKept = 5;

/// A click on a place that cannot be chosen comes as one, too.
QString chosenPlace(const QListWidgetItem& item) {
    return item.flags().testFlag(Qt::ItemIsEnabled) ? item.data(Qt::UserRole).toString() : QString();
}

} // namespace

StartPage::StartPage(Choices choices)
    : m_choices(std::move(choices)), m_places(new QListWidget), m_problem(new QLabel) {
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
    m_places->setWordWrap(true);
    m_places->hide();
    m_problem->setWordWrap(true);
    m_problem->setTextFormat(Qt::PlainText);
    m_problem->setAlignment(Qt::AlignCenter);
    m_problem->hide();
    auto* folder = new QPushButton(localized("Choose a Folder…"));
    folder->setDefault(true);
    auto* sample = new SampleButton(m_choices.tour, [this](const QString& problem) { showProblem(problem); });
    auto* images = new QPushButton(localized("Disk Images…"));
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(folder);
    buttons->addWidget(sample);
    buttons->addWidget(images);
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
    connect(images, &QPushButton::clicked, this, [this] { showDiskImageHelp(this); });
    const auto chosen = [this](const QListWidgetItem* item) {
        if (const auto place = chosenPlace(*item); !place.isEmpty())
            m_choices.choose(place);
    };
    connect(m_places, &QListWidget::itemActivated, this, chosen);
    connect(m_places, &QListWidget::itemClicked, this, chosen);
}

void StartPage::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    lookForPlaces();
}

void StartPage::lookForPlaces() {
    m_search.start(
        [this, last = QSettings().value(QLatin1String(kLastTargets)).toStringList()](const std::stop_token&) {
            return [this, places = findMacPlaces(last)] { showPlaces(places); };
        });
}

void StartPage::showPlaces(const QList<MacPlace>& places) {
    m_places->clear();
    for (const auto& place : places) {
        const bool canBeChosen = place.obstacle.isEmpty();
        auto* item = new QListWidgetItem(
            drawings::module(0),
            shown(utf8(place.path)) + QLatin1Char('\n') + (canBeChosen ? place.system : place.obstacle), m_places);
        item->setData(Qt::UserRole, place.path);
        if (!canBeChosen)
            item->setFlags(Qt::NoItemFlags);
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
        m_choices.choose(folder);
}

} // namespace sweeply
