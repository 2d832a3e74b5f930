#pragma once

#include <optional>
#include <string>
#include <vector>

namespace sweeply {

/// A box in an alert that the person may check or uncheck.
struct AlertCheckBox {
    std::string text;
    bool isChecked = false;
};

/// A question or a message for the person in front of the program. Texts are already translated, and the
/// names in them escaped for display: a line of its own in a name would read as one of ours.
struct Alert {
    enum class Style { Informational, Warning };

    Style style = Style::Warning;
    std::string title;
    std::string text;
    /// First the default one. Never empty.
    std::vector<std::string> buttons;
    /// The button that changes nothing: what is answered where there is nobody to ask.
    std::size_t safeButton = 0;
    std::optional<AlertCheckBox> checkBox = std::nullopt;
};

struct AlertAnswer {
    std::size_t button = 0; ///< index into Alert::buttons
    bool isBoxChecked = false; ///< as the person left it
    bool nobodyAnswered = false; ///< there was nobody to ask, and the safe button stands in for an answer
};

/// Shows alerts: a dialog, a question in a terminal, a script of answers in a test.
class Alerts {
  public:
    virtual ~Alerts() = default;

    /// Returns when the alert was answered. Called on the main thread.
    virtual AlertAnswer runAlert(const Alert& alert) = 0;
};

/// A note on the desktop, for someone who is looking at another program.
struct DesktopNotification {
    std::string title;
    std::string description;
    std::string name; ///< which kind it is: "SCAN_FINISHED", "CLEAN_FINISHED", "ERROR"
};

class DesktopNotifications {
  public:
    virtual ~DesktopNotifications() = default;

    virtual void show(const DesktopNotification& notification) = 0;
    /// Is the person looking at this program now? Then nothing needs to be shown.
    [[nodiscard]] virtual bool isApplicationActive() const = 0;
    /// Bounces the icon once, or what the desktop has in its place.
    virtual void requestUserAttention() = 0;
};

} // namespace sweeply
