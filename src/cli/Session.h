#pragma once

#include "app/ADApp.h"
#include "app/Application.h"
#include "cli/CommandLine.h"
#include "cli/RunOutput.h"
#include "cli/TerminalAlerts.h"
#include "cli/TextStyle.h"
#include "platform/RunLoop.h"

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace sweeply {

class SystemLog;

/// One run of the program on one target: the application and the terminal around it. Main thread.
class Session final {
  public:
    /// Nothing when the command line's references only wanted to be printed, which is done then.
    /// `share` is what is looked at, by default all there is for one user. `log` outlives the session.
    static Result<std::unique_ptr<Session>> open(const CommandLine& line, SystemLog& log, RunOutput output,
                                                 TargetShare share = {});

    Session(Target target, const CommandLine& line, SystemLog& log, RunOutput output);

    [[nodiscard]] Application& application() { return m_application; }
    [[nodiscard]] const Terminal& terminal() const { return m_terminal; }
    /// How standard output is to look.
    [[nodiscard]] const TextStyle& style() const { return m_style; }
    [[nodiscard]] const TerminalAlerts& alerts() const { return m_alerts; }
    [[nodiscard]] const CommandLine& commandLine() const { return m_commandLine; }

    /// The object that --json prints; once.
    void print(const Json& object) const { m_output.object(object); }
    /// A line about something that went wrong. Any thread.
    void complain(std::string_view text) const { m_output.complaint(text); }

    /// Scans the chosen modules and returns when that has ended, shows how far it is, and stops it at an interrupt.
    void scan();
    /// Has these modules look at items of the target in place of a scan; the same otherwise.
    void analyze(const std::vector<ADScanController*>& modules, const std::vector<std::string>& paths);
    /// The same for removing what is checked.
    void removeChecked();
    /// The same for uninstalling what is checked in these modules.
    void uninstallChecked(const std::vector<ADScanController*>& modules);
    /// Has every list of installed extensions filled; the same otherwise.
    void listExtensions();
    /// Fetches a newer shared list of applications and shows how that went. Nothing when it was interrupted.
    std::optional<UpdateReport> updateSharedList();

  private:
    void waitFor(const std::function<bool()>& isRunning, const std::function<void()>& stop, const char* activity);

    const CommandLine m_commandLine;
    const Terminal m_terminal = Terminal::ofThisProcess();
    const TextStyle m_style = styleFor(m_commandLine, m_terminal);
    const RunOutput m_output;
    RunLoop m_loop;
    TerminalAlerts m_alerts;
    TerminalNotifications m_notifications;
    Application m_application;
    Watchers m_watchers;
    ADApp m_app;
    std::vector<NotificationCenter::Subscription> m_subscriptions;
};

} // namespace sweeply
