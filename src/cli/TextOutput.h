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
/// What a removal would free, in bytes.
void printFound(std::uint64_t size, SizeUnits units, std::ostream& output);
/// What a removal did; `freed` in bytes.
void printRemoved(const ChangeSums& sums, std::uint64_t freed, SizeUnits units, std::ostream& output);

} // namespace sweeply
