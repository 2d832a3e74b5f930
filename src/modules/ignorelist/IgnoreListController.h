#pragma once

#include "engine/IgnoreList.h"
#include "modules/ignorelist/ApplicationIgnoreList.h"
#include "modules/ignorelist/ListSharing.h"
#include "modules/ignorelist/SharedIgnoreList.h"
#include "modules/ignorelist/SharedListUpdater.h"
#include "modules/ignorelist/UncheckedItems.h"

#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace sweeply {

class Alerts;
class MainThread;
class ToolTable;

/// Where the maker's servers are and what they are told.
struct MakersServers {
    std::string feedAddress;
    std::string reportAddress;
    std::string agent; ///< what the feed's server is told of the program
    ReportedFacts facts;
};

/// What the ignore list works with; all of it outlives the list.
struct IgnoreListServices {
    UserDefaults& defaults;
    FileManager& files;
    const SWApplicationCore& applications;
    Alerts& alerts;
    MainThread& mainThread;
    SystemLog& log;
    const HttpClient& http;
    const ToolTable& tools;
    std::string shippedFile;          ///< the shared list that came with the program, a host path
    std::string installedFile;        ///< where updates put a newer one, a target path
    std::function<std::string()> now; ///< date and time, as the person writes them
    MakersServers servers;
};

/// What the user does not want touched: items unchecked in results, applications put on the list, and the applications
/// that the maker knows to be unsafe to modify. The lists may be asked on any thread; the rest is the main thread's.
class IgnoreListController final : public IgnoreList {
  public:
    explicit IgnoreListController(IgnoreListServices services);
    /// Stops an update or a report under way, and waits for its end.
    ~IgnoreListController() override;

    /// Writes missing preferences and loads the shared list. To be called once, before the lists are asked.
    void load();
    /// What a program with a window does at its start: asks whether the list may be shared, looks for a newer shared
    /// list and reports the list, the two in the background and only as the user permits.
    void startInBackground();

    [[nodiscard]] UncheckedItems& uncheckedItems() { return m_uncheckedItems; }
    [[nodiscard]] ApplicationIgnoreList& applicationList() { return m_applicationList; }

    [[nodiscard]] std::vector<std::string> ignoreListForController(std::string_view moduleKey) const override;
    void addToIgnoreListNodes(const std::vector<const Node*>& nodes, std::string_view moduleKey) override;
    void removeFromIgnoreListNodes(const std::vector<const Node*>& nodes, std::string_view moduleKey) override;
    [[nodiscard]] bool applicationInList(std::string_view path) const override;
    [[nodiscard]] bool applicationInListWithUserNotification(std::string_view path) override;

    [[nodiscard]] bool bundleInList(std::string_view identifier) const;
    [[nodiscard]] bool bundleInLocalList(std::string_view identifier) const;
    [[nodiscard]] bool bundleInGlobalList(std::string_view identifier) const;
    /// Applications and folders dropped on the list. Then asks whether it may be shared. The identifiers found.
    std::vector<std::string> receiveDragData(const std::vector<std::string>& paths);

    [[nodiscard]] std::string currentIgnorelistVersion() const { return m_sharedList.version(); }
    /// Looks for a newer shared list in the background. A second one while it runs is dropped. `finished` hears on the
    /// main thread how it went.
    void checkBlacklistForUpdate(std::function<void(const UpdateReport&)> finished);
    /// The same, and shows how it went.
    void updateButtonClick(std::function<void(const UpdateReport&)> finished = [](const UpdateReport&) {});
    void askAboutBlacklistAutometicUpdatePermisionWithText(const std::string& text);

  private:
    void rememberTimeOfCheck();
    void showOutcome(const UpdateReport& report);

    const IgnoreListServices m_services;
    UncheckedItems m_uncheckedItems;
    ApplicationIgnoreList m_applicationList;
    SharedIgnoreList m_sharedList;
    SharedListUpdater m_updater;
    ListSharing m_sharing;
    bool m_isUpdating = false;                                                  ///< main thread
    std::shared_ptr<const bool> m_isAlive = std::make_shared<const bool>(true); ///< for calls still to come
    std::jthread m_updateThread;
    std::jthread m_reportThread;
};

} // namespace sweeply
