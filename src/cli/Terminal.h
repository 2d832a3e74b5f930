#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace sweeply {

/// Which of our streams a person sits at.
struct Terminal {
    bool isInputTerminal = false;
    bool isOutputTerminal = false;
    bool isErrorTerminal = false;

    [[nodiscard]] static Terminal ofThisProcess();
    /// Can a question be asked and answered?
    [[nodiscard]] bool isInteractive() const { return isInputTerminal && isErrorTerminal; }
    /// Columns of the screen behind standard error.
    [[nodiscard]] static std::size_t width();
};

/// A line from the terminal, without its end. Nothing at the end of input or once the person interrupts.
[[nodiscard]] std::optional<std::string> readLine();

} // namespace sweeply
