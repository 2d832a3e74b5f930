#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace sweeply {

/// A rectangle of a map, in pixels or any other unit.
struct MapArea {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    [[nodiscard]] double size() const { return width * height; }
    [[nodiscard]] bool isEmpty() const { return !(width > 0 && height > 0); }
};

/// What a list of sizes looks like in an area.
struct MapDivision {
    /// Of the sizes from the first on, in their order.
    std::vector<MapArea> areas;
    /// Of all further ones together, those too small to be seen; empty where there are none, or no place for them.
    MapArea rest;
};

/// Divides the area among the sizes, the largest of which come first, each as near to a square as can be: a row of them
/// along the shorter side at a time, as long as that makes the row's worst shape better (a "squarified treemap").
///
/// Areas are in proportion to sizes, lie in the area and beside each other. From the first one on that would be smaller
/// than `smallest` they are one rest, so that what this costs depends on the place and hardly on the number of sizes. A
/// size of 0 has no area. Any thread.
[[nodiscard]] MapDivision divide(const MapArea& area, std::span<const std::uint64_t> sizes, double smallest);

} // namespace sweeply
