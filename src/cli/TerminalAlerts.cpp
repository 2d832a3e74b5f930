#include "cli/TerminalAlerts.h"

#include "formats/DisplayEscapes.h"
#include "platform/Localization.h"

#include <charconv>
#include <iostream>
#include <sstream>

namespace sweeply {

AlertAnswer TerminalAlerts::runAlert(const Alert& alert) {
    const bool isQuestion = alert.buttons.size() > 1;
    const bool canAsk = isQuestion && m_terminal.isInteractive();
    if (canAsk || !m_isQuiet) {
        std::cerr << escapedAroundNames(alert.title) << "\n";
        std::istringstream text(alert.text);
        for (std::string line; std::getline(text, line);)
            std::cerr << escapedAroundNames(line) << "\n";
    }
    AlertAnswer answer;
    answer.button = canAsk ? ask(alert) : alert.safeButton;
    answer.nobodyAnswered = isQuestion && !canAsk;
    if (isQuestion && !canAsk && !m_isQuiet)
        std::cerr << "[" << alert.buttons[answer.button] << "]\n";
    m_records.push_back({alert, answer});
    return answer;
}

std::size_t TerminalAlerts::ask(const Alert& alert) const {
    for (;;) {
        for (std::size_t button = 0; button < alert.buttons.size(); ++button)
            std::cerr << "  " << button + 1 << ") " << alert.buttons[button] << "\n";
        std::cerr << "> " << std::flush;
        const auto line = readLine();
        if (!line)
            return alert.safeButton;
        std::size_t number = 0;
        const auto [end, error] = std::from_chars(line->data(), line->data() + line->size(), number);
        if (error == std::errc() && end == line->data() + line->size() && number >= 1 && number <= alert.buttons.size())
            return number - 1;
    }
}

bool TerminalAlerts::confirms(const std::string& question) {
    std::cerr << question << " [y/N] " << std::flush;
    const auto line = readLine();
    if (!line)
        std::cerr << "\n";
    return line && (*line == "y" || *line == "Y" || *line == "yes" || *line == localizedButton("Yes"));
}

} // namespace sweeply
