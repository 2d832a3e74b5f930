#pragma once

#include <functional>

namespace sweeply {

class Alerts;
class ScanController;
class SystemLog;

/// Whether the program may end now, asked whenever somebody wants it to. Main thread.
class QuitController final {
  public:
    struct Window {
        /// Nothing was scanned yet, and the window shows where a scan begins: then quitting needs no question.
        std::function<bool()> isShowingScanView;
        /// Offers to install a program that runs from a disk image.
        std::function<void()> beforeQuitting;
        /// Ends this process whatever its threads do.
        std::function<void()> killOurselves;
    };

    /// All but `window` outlive this.
    QuitController(ScanController& controller, Alerts& alerts, SystemLog& log, Window window);

    /// Asks the person where needed; a run under way rests meanwhile. True: quit now. A run that the person gives up is
    /// stopped then, and its threads end soon.
    bool applicationShouldTerminate();

  private:
    enum class Answer { Cancel, Quit, ForceQuit };

    [[nodiscard]] bool isRunning() const;
    bool quitWhileIdle();
    Answer askWhileRunning();
    bool quitApplicationButtonPress();
    bool cancesQuitButtonPress(bool wasPaused);

    ScanController& m_controller;
    Alerts& m_alerts;
    SystemLog& m_log;
    const Window m_window;
    bool m_terminating = false;
    bool m_forceQuit = false;
};

} // namespace sweeply
