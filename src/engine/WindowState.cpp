#include "engine/WindowState.h"

namespace sweeply {

void WindowState::showMode(WorkMode mode) {
    m_workMode = mode;
    m_buttons.showMode(mode);
    show();
}

void WindowState::showScanning(bool canPause) {
    m_buttons.showScanning(canPause);
    show();
}

void WindowState::showPaused(bool paused) {
    m_buttons.showPaused(paused);
    show();
}

void WindowState::showRemoving() {
    m_buttons.showRemoving();
    show();
}

void WindowState::showStopping() {
    m_buttons.showStopping();
    show();
}

void WindowState::showIdle(bool hasSomethingToRemove) {
    m_buttons.showIdle(m_workMode);
    m_buttons.remove.isEnabled = hasSomethingToRemove;
    show();
}

void WindowState::offerScan(bool hasSomethingToRemove) {
    m_buttons.scan = {translatableButton("Scan"), Action::StartScan, true};
    m_buttons.remove.isEnabled = hasSomethingToRemove;
    show();
}

} // namespace sweeply
