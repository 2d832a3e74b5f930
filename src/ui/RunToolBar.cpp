#include "ui/RunToolBar.h"

#include "app/Application.h"
#include "ui/Drawings.h"
#include "ui/Text.h"

#include <QAction>
#include <QStyle>
#include <utility>

namespace sweeply {

RunToolBar::RunToolBar(std::function<void()> acted)
    : m_acted(std::move(acted)), m_scan(new QAction(this)), m_pause(new QAction(this)), m_remove(new QAction(this)),
      m_lock(new QAction(this)) {
    setObjectName(QStringLiteral("toolBar"));
    setWindowTitle(localized("Tools"));
    setMovable(false);
    setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    const auto add = [this](QAction* action, QStyle::StandardPixmap icon, const char* shortcut,
                            ActionButton ActionButtons::*button) {
        action->setIcon(style()->standardIcon(icon));
        action->setShortcut(QKeySequence(QLatin1String(shortcut)));
        addAction(action);
        connect(action, &QAction::triggered, this, [this, button] { run((m_buttons.*button).action); });
    };
    add(m_scan, QStyle::SP_BrowserReload, "Ctrl+R", &ActionButtons::scan);
    add(m_pause, QStyle::SP_MediaPause, "Ctrl+P", &ActionButtons::pause);
    add(m_remove, QStyle::SP_TrashIcon, "Ctrl+D", &ActionButtons::remove);
    auto* space = new QWidget;
    space->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    addWidget(space);
    addAction(m_lock);
    connect(m_lock, &QAction::triggered, this, [this] {
        if (m_application)
            m_application->scanController().authentificate();
        refreshLock();
    });
    hide();
}

void RunToolBar::setApplication(Application* application) {
    m_application = application;
    if (application)
        showButtons(application->scanController().actionButtons());
    setVisible(application);
}

void RunToolBar::showButtons(const ActionButtons& buttons) {
    m_buttons = buttons;
    const auto set = [](QAction* action, const ActionButton& button) {
        action->setText(localizedTitle(button.title));
        action->setEnabled(button.isEnabled);
    };
    set(m_scan, buttons.scan);
    set(m_pause, buttons.pause);
    set(m_remove, buttons.remove);
    refreshLock();
}

void RunToolBar::run(Action action) {
    if (!m_application)
        return;
    auto& controller = m_application->scanController();
    switch (action) {
    case Action::StartScan:
        controller.startScan();
        break;
    case Action::StopScan:
        controller.stopScan();
        break;
    case Action::PauseScan:
        controller.pauseScan();
        break;
    case Action::Remove:
        controller.remove();
        break;
    case Action::Uninstall:
        controller.uninstall();
        break;
    case Action::StopRemoval:
        controller.stopRemoval();
        break;
    }
    m_acted();
}

void RunToolBar::refreshLock() {
    if (!m_application)
        return;
    const auto& authorisation = m_application->authorisation();
    m_lock->setText(QString::fromStdString(authorisation.menuItemTitle()));
    m_lock->setIcon(drawings::lock(authorisation.isAuthorised()));
    m_lock->setToolTip(QString::fromStdString(authorisation.lockText()).trimmed());
}

} // namespace sweeply
