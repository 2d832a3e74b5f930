#pragma once

#include "modules/ignorelist/SharedIgnoreList.h"
#include "platform/HttpClient.h"

#include <functional>
#include <stop_token>
#include <string>

namespace sweeply {

class SystemLog;
class ToolTable;

/// How an update of the shared list ended, by the numbers that interfaces know.
enum class UpdateOutcome { Error = 0, Installed = 2, AlreadyLatest = 3 };

struct UpdateReport {
    UpdateOutcome outcome = UpdateOutcome::Error;
    /// Why the download itself failed, if it did: for the person who asked.
    std::string downloadError{};
};

/// Asks the maker's feed for a newer shared list, fetches it and puts it in place.
class SharedListUpdater final {
  public:
    enum class Step { Downloaded, Unpacked, Written, OldSetAside, Replaced, Done };

    /// All outlive this. `reached` hears of each step that an update has behind it.
    SharedListUpdater(
        SharedIgnoreList& list, const HttpClient& http, const ToolTable& tools, SystemLog& log,
        std::function<void(Step)> reached = [](Step) {});

    /// Blocks until it is done; a stop ends it soon, with the old list or the new one. What goes wrong is logged and
    /// leaves the installed list as it was. One at a time.
    [[nodiscard]] UpdateReport update(const std::string& feedAddress, const std::string& agent,
                                      const std::stop_token& stop = {});

  private:
    [[nodiscard]] UpdateReport fail(const Error& error);
    [[nodiscard]] UpdateReport downloadAndInstallBlacklistWithURL(const std::string& url, const std::string& agent,
                                                                  const std::stop_token& stop);
    [[nodiscard]] UpdateOutcome install(const std::string& bytes);

    SharedIgnoreList& m_list;
    const HttpClient& m_http;
    const ToolTable& m_tools;
    SystemLog& m_log;
    std::function<void(Step)> m_reached;
};

} // namespace sweeply
