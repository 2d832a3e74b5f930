#pragma once

#include "platform/Error.h"

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace sweeply {

/// The units of the user's own service manager: files in a folder of this machine, and the manager that reads them.
/// Units are named with their kind ("NAME.timer"). Thread-safe.
class UserUnits final {
  public:
    /// Has the manager do what these arguments say, as systemctl(), and gives what it printed.
    using Manager = std::function<Result<std::string>(std::vector<std::string>)>;

    /// "systemd/user" in $XDG_CONFIG_HOME, or else in ".config" of the home folder. Whose home that is says $HOME.
    explicit UserUnits(Manager manager = systemctl);

    /// An absolute path of this machine.
    [[nodiscard]] const std::string& folder() const { return m_folder; }
    /// Everybody's units there, in order of their names; none where there is no such folder.
    [[nodiscard]] std::vector<std::string> names() const;
    [[nodiscard]] Result<std::string> contents(const std::string& unit) const;

    /// Replaces the unit or leaves it whole; makes the folder where there is none.
    Result<void> write(const std::string& unit, std::string_view contents) const;
    /// Takes the unit away, and the links by which other units want it.
    Result<void> remove(const std::string& unit) const;

    [[nodiscard]] Result<std::string> manager(std::vector<std::string> arguments) const {
        return m_manager(std::move(arguments));
    }

    /// What systemctl of this user prints for these arguments. Unavailable, with the first line of what it complained,
    /// when it failed: as a rule because there is no manager.
    static Result<std::string> systemctl(std::vector<std::string> arguments);

  private:
    [[nodiscard]] std::string path(const std::string& unit) const { return m_folder + "/" + unit; }

    Manager m_manager;
    std::string m_folder;
};

} // namespace sweeply
