#pragma once

#include "appcore/sizes/SizeDisplay.h"
#include "cli/RunOutput.h"

#include <iosfwd>

namespace sweeply {

class Node;

/// Stands in an object for everything below a node, which only the printer looks at: as JSON in memory it would take
/// many times the room of the tree. The node stays as it is, and where it is, until the object was printed.
[[nodiscard]] Json treeReference(const Node& node, SizeUnits units);

/// How objects are laid out.
enum class JsonLayout { Indented, OneLine };

/// Writes the object with all trees that it refers to, as it goes.
void writeJson(std::ostream& output, const Json& json, JsonLayout layout);

/// The same object with the trees in it, for who lets go of them before it is printed.
[[nodiscard]] Json withTrees(const Json& json);

} // namespace sweeply
