#pragma once

#include "appcore/changes/Change.h"

#include <string>
#include <string_view>

namespace sweeply {

class Node;

/// What makes one scan module differ from another; the defaults are those of a plain cleaner.
class ModuleHooks {
  public:
    virtual ~ModuleHooks() = default;

    /// On the command line and in records; a constant.
    [[nodiscard]] virtual std::string_view moduleName() const { return {}; }
    /// Can what the module removes not be made again? Then a run that keeps such things keeps it.
    [[nodiscard]] virtual bool removesWhatCannotBeMadeAgain() const { return false; }
    /// For the log.
    [[nodiscard]] virtual std::string className() const = 0;
    /// The key of the module's switch in the preferences and of its items in the ignore list.
    [[nodiscard]] virtual std::string defaultsName() const { return "SetSomeDefaultNameForController"; }
    /// Does the module store its switch?
    [[nodiscard]] virtual bool needToSetUserDefalts() const { return false; }
    [[nodiscard]] virtual bool userDefaultsDefaultValue() const { return true; }
    [[nodiscard]] virtual bool priviligesNeededToClean() const { return false; }
    /// Should the list refresh this module's row on a timer while it works?
    [[nodiscard]] virtual bool updateTimerNeeded() const { return true; }
    [[nodiscard]] virtual bool shouldCleanApplication(const std::string&) { return true; }
    /// What a removal asks of the gate for a leaf's item, unless a question before says otherwise. Any thread.
    [[nodiscard]] virtual ChangeRequest changeFor(const Node& node) const = 0;

    // Scanning; on the scan's thread, and never changing the disk

    /// The scan itself.
    virtual void scanThread() = 0;
    /// Adds one dropped item to the results.
    virtual void analyzeFile(const std::string&) {}

    // Cleaning; on the thread that cleans

    /// May this subtree be cleaned now?
    virtual bool isRootNodeCleanable(Node&) { return true; }
    /// Sends what is to become of a leaf's item through the gate.
    virtual ChangeOutcome cleanThisNode(Node& node) = 0;
};

} // namespace sweeply
