#pragma once

#include "engine/ScanControllerProtocol.h"
#include "platform/Localization.h"

#include <string>

namespace sweeply {

/// What a button of the main window does when it is pressed.
enum class Action { StartScan, StopScan, PauseScan, Remove, Uninstall, StopRemoval };

struct ActionButton {
    std::string title; ///< a key of the button texts, not translated
    Action action;
    bool isEnabled;
};

/// The three buttons that run the program, as a person sees them. The coordinator sets them, a window draws them.
struct ActionButtons {
    ActionButton scan{translatableButton("Scan"), Action::StartScan, true};
    ActionButton pause{translatableButton("Pause"), Action::PauseScan, false};
    ActionButton remove{translatableButton("Remove"), Action::Remove, false};

    void showMode(WorkMode mode);
    /// A scan, or the analysis of dropped files, which cannot be paused, begins.
    void showScanning(bool canPause);
    void showPaused(bool paused) { pause.title = paused ? translatableButton("Resume") : translatableButton("Pause"); }
    void showRemoving();
    /// A stop was asked for and has not happened yet.
    void showStopping();
    void showIdle(WorkMode mode);
};

} // namespace sweeply
