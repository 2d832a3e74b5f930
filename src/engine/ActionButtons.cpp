#include "engine/ActionButtons.h"

namespace sweeply {

void ActionButtons::showMode(WorkMode mode) {
    if (mode == WorkMode::Cleaner)
        remove = {translatableButton("Remove"), Action::Remove, remove.isEnabled};
    else
        remove = {translatableButton("Uninstall"), Action::Uninstall, remove.isEnabled};
}

void ActionButtons::showScanning(bool canPause) {
    scan = {translatableButton("Stop Scan"), Action::StopScan, true};
    pause.isEnabled = canPause;
}

void ActionButtons::showRemoving() {
    scan.isEnabled = false;
    pause.isEnabled = true;
    remove = {translatableButton("Stop clean"), Action::StopRemoval, true};
}

void ActionButtons::showStopping() {
    scan.isEnabled = false;
    pause.isEnabled = false;
    remove.isEnabled = false;
}

void ActionButtons::showIdle(WorkMode mode) {
    scan = {translatableButton("Scan"), Action::StartScan, mode == WorkMode::Cleaner};
    pause = {translatableButton("Pause"), Action::PauseScan, false};
    showMode(mode);
}

} // namespace sweeply
