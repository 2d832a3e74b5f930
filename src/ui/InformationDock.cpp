#include "ui/InformationDock.h"

#include "ui/InformationPanel.h"
#include "ui/Scrolled.h"
#include "ui/Text.h"

#include <QAction>
#include <QMainWindow>
#include <QScrollArea>
#include <QSettings>
#include <utility>

namespace sweeply {

namespace {

constexpr const char* kShowsInformation = "showsInformation";
/// How many characters wide a window is that has room for the panel beside the results, and how wide the panel is
/// there at least.
constexpr int kRoomyWindow = 155;
constexpr int kPanelWidth = 32;
constexpr int kPanelLines = 6; ///< how high it is at least

} // namespace

InformationDock::InformationDock(QMainWindow& window, InformationPanel* panel, QAction& toggle)
    : QDockWidget(localized("Information"), &window), m_window(window), m_panel(*panel), m_toggle(toggle) {
    setObjectName(QStringLiteral("information"));
    setAllowedAreas(Qt::RightDockWidgetArea | Qt::BottomDockWidgetArea | Qt::LeftDockWidgetArea);
    auto* content = scrolled(panel, windowTitle());
    content->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    content->setMinimumSize(kPanelWidth * fontMetrics().averageCharWidth(), kPanelLines * fontMetrics().lineSpacing());
    setWidget(content);
    connect(this, &QDockWidget::dockLocationChanged, panel, [panel](Qt::DockWidgetArea area) {
        panel->setOrientation(area == Qt::BottomDockWidgetArea ? Qt::Horizontal : Qt::Vertical);
    });
    m_toggle.setChecked(QSettings().value(QLatin1String(kShowsInformation), true).toBool());
    connect(&m_toggle, &QAction::toggled, this, [this](bool isOn) {
        QSettings().setValue(QLatin1String(kShowsInformation), isOn);
        appear();
    });
    panel->setChanged([this] { appear(); });
}

void InformationDock::findPlace() {
    const auto place = m_window.width() >= kRoomyWindow * fontMetrics().averageCharWidth() ? Qt::RightDockWidgetArea
                                                                                           : Qt::BottomDockWidgetArea;
    const bool isFirst = m_place == Qt::NoDockWidgetArea;
    if (place != std::exchange(m_place, place) && !isFloating()) {
        m_window.addDockWidget(place, this);
        if (isFirst)
            m_window.restoreState(QSettings().value(settingsKey()).toByteArray());
    }
    appear();
}

void InformationDock::rememberPlace() const { QSettings().setValue(settingsKey(), m_window.saveState()); }

QString InformationDock::settingsKey() const {
    return m_place == Qt::RightDockWidgetArea ? QStringLiteral("state") : QStringLiteral("stateOfSmallWindow");
}

void InformationDock::closeEvent(QCloseEvent* event) {
    m_toggle.setChecked(false);
    QDockWidget::closeEvent(event);
}

void InformationDock::appear() { setVisible(m_toggle.isChecked() && !m_panel.isEmpty()); }

} // namespace sweeply
