#include "ui/Treemap.h"

#include <algorithm>

namespace sweeply {

namespace {

/// How far the worst of a row's areas is from a square, which is 1. The row has this much area along a side.
double worstShape(double row, double side, double largest, double smallest) {
    const double ofSide = side * side;
    const double ofRow = row * row;
    return std::max(ofSide * largest / ofRow, ofRow / (ofSide * smallest));
}

/// Takes a row off the area, along its shorter side, and lays the parts out in it.
void layRow(MapArea& area, std::span<const double> parts, double row, std::vector<MapArea>& areas) {
    const bool isWide = area.width >= area.height;
    const double side = isWide ? area.height : area.width;
    const double depth = std::min(row / side, isWide ? area.width : area.height);
    double at = isWide ? area.y : area.x;
    const double end = at + side;
    for (const double part : parts) {
        const double length = std::min(part / depth, end - at); // the last one must not stick out by a rounding
        areas.push_back(isWide ? MapArea{area.x, at, depth, length} : MapArea{at, area.y, length, depth});
        at += length;
    }
    if (isWide) {
        area.x += depth;
        area.width -= depth;
    } else {
        area.y += depth;
        area.height -= depth;
    }
}

} // namespace

MapDivision divide(const MapArea& area, std::span<const std::uint64_t> sizes, double smallest) {
    MapDivision division;
    double total = 0; // of files' sizes, which may be beyond what a number of bytes can count
    for (const auto size : sizes)
        total += static_cast<double>(size);
    if (area.isEmpty() || !(total > 0))
        return division;
    const double perByte = area.size() / total;
    std::vector<double> parts;
    double rest = area.size();
    for (const auto size : sizes) {
        const double part = static_cast<double>(size) * perByte;
        if (!(part > 0) || part < smallest)
            break;
        parts.push_back(part);
        rest -= part;
    }
    const std::size_t shown = parts.size();
    const bool hasRest = shown < sizes.size() && sizes[shown] > 0;
    if (hasRest)
        parts.push_back(std::max(rest, 0.0));
    MapArea left = area;
    for (std::size_t first = 0; first < parts.size() && !left.isEmpty();) {
        const double side = std::min(left.width, left.height);
        double row = parts[first];
        double largestPart = row; // the rest, which is the last, may be either
        double smallestPart = row;
        double worst = worstShape(row, side, row, row);
        std::size_t next = first + 1;
        for (; next < parts.size(); ++next) {
            const double largest = std::max(largestPart, parts[next]);
            const double least = std::min(smallestPart, parts[next]);
            const double shape = worstShape(row + parts[next], side, largest, least);
            if (shape > worst)
                break;
            row += parts[next];
            largestPart = largest;
            smallestPart = least;
            worst = shape;
        }
        layRow(left, std::span(parts).subspan(first, next - first), row, division.areas);
        first = next;
    }
    if (hasRest && division.areas.size() > shown) {
        division.rest = division.areas.back();
        division.areas.pop_back();
    }
    return division;
}

} // namespace sweeply
