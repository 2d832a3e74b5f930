#pragma once

#include "platform/Error.h"

#include <cstdint>
#include <string>
#include <vector>

namespace sweeply {

class ADScanController;
class IgnoreList;
class ChangeGate;
struct ChangeRequest;

/// What modules ask of the one coordinator. Main thread, except where a line says otherwise.
class ScanCoordinator {
  public:
    virtual ~ScanCoordinator() = default;

    /// Any thread.
    [[nodiscard]] virtual bool ifScanRunning() const = 0;
    /// Any thread. True from the start of a removal to its end, and while any module cleans.
    [[nodiscard]] virtual bool ifCleanRunning() const = 0;

    virtual void changeViewTo(std::uint8_t viewCode) = 0;
    virtual void gotoCleanerMode() = 0;
    virtual void gotoUninstallerMode() = 0;
    virtual void prepareInterfaceForScan() = 0;
    virtual void finishScan() = 0;
    virtual void refreshInterface() = 0;
    /// Has these modules remove what is checked in them, one after another, as a run of its own.
    virtual void uninstallWith(const std::vector<ADScanController*>& modules) = 0;
    /// Quit when the run under way ends.
    virtual void setTerminating(bool terminating) = 0;

    /// Any thread; asks the person at most once a run.
    virtual bool authorisationDemanded() = 0;
    /// What changes the target.
    virtual ChangeGate& gate() = 0;
    /// Any thread. Counts an item that stays as one that could not be removed.
    virtual void couldntRemove(const ChangeRequest& request, const std::string& reason, ErrorKind kind) = 0;

    virtual IgnoreList& ignoreListController() = 0;
};

} // namespace sweeply
