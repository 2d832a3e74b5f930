#pragma once

#include "platform/SystemVersion.h"

#include <condition_variable>
#include <cstdint>
#include <ctime>
#include <functional>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <thread>
#include <vector>

namespace sweeply {

class SWApplicationCore;

/// An installed application, as people are shown it. What is not known yet is empty.
struct SurveyedApplication {
    std::string path;
    std::string name; ///< the bundle's, without its extension
    std::string identifier;
    std::string version;
    std::optional<std::uint64_t> size; ///< bytes on disk
    bool isSizeWhole = true;           ///< false where a part of it could not be read
    std::time_t changed = 0;           ///< when any file of it changed last, in seconds since 1970; 0 where unknown
};

/// Looks at the applications of the inventory for somebody who shows them: first which are there, then what each is,
/// then how big it is. On a thread of its own, with a door to the target of its own: what it cannot read is no problem
/// of a scan. Belongs to one thread, but for what it tells.
class ApplicationSurvey final {
  public:
    /// What is told, in this order, on the survey's own thread.
    struct Listener {
        /// All that are there, with path and name.
        std::function<void(std::vector<SurveyedApplication>)> listed;
        /// More of some of them, in the same order.
        std::function<void(std::vector<SurveyedApplication>)> learned;
    };

    /// `applications` outlives this. `root` is the target's folder on this machine.
    ApplicationSurvey(const SWApplicationCore& applications, std::string root, const SystemVersion& version,
                      Listener listener);
    /// Ends at once.
    ~ApplicationSurvey();

    /// Looks at all of them, from the beginning.
    void start();
    /// Rests while something else needs the disk; a size that was being taken is taken again afterwards.
    void setHeld(bool isHeld);

  private:
    void run(const std::stop_token& stop);
    /// False after a stop.
    bool waitWhileHeld(const std::stop_token& stop, std::stop_source& work);
    /// Has `look` learn more of each, and tells that a few times a second.
    void learn(std::vector<SurveyedApplication>& applications, const std::stop_token& stop,
               const std::function<void(SurveyedApplication&, const std::stop_token&)>& look);

    const SWApplicationCore& m_applications;
    const std::string m_root;
    const SystemVersion m_version;
    const Listener m_listener;

    std::mutex m_mutex;
    std::condition_variable_any m_isReleased;
    bool m_isHeld = false;   ///< guarded by m_mutex, like the next
    std::stop_source m_work; ///< of the look under way
    std::jthread m_thread;   ///< last: ends before what it uses
};

} // namespace sweeply
