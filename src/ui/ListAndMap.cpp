#include "ui/ListAndMap.h"

#include "ui/Text.h"

#include <QSettings>
#include <QToolButton>

namespace sweeply {

namespace {

constexpr const char* kShowsMap = "showsMap";
constexpr int kRoomForBoth = 560; // pixels

bool isMapWanted() { return QSettings().value(QLatin1String(kShowsMap)).toBool(); }

} // namespace

ListAndMap::ListAndMap(QWidget* list, QWidget* map, Shows shows) : m_map(map) {
    addWidget(list);
    addWidget(map);
    setChildrenCollapsible(false);
    setStretchFactor(0, 3);
    setStretchFactor(1, 2);
    m_map->setVisible(shows == Shows::Both || isMapWanted());
}

QToolButton* ListAndMap::makeButton() {
    m_button = new QToolButton;
    m_button->setText(localized("Map"));
    m_button->setToolTip(localized("Show what was found as a map of sizes (Ctrl+M)"));
    m_button->setShortcut(QKeySequence(QStringLiteral("Ctrl+M")));
    m_button->setCheckable(true);
    m_button->setChecked(isMapWanted());
    connect(m_button, &QToolButton::toggled, this, [this](bool isWanted) {
        QSettings().setValue(QLatin1String(kShowsMap), isWanted);
        m_map->setVisible(isWanted);
    });
    return m_button;
}

void ListAndMap::showEvent(QShowEvent* event) {
    QSplitter::showEvent(event);
    if (m_button)
        m_button->setChecked(isMapWanted()); // another page's button may have been pressed
}

void ListAndMap::resizeEvent(QResizeEvent* event) {
    QSplitter::resizeEvent(event);
    setOrientation(width() >= kRoomForBoth ? Qt::Horizontal : Qt::Vertical);
}

} // namespace sweeply
