#include "ui/MapLayout.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace sweeply {

namespace {

/// What is in a group smaller than this could not be told apart.
constexpr double kSmallestGroup = 24;

class Layout final {
  public:
    Layout(const MapItems& items, const MapMeasures& measures) : m_items(items), m_measures(measures) {}

    void placeChildren(std::size_t group, const MapArea& area) {
        const auto& item = m_items.items[group];
        std::vector<std::size_t> children(item.childCount);
        std::iota(children.begin(), children.end(), item.firstChild);
        std::ranges::stable_sort(children, std::ranges::greater(), [this](auto child) { return sizeOf(child); });
        std::vector<std::uint64_t> sizes;
        sizes.reserve(children.size());
        std::ranges::transform(children, std::back_inserter(sizes), [this](auto child) { return sizeOf(child); });
        const auto division = divide(area, sizes, m_measures.smallest);
        for (std::size_t i = 0; i < division.areas.size(); ++i)
            place(children[i], division.areas[i]);
        if (!division.rest.isEmpty())
            m_boxes.push_back({division.rest, group, children.size() - division.areas.size()});
    }

    std::vector<MapBox> takeBoxes() { return std::move(m_boxes); }

  private:
    [[nodiscard]] std::uint64_t sizeOf(std::size_t item) const { return m_items.items[item].size; }

    void place(std::size_t item, const MapArea& area) {
        const double inset = m_measures.border;
        const MapArea inside{area.x + inset, area.y + m_measures.heading, area.width - 2 * inset,
                             area.height - m_measures.heading - inset};
        const bool isOpen =
            m_items.items[item].childCount > 0 && inside.width >= kSmallestGroup && inside.height >= kSmallestGroup;
        m_boxes.push_back({area, item, 0, isOpen});
        if (isOpen)
            placeChildren(item, inside);
    }

    const MapItems& m_items;
    const MapMeasures& m_measures;
    std::vector<MapBox> m_boxes;
};

} // namespace

std::size_t MapItems::addChildren(std::size_t parent, std::size_t count) {
    const std::size_t first = items.size();
    items[parent].firstChild = first;
    items[parent].childCount = count;
    items.resize(first + count, Item{0, parent, 0, 0});
    return first;
}

void MapItems::addUp() {
    // Children stand behind their parents.
    for (std::size_t item = items.size(); item-- > 1;)
        items[items[item].parent].size += items[item].size;
}

std::vector<MapBox> layOut(const MapItems& items, std::size_t whole, const MapArea& area, const MapMeasures& measures) {
    Layout layout(items, measures);
    layout.placeChildren(whole, area);
    return layout.takeBoxes();
}

std::optional<std::size_t> boxAt(const std::vector<MapBox>& boxes, double x, double y) {
    for (std::size_t i = boxes.size(); i-- > 0;) {
        const auto& area = boxes[i].area;
        if (x >= area.x && x < area.x + area.width && y >= area.y && y < area.y + area.height)
            return i;
    }
    return std::nullopt;
}

std::optional<std::size_t> boxBeside(const std::vector<MapBox>& boxes, std::size_t from, int dx, int dy) {
    const auto middle = [](const MapArea& area) {
        return std::pair(area.x + area.width / 2, area.y + area.height / 2);
    };
    const auto& start = boxes[from].area;
    const auto [x, y] = middle(start);
    std::optional<std::size_t> nearest;
    double least = std::numeric_limits<double>::infinity();
    for (std::size_t i = 0; i < boxes.size(); ++i) {
        const auto& area = boxes[i].area;
        if (i == from || boxes[i].isOpen)
            continue;
        // What lies wholly on that side, the nearest edge first and then what is least aside.
        const double gap = dx > 0   ? area.x - (start.x + start.width)
                           : dx < 0 ? start.x - (area.x + area.width)
                           : dy > 0 ? area.y - (start.y + start.height)
                                    : start.y - (area.y + area.height);
        if (gap < -0.5)
            continue;
        const auto [otherX, otherY] = middle(area);
        const double aside = dx != 0 ? std::max({area.y - y, y - (area.y + area.height), 0.0})
                                     : std::max({area.x - x, x - (area.x + area.width), 0.0});
        const double distance = gap + 4 * aside + (dx != 0 ? std::abs(otherY - y) : std::abs(otherX - x)) / 1000;
        if (distance < least) {
            least = distance;
            nearest = i;
        }
    }
    return nearest;
}

} // namespace sweeply
