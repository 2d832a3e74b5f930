#pragma once

namespace sweeply::interrupt {

/// Has the first interrupt (Ctrl-C, a polite kill) only noted, so that a run can end cleanly. A second one ends the
/// program at once.
void install();

/// Has the run end as after an interrupt. Any thread.
void request();

/// Was one noted? Any thread.
[[nodiscard]] bool wasRequested();

} // namespace sweeply::interrupt
