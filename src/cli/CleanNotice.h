#pragma once

#include "cli/ExitCode.h"

#include <string>

namespace sweeply {

class Session;
class SystemLog;

/// Tells a person who does not watch how a clean went: by a note on the desktop, and where there is none by a line in
/// the system log.
void tellHowCleanWent(Session& session, ExitCode outcome, SystemLog& log);

/// The same for one that could not even begin.
void tellThatCleanFailed(const std::string& reason, SystemLog& log);

} // namespace sweeply
