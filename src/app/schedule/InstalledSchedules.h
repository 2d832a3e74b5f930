#pragma once

#include "app/schedule/ScheduleUnits.h"
#include "platform/UserUnits.h"

#include <cstdint>
#include <optional>
#include <utility>

namespace sweeply {

/// A schedule as the user's service manager has it.
struct InstalledSchedule {
    std::string name;
    Schedule schedule;
    /// When it is cleaned next, in seconds since 1970, where the manager tells.
    std::optional<std::int64_t> next;
};

/// The schedules of the person who runs the program on this machine. Units that the program did not write are never
/// touched.
class InstalledSchedules final {
  public:
    explicit InstalledSchedules(UserUnits units = UserUnits()) : m_units(std::move(units)) {}

    [[nodiscard]] std::vector<InstalledSchedule> all() const;

    /// Writes the schedule's units, over those of the same modules of the same target, and has the manager start the
    /// timer. Nothing of it stays when they cannot be written. Unavailable, with the reason, when they are written but
    /// the manager did not start them.
    Result<void> install(const Schedule& schedule, const ScheduleRunner& runner) const;

    /// Stops these and takes them away; a name that is none of ours is NotFound, and nothing is removed then.
    Result<void> remove(const std::vector<std::string>& names) const;

  private:
    [[nodiscard]] std::optional<Schedule> scheduleNamed(const std::string& name) const;

    UserUnits m_units;
};

} // namespace sweeply
