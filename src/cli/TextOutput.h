#pragma once

#include "app/Application.h"
#include "cli/Terminal.h"

#include <iosfwd>

namespace sweeply {

/// The scan's results as an indented list with check marks and sizes, and what a removal would free.
void printResults(Application& application, const Terminal& terminal, std::ostream& output);

/// A size in a column of its own, then the text.
void printSized(std::ostream& output, const std::string& size, const std::string& text);

} // namespace sweeply
