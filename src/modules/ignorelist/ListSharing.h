#pragma once

#include <stop_token>
#include <string>

namespace sweeply {

class Alerts;
class ApplicationIgnoreList;
class HttpClient;
class SystemLog;
class UserDefaults;

/// What a report says of the program and its system.
struct ReportedFacts {
    std::string applicationName;
    std::string applicationVersion;
    std::string systemVersion; ///< as a number, "10.60"
};

/// Reports the user's own list of applications to the maker, if the user permits it.
class ListSharing final {
  public:
    /// All outlive this.
    ListSharing(UserDefaults& defaults, ApplicationIgnoreList& list, Alerts& alerts, const HttpClient& http,
                SystemLog& log);

    /// Asks for permission with this text, once for each user and only when there is something to share. Where there is
    /// nobody to ask, the question stays open. Main thread.
    void askAboutBlackListSharingWithText(const std::string& text);
    /// May the list be reported, and did it change since it last was?
    [[nodiscard]] bool shouldReport() const;
    /// Sends the list and waits for the answer. A failure is logged; then the list counts as not yet reported.
    void sendBlackListReport(const std::string& address, const ReportedFacts& facts, const std::stop_token& stop);

  private:
    UserDefaults& m_defaults;
    ApplicationIgnoreList& m_list;
    Alerts& m_alerts;
    const HttpClient& m_http;
    SystemLog& m_log;
};

} // namespace sweeply
