#pragma once

#include "app/schedule/Schedule.h"

#include <optional>

namespace sweeply {

/// The contents of a schedule's two units.
struct ScheduleUnits {
    std::string service;
    std::string timer;
};

/// Who runs a schedule's service.
struct ScheduleRunner {
    std::string program; ///< sweeply-cli's absolute path
    bool isRoot = false;
};

/// An error names the text that cannot stand in a unit, and why.
///
/// What the service runs can write below the root, and nowhere else, gains no rights and reaches no network; it gives
/// way to everything else that wants the processor or the disk.
[[nodiscard]] Result<ScheduleUnits> unitsFor(const Schedule& schedule, const ScheduleRunner& runner);

/// Reads back what unitsFor wrote; the times are the timer's, which its owner may have changed. Nothing where the
/// service is somebody else's.
[[nodiscard]] std::optional<Schedule> scheduleIn(const ScheduleUnits& units);

} // namespace sweeply
