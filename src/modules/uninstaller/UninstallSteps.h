#pragma once

#include "appcore/changes/Change.h"
#include "appcore/processes/ProcessControl.h"

#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

namespace sweeply {

class ADScanController;
class ADScanControllerView;
class Alerts;
class FileManager;
class MainThread;
class Node;
class ChangeGate;
class SystemVersion;

/// What all uninstallers do alike: the questions before an entry goes, and the removal of one item as its type asks.
/// For the removal thread, without the tree lock; questions are put on the main thread.
class UninstallSteps final {
  public:
    struct Services {
        const FileManager& files;
        ProcessControl& processes;
        ChangeGate& gate;
        Alerts& alerts;
        MainThread& mainThread;
        const SystemVersion& version;
    };

    /// All outlive this.
    UninstallSteps(Services services, std::recursive_mutex& treeLock) : m_services(services), m_treeLock(treeLock) {}

    /// True for "yes"; the safe answer is "No".
    [[nodiscard]] bool asks(const std::string& title, const std::string& text, const std::string& yes) const;
    /// True when the entry is no system application, or the person wants it gone all the same.
    [[nodiscard]] bool confirmsSystemApplication(const Node& entry, ADScanController& module);
    /// Has what runs of the entry's items end; false when something still runs.
    [[nodiscard]] bool stopsApplications(const Node& entry, ADScanControllerView& module);
    /// Asks for rights if there is anything checked below that the user himself may not remove. Who says no keeps that.
    void demandRights(const Node& entry, ADScanControllerView& module);
    /// Unregisters a login item, forgets a receipt, unloads and removes a launch item, removes a file; or keeps it, in
    /// a run that keeps what cannot be made again.
    [[nodiscard]] ChangeOutcome removeItem(const Node& item, ADScanController& module);
    /// What that would be, without the questions.
    [[nodiscard]] ChangeRequest requestFor(const Node& item, const ADScanController& module) const;
    /// What is checked in the module and could not be kept, each with the reason.
    [[nodiscard]] std::vector<Error> obstaclesToKeeping(const ADScanController& module) const;
    /// Counts an entry as one that stays, with the reason. Always false.
    bool stays(const Node& entry, ADScanController& module, const std::string& reason);

  private:
    struct Item {
        std::string name;
        std::string path;
        std::int8_t type = 0;
    };
    [[nodiscard]] Item itemOf(const Node& node) const;
    void addCheckedItems(const Node& node, std::vector<Item>& items) const;
    void addObstacles(const Node& node, const ADScanController& module, std::vector<Error>& obstacles) const;
    [[nodiscard]] bool isReceipt(const Item& item) const;
    [[nodiscard]] bool needsRights(const Item& item) const;

    Services m_services;
    std::recursive_mutex& m_treeLock;
};

} // namespace sweeply
