#include "engine/ActionButtons.h"

namespace sweeply {

void ActionButtons::showMode(WorkMode mode) {
    if (mode == WorkMode::Cleaner)
        remove = {"Remove", Action::Remove, remove.isEnabled};
    else
        remove = {"Uninstall", Action::Uninstall, remove.isEnabled};
}

void ActionButtons::showScanning(bool canPause) {
    scan = {"Stop Scan", Action::StopScan, true};
    pause.isEnabled = canPause;
}

void ActionButtons::showRemoving() {
    scan.isEnabled = false;
    pause.isEnabled = true;
    remove = {"Stop clean", Action::StopRemoval, true};
}

void ActionButtons::showStopping() {
    scan.isEnabled = false;
    pause.isEnabled = false;
    remove.isEnabled = false;
}

void ActionButtons::showIdle(WorkMode mode) {
    scan = {"Scan", Action::StartScan, mode == WorkMode::Cleaner};
    pause = {"Pause", Action::PauseScan, false};
    showMode(mode);
}

} // namespace sweeply
