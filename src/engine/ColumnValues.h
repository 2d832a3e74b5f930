#pragma once

#include "appcore/sizes/SizeDisplay.h"
#include "engine/tree/Node.h"

#include <string>
#include <string_view>
#include <variant>

namespace sweeply {

/// The name and path that a two-line cell shows.
struct ExtendedName {
    std::string name;
    std::string path;
    bool operator==(const ExtendedName&) const = default;
};

/// What a cell shows: a check state, a check mark, a text, a picture, a name with its path, or the node itself.
using ColumnValue = std::variant<CheckState, bool, std::string, Icon, ExtendedName, const Node*>;

/// The value of the outline's column with that identifier; the identifier itself for an unknown one.
[[nodiscard]] ColumnValue outlineValue(const Node& node, std::string_view column, SizeUnits units);
/// The value of the table's column with that identifier; the node itself for an unknown one.
[[nodiscard]] ColumnValue tableValue(const Node& node, std::string_view column, SizeUnits units);

} // namespace sweeply
