#pragma once

#include <chrono>
#include <string>

namespace sweeply {

class Application;

/// One line on standard error that says how far a run is: share done, found or freed, rate, and the item at hand. Drawn
/// when asked, wiped at the end. Main thread.
class Progress final {
  public:
    Progress(Application& application, std::string activity, bool isShown);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void draw();

  private:
    Application& m_application;
    const std::string m_activity;
    const bool m_isShown;
    const std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
    bool m_hasDrawn = false;
};

} // namespace sweeply
