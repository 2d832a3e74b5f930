#pragma once

#include "appcore/changes/Change.h"

#include <optional>

namespace sweeply {

class ADScanController;
class Node;

/// Told of a module's starts and ends, and does its changes: the coordinator, or the group that the module is part of.
///
/// A module sends, for each run: started, then finished, both on the main thread and not waited for; and, from the
/// thread that did the work, childControllerStopped.
class ScanDelegate {
  public:
    virtual ~ScanDelegate() = default;

    virtual void scanIsStarted(ADScanController&) {}
    virtual void scanIsFinished(ADScanController&) {}
    virtual void cleanIsStarted(ADScanController&) {}
    virtual void cleanIsFinished(ADScanController&) {}
    virtual void childControllerStopped() {}

    /// Is the coordinator's removal, of which this module's clean is a part, under way?
    [[nodiscard]] virtual bool ifGlobalCleanRunning() const { return false; }
    /// May removals use administrator rights? Nothing from a delegate that knows of none. May ask the person.
    virtual std::optional<bool> authorisationDemanded() { return std::nullopt; }
    /// What is checked in this module stays, because nobody lends the rights to remove it. From the cleaning thread.
    virtual void staysWithoutRights(ADScanController&) {}
    /// ChangeGate::perform of the coordinator's gate. From the cleaning thread.
    virtual ChangeOutcome perform(const ChangeRequest& request) = 0;
};

/// Shows a module's results. All on the main thread.
class ScanViewDelegate {
  public:
    virtual ~ScanViewDelegate() = default;

    /// Is there anything on screen to update? Without it workers spare themselves the calls below. Any thread.
    [[nodiscard]] virtual bool showsResults() const { return false; }
    virtual void updateView() {}
    virtual void updatedNode(Node&) {}
    virtual void refreshInterface() {}
};

} // namespace sweeply
