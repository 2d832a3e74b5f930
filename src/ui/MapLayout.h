#pragma once

#include "ui/Treemap.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace sweeply {

/// What a map shows: items that take space, and what is in them. The first one is the whole.
struct MapItems {
    struct Item {
        std::uint64_t size = 0; ///< bytes; of a group the sum of what is in it
        std::size_t parent = 0;
        std::size_t firstChild = 0; ///< its children follow each other, in any order
        std::size_t childCount = 0;
    };
    std::vector<Item> items{Item()};

    /// Appends children to an item that has none yet; gives the first one's place. Their sizes are still to be set.
    std::size_t addChildren(std::size_t parent, std::size_t count);
    /// Once all are there: gives each group the sum of what is in it.
    void addUp();
};

/// One rectangle of a map.
struct MapBox {
    MapArea area;
    std::size_t item;       ///< of the rest of a group the group itself
    std::size_t folded = 0; ///< how many small items a rest stands for; 0 for an item of its own
    bool isOpen = false;    ///< what is in it is drawn in it; its name stands above that
};

/// How a map is drawn, in pixels.
struct MapMeasures {
    double smallest = 64; ///< area of what is drawn by itself
    double heading = 16;  ///< height of the name of an open group
    double border = 2;    ///< around what is in an open group
};

/// The boxes of what is in `whole`, outer ones before those in them. Takes as long as sorting the sizes does at most.
/// Any thread.
[[nodiscard]] std::vector<MapBox> layOut(const MapItems& items, std::size_t whole, const MapArea& area,
                                         const MapMeasures& measures);

/// The innermost box at a point.
[[nodiscard]] std::optional<std::size_t> boxAt(const std::vector<MapBox>& boxes, double x, double y);
/// The box that the arrow key in that direction leads to: the nearest on that side that is not open. `dx` and `dy` are
/// -1, 0 or 1.
[[nodiscard]] std::optional<std::size_t> boxBeside(const std::vector<MapBox>& boxes, std::size_t from, int dx, int dy);

} // namespace sweeply
