#pragma once

#include "app/Application.h"
#include "cli/ShownModules.h"
#include "cli/TextStyle.h"

#include <iosfwd>

namespace sweeply {

/// The modules' results as an indented list with check marks and sizes.
void printResults(Application& application, const std::vector<ShownModule>& modules, const TextStyle& style,
                  std::ostream& output);
/// Those of a scan, and what a removal would free.
void printScan(Application& application, const TextStyle& style, std::ostream& output);

} // namespace sweeply
