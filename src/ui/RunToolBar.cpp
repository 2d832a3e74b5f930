#include "ui/RunToolBar.h"

#include "app/Application.h"
#include "platform/Localization.h"
#include "ui/Glyphs.h"
#include "ui/RemovalSheet.h"
#include "ui/Text.h"

#include <QAction>
#include <utility>

namespace sweeply {

namespace {

Glyph glyphOf(Action action) {
    switch (action) {
    case Action::StartScan:
        return Glyph::Scan;
    case Action::StopScan:
    case Action::StopRemoval:
        return Glyph::Stop;
    case Action::PauseScan:
        return Glyph::Pause;
    case Action::Remove:
        return Glyph::Remove;
    case Action::Uninstall:
        return Glyph::Uninstall;
    }
    return Glyph::Scan;
}

/// What the button does, in a sentence.
const char* explanationOf(Action action) {
    switch (action) {
    case Action::StartScan:
        return translatable("Look through the modules that are checked; nothing is changed");
    case Action::StopScan:
        return translatable("Stop; what was found so far stays listed");
    case Action::PauseScan:
        return translatable("Rest, and go on from here later");
    case Action::Remove:
        return translatable("Remove what is checked in all modules");
    case Action::Uninstall:
        return translatable("Uninstall what is checked, with what belongs to it");
    case Action::StopRemoval:
        return translatable("Stop; what was removed so far stays removed");
    }
    return "";
}

} // namespace

RunToolBar::RunToolBar(std::function<void()> acted)
    : m_acted(std::move(acted)), m_scan(new QAction(this)), m_pause(new QAction(this)), m_remove(new QAction(this)),
      m_lock(new QAction(this)) {
    setObjectName(QStringLiteral("toolBar"));
    setWindowTitle(localized("Tools"));
    setMovable(false);
    setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    const auto add = [this](QAction* action, const char* shortcut, ActionButton ActionButtons::*button) {
        action->setIconVisibleInMenu(false);
        action->setShortcut(QKeySequence(QLatin1String(shortcut)));
        addAction(action);
        connect(action, &QAction::triggered, this, [this, button] { run((m_buttons.*button).action); });
    };
    add(m_scan, "Ctrl+R", &ActionButtons::scan);
    add(m_pause, "Ctrl+P", &ActionButtons::pause);
    add(m_remove, "Ctrl+D", &ActionButtons::remove);
    auto* space = new QWidget;
    space->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    addWidget(space);
    addAction(m_lock);
    m_lock->setIconVisibleInMenu(false);
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
        action->setToolTip(localized(explanationOf(button.action)) + QStringLiteral(" (") +
                           action->shortcut().toString(QKeySequence::NativeText) + QLatin1Char(')'));
    };
    set(m_scan, buttons.scan);
    set(m_pause, buttons.pause);
    set(m_remove, buttons.remove);
    m_scan->setIcon(glyph(glyphOf(buttons.scan.action)));
    const bool isPaused = m_application && m_application->scanController().isPaused();
    m_pause->setIcon(glyph(isPaused ? Glyph::Resume : Glyph::Pause));
    m_remove->setIcon(glyph(glyphOf(buttons.remove.action)));
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
        if (confirmsRemoval(*m_application, window()))
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
    m_lock->setIcon(glyph(authorisation.isAuthorised() ? Glyph::LockOpen : Glyph::LockClosed));
    m_lock->setToolTip(QString::fromStdString(authorisation.lockText()).trimmed());
}

} // namespace sweeply
