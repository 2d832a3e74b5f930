#pragma once

#include <string>

namespace sweeply {

/// From now on an exception that nobody catches leaves a report in that folder, which is made when it is needed, before
/// the program ends: what happened and where, for the person to read and to send if he likes. Nothing is sent by us.
/// Once, before threads start.
void reportUncaughtExceptions(std::string folder, std::string version);

} // namespace sweeply
