#pragma once

#include "platform/HttpClient.h"

#include <QLabel>
#include <string>
#include <thread>

namespace sweeply {

/// The newest item of a feed, as a line with a link. Silent as long as no address is set: then no server is asked. Main
/// thread; the feed is fetched on another one.
class NewsLine final : public QLabel {
  public:
    /// Where the address stands among the window's settings.
    static constexpr const char* kFeedAddress = "newsFeed";

    NewsLine();

    /// Asks the feed once, if there is one.
    void start();

  private:
    void show(const std::string& feed);

    HttpClient m_http;
    std::jthread m_fetching; ///< last: it ends before the rest goes
};

} // namespace sweeply
