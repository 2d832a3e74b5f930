#pragma once

#include "app/Application.h"
#include "cli/ShownModules.h"
#include "cli/Terminal.h"

#include <iosfwd>

namespace sweeply {

/// The modules' results as an indented list with check marks and sizes.
void printResults(Application& application, const std::vector<ShownModule>& modules, const Terminal& terminal,
                  std::ostream& output);
/// Those of a scan, and what a removal would free.
void printScan(Application& application, const Terminal& terminal, std::ostream& output);

/// A size in a column of its own, then the text.
void printSized(std::ostream& output, const std::string& size, const std::string& text);

} // namespace sweeply
