#pragma once

#include "cli/Terminal.h"
#include "platform/Alerts.h"

#include <vector>

namespace sweeply {

/// Asks and tells on standard error. Without a person there, takes the safe button. Keeps what was asked and answered.
class TerminalAlerts final : public Alerts {
  public:
    struct Record {
        Alert alert;
        AlertAnswer answer;
    };

    /// `isQuiet`: messages that only want to be read are kept and not shown.
    TerminalAlerts(Terminal terminal, bool isQuiet) : m_terminal(terminal), m_isQuiet(isQuiet) {}

    AlertAnswer runAlert(const Alert& alert) override;
    [[nodiscard]] const std::vector<Record>& records() const { return m_records; }

    /// A question of the program itself, with no as the safe answer. Main thread, a person at the terminal.
    [[nodiscard]] static bool confirms(const std::string& question);

  private:
    [[nodiscard]] std::size_t ask(const Alert& alert) const;

    const Terminal m_terminal;
    const bool m_isQuiet;
    std::vector<Record> m_records;
};

/// Somebody who started a command looks at it: nothing goes to the desktop.
class TerminalNotifications final : public DesktopNotifications {
  public:
    void show(const DesktopNotification&) override {}
    [[nodiscard]] bool isApplicationActive() const override { return true; }
    void requestUserAttention() override {}
};

} // namespace sweeply
