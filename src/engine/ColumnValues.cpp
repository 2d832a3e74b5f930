#include "engine/ColumnValues.h"

#include <optional>

namespace sweeply {

namespace {

/// The columns that outline and table show alike.
std::optional<ColumnValue> sharedValue(const Node& node, std::string_view column, SizeUnits units) {
    if (column == "Name")
        return std::string(node.name());
    if (column == "Size")
        return stringSizeFromLong(node.longSize(), units);
    if (column == "Count")
        return node.stringCount();
    if (column == "Icon")
        return node.icon();
    if (column == "NodeExtended")
        return ExtendedName{std::string(node.name()), node.path()};
    return std::nullopt;
}

} // namespace

ColumnValue outlineValue(const Node& node, std::string_view column, SizeUnits units) {
    if (column == "Enabled")
        return node.state();
    return sharedValue(node, column, units).value_or(std::string(column));
}

ColumnValue tableValue(const Node& node, std::string_view column, SizeUnits units) {
    if (column == "Enabled")
        return node.ifEnabled();
    return sharedValue(node, column, units).value_or(&node);
}

} // namespace sweeply
