#include "ui/SpacePage.h"

#include "platform/FileManager.h"
#include "platform/Localization.h"
#include "platform/TargetPath.h"
#include "ui/ListAndMap.h"
#include "ui/Text.h"

#include <QFileDialog>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <iterator>
#include <utility>

namespace sweeply {

namespace {

constexpr int kLookInterval = 150; // milliseconds
/// Further ones, which are smaller, are one row: nobody reads on.
constexpr std::size_t kRows = 500;
constexpr std::size_t kProblemsNamed = 3;

std::string parentOf(const std::string& path) {
    const auto slash = path.rfind('/');
    return slash == 0 || slash == std::string::npos ? "/" : path.substr(0, slash);
}

} // namespace

SpacePage::SpacePage(Services services)
    : m_services(std::move(services)), m_place(new QLabel), m_up(new QToolButton), m_stop(new QPushButton),
      m_list(new QTreeWidget), m_map(new MapView(*this, localized("Map"))), m_state(new QLabel),
      m_walk(m_services.files, m_services.units) {
    auto* heading = new QLabel(localized("What takes the space?"));
    auto font = heading->font();
    font.setPointSizeF(font.pointSizeF() * 1.4);
    font.setBold(true);
    heading->setFont(font);
    auto* choose = new QPushButton(localized("Choose a Folder…"));
    auto* top = new QHBoxLayout;
    top->addWidget(heading, 1);
    top->addWidget(choose);
    m_up->setIcon(style()->standardIcon(QStyle::SP_ArrowUp));
    m_up->setText(localized("Up"));
    m_up->setToolTip(localized("Back to what is above it"));
    m_place->setTextFormat(Qt::PlainText);
    m_place->setAccessibleName(localized("Folder"));
    m_place->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    auto* way = new QHBoxLayout;
    way->addWidget(m_up);
    way->addWidget(m_place, 1);
    way->addWidget(m_stop);
    m_list->setAccessibleName(localized("What is in the folder"));
    m_list->setHeaderLabels({localized("Name"), localized("Size")});
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setAlternatingRowColors(true);
    m_list->setFrameShape(QFrame::NoFrame);
    m_list->header()->setStretchLastSection(false);
    m_list->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    m_list->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    m_state->setTextFormat(Qt::PlainText);
    m_state->setWordWrap(true);
    m_state->setAccessibleName(localized("State"));
    auto* all = new QVBoxLayout(this);
    all->addLayout(top);
    all->addLayout(way);
    all->addWidget(new ListAndMap(m_list, m_map, ListAndMap::Shows::Both), 1);
    all->addWidget(m_state);

    m_looking.setInterval(kLookInterval);
    connect(&m_looking, &QTimer::timeout, this, [this] { takeOver(); });
    connect(choose, &QPushButton::clicked, this, [this] { chooseFolder(); });
    connect(m_up, &QToolButton::clicked, this, [this] { leave(); });
    connect(m_stop, &QPushButton::clicked, this, [this] { stopOrRepeat(); });
    connect(m_list, &QTreeWidget::itemActivated, this, [this](QTreeWidgetItem* item) {
        enter(static_cast<std::size_t>(m_list->indexOfTopLevelItem(item)) + 1);
    });
    connect(m_list, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem* item) {
        const auto row = item ? m_list->indexOfTopLevelItem(item) : -1;
        m_map->setCurrent(row < 0 || row >= static_cast<int>(kRows) ? std::nullopt
                                                                    : std::optional(static_cast<std::size_t>(row) + 1));
    });
}

void SpacePage::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (m_path.empty())
        showFolder("/");
}

void SpacePage::showFolder(const std::string& path) {
    m_path = path;
    m_parts.clear();
    m_wasStopped = false;
    m_walk.start(path);
    m_looking.start();
    m_place->setText(shown(path));
    m_place->setToolTip(shown(path).toHtmlEscaped());
    m_up->setEnabled(path != "/");
    fillList();
    tellState();
}

void SpacePage::stopOrRepeat() {
    if (!m_looking.isActive())
        return showFolder(m_path);
    m_walk.stop();
    m_wasStopped = true;
    takeOver();
}

void SpacePage::chooseFolder() {
    const auto start = m_services.files.hostPath(m_path).value_or(m_services.files.rootPath());
    const auto folder = QFileDialog::getExistingDirectory(this, localized("A Folder of the Mac"),
                                                          QString::fromStdString(start), QFileDialog::ShowDirsOnly);
    if (folder.isEmpty())
        return;
    if (folder == QString::fromStdString(m_services.files.rootPath()))
        showFolder("/");
    else if (const auto path = m_services.targetPath(folder))
        showFolder(*path);
}

void SpacePage::takeOver() {
    const bool isAtEnd = !m_walk.isRunning(); // asked first: what came before the end is then taken
    auto fresh = m_walk.take();
    if (!fresh.empty()) {
        std::ranges::move(fresh, std::back_inserter(m_parts));
        std::ranges::stable_sort(m_parts, std::ranges::greater(), &FolderPart::size);
        fillList();
    }
    if (isAtEnd)
        m_looking.stop();
    tellState();
}

QString SpacePage::sizeOf(const FolderPart& part) const {
    if (part.isOtherVolume)
        return localized("another volume");
    const auto size = QString::fromStdString(stringSizeFromLong(part.size, m_services.units));
    return part.isWhole ? size : QStringLiteral("≥ ") + size;
}

void SpacePage::fillList() {
    const auto* current = m_list->currentItem();
    const auto name = current ? current->data(0, Qt::UserRole).toByteArray() : QByteArray();
    m_list->clear();
    QList<QTreeWidgetItem*> rows;
    QTreeWidgetItem* again = nullptr;
    for (std::size_t i = 0; i < std::min(m_parts.size(), kRows); ++i) {
        const auto& part = m_parts[i];
        auto* row = new QTreeWidgetItem({shown(part.name), sizeOf(part)});
        row->setIcon(0, style()->standardIcon(part.type == FileType::Directory      ? QStyle::SP_DirIcon
                                              : part.type == FileType::SymbolicLink ? QStyle::SP_FileLinkIcon
                                                                                    : QStyle::SP_FileIcon));
        row->setTextAlignment(1, Qt::AlignRight | Qt::AlignVCenter);
        row->setData(0, Qt::UserRole, QByteArray::fromStdString(part.name));
        if (!name.isEmpty() && row->data(0, Qt::UserRole).toByteArray() == name)
            again = row;
        rows << row;
    }
    if (m_parts.size() > kRows)
        rows << new QTreeWidgetItem(
            {QString::fromStdString(localizedFormat("%@ more", {std::to_string(m_parts.size() - kRows)}))});
    m_list->addTopLevelItems(rows);
    if (again)
        m_list->setCurrentItem(again);
    auto items = std::make_shared<MapItems>();
    const auto first = items->addChildren(0, m_parts.size());
    for (std::size_t i = 0; i < m_parts.size(); ++i)
        items->items[first + i].size = m_parts[i].size;
    items->addUp();
    m_map->setItems(std::move(items), 0);
}

void SpacePage::tellState() {
    const bool isMeasuring = m_looking.isActive();
    m_stop->setText(isMeasuring ? localizedTitle("Stop") : localized("Measure Again"));
    std::uint64_t total = 0;
    for (const auto& part : m_parts)
        total += part.size;
    auto text = QString::fromStdString(localizedFormat(
        "%@ in %@ items.", {stringSizeFromLong(total, m_services.units), std::to_string(m_parts.size())}));
    if (isMeasuring)
        text += QLatin1Char(' ') + localized("Measuring…");
    else if (m_wasStopped)
        text += QLatin1Char(' ') + localized("Stopped before the end.");
    const auto problems = m_walk.problems();
    if (!problems.empty()) {
        QStringList named;
        for (std::size_t i = 0; i < std::min(problems.size(), kProblemsNamed); ++i)
            named << shown(problems[i].message());
        if (problems.size() > kProblemsNamed)
            named << QStringLiteral("…");
        text += QLatin1Char('\n') + QString::fromStdString(localizedFormat(
                                        "Could not be read (%@): %@",
                                        {std::to_string(problems.size()), utf8(named.join(QStringLiteral(", ")))}));
    }
    m_state->setText(text);
}

// What the map asks; the whole is its first item

MapLook SpacePage::lookOf(std::size_t item) const {
    if (item == 0 || item > m_parts.size())
        return {shown(m_path), {}, QColor(0x8a, 0x95, 0xa1), {}};
    const auto& part = m_parts[item - 1];
    const bool isFolder = part.type == FileType::Directory;
    return {shown(part.name), sizeOf(part), isFolder ? QColor(0x3f, 0x7a, 0xd8) : QColor(0x8a, 0x95, 0xa1), {}};
}

QString SpacePage::toolTipOf(std::size_t item) const {
    const auto look = lookOf(item);
    return item == 0 || item > m_parts.size()
               ? look.name
               : shown(joinedPath(m_path, m_parts[item - 1].name)) + QLatin1Char('\n') + look.size;
}

void SpacePage::select(std::size_t item) {
    if (item > 0 && item <= std::min(m_parts.size(), kRows))
        m_list->setCurrentItem(m_list->topLevelItem(static_cast<int>(item) - 1));
}

void SpacePage::enter(std::size_t item) {
    if (item == 0 || item > std::min(m_parts.size(), kRows))
        return;
    const auto& part = m_parts[item - 1];
    if (part.type == FileType::Directory && !part.isOtherVolume)
        showFolder(joinedPath(m_path, part.name));
}

void SpacePage::leave() {
    if (m_path != "/")
        showFolder(parentOf(m_path));
}

} // namespace sweeply
