#include "ui/MapLayout.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <vector>

namespace sweeply {
namespace {

constexpr double kRounding = 1e-6;

bool liesIn(const MapArea& inner, const MapArea& outer) {
    return inner.x >= outer.x - kRounding && inner.y >= outer.y - kRounding &&
           inner.x + inner.width <= outer.x + outer.width + kRounding &&
           inner.y + inner.height <= outer.y + outer.height + kRounding;
}

bool overlap(const MapArea& a, const MapArea& b) {
    return a.x + a.width > b.x + kRounding && b.x + b.width > a.x + kRounding && a.y + a.height > b.y + kRounding &&
           b.y + b.height > a.y + kRounding;
}

TEST(TreemapTest, AreasAreInProportionInsideAndApartForAnySizes) {
    std::mt19937_64 random(11);
    std::vector<std::vector<std::uint64_t>> lists{
        {},
        {0},
        {0, 0, 0},
        {1},
        {std::numeric_limits<std::uint64_t>::max(), std::numeric_limits<std::uint64_t>::max(), 1, 0}};
    for (int i = 0; i < 60; ++i) {
        auto& list = lists.emplace_back(random() % 400);
        for (auto& size : list)
            size = random() >> (random() % 64);
        std::ranges::sort(list, std::greater());
    }
    for (const auto& sizes : lists) {
        for (const MapArea& area : {MapArea{3, 5, 640, 480}, MapArea{0, 0, 9000, 2}, MapArea{0, 0, 0, 50}}) {
            for (const double smallest : {0.0, 64.0}) {
                const auto division = divide(area, sizes, smallest);
                double total = 0;
                for (const auto size : sizes)
                    total += static_cast<double>(size);
                auto all = division.areas;
                if (!division.rest.isEmpty())
                    all.push_back(division.rest);
                double covered = 0;
                for (std::size_t i = 0; i < all.size(); ++i) {
                    ASSERT_TRUE(liesIn(all[i], area) && std::isfinite(all[i].size()));
                    covered += all[i].size();
                    for (std::size_t j = 0; j < i; ++j)
                        ASSERT_FALSE(overlap(all[i], all[j])) << i << " " << j;
                }
                ASSERT_NEAR(covered, total > 0 ? area.size() : 0, area.size() / 1000);
                for (std::size_t i = 0; i < division.areas.size(); ++i)
                    ASSERT_NEAR(division.areas[i].size(), area.size() * static_cast<double>(sizes[i]) / total,
                                area.size() / 1000);
            }
        }
    }
}

TEST(TreemapTest, BoxesOfManyItemsAreFewAndWhatIsInAGroupIsDrawnInIt) {
    MapItems items;
    items.addChildren(0, 3);
    const auto inner = items.addChildren(1, 200'000);
    for (std::size_t i = 0; i < 200'000; ++i)
        items.items[inner + i].size = 1 + i % 7 + (i < 5 ? 100'000 : 0);
    items.items[2].size = 500'000;
    items.addUp();
    const MapArea area{0, 0, 800, 600};
    const auto boxes = layOut(items, 0, area, {});
    EXPECT_LT(boxes.size(), 10'000U);
    const auto group = std::ranges::find(boxes, 1U, &MapBox::item);
    ASSERT_TRUE(group != boxes.end() && group->isOpen);
    EXPECT_TRUE(std::ranges::none_of(boxes, [](const MapBox& box) { return box.item == 3; })) << "it has no size";
    std::size_t told = 0;
    for (const auto& box : boxes) {
        const bool isInside = box.item >= inner || (box.item == 1 && box.folded > 0);
        ASSERT_TRUE(liesIn(box.area, isInside ? group->area : area));
        told += isInside ? std::max<std::size_t>(box.folded, 1) : 0;
    }
    EXPECT_EQ(told, 200'000U);
    // By the arrow keys everything can be reached that a mouse can.
    std::vector<std::size_t> reached{*boxBeside(boxes, 0, 1, 0)};
    for (std::size_t i = 0; i < reached.size(); ++i) {
        for (const auto& [dx, dy] : {std::pair{1, 0}, {-1, 0}, {0, 1}, {0, -1}}) {
            const auto next = boxBeside(boxes, reached[i], dx, dy);
            if (next && std::ranges::find(reached, *next) == reached.end())
                reached.push_back(*next);
        }
    }
    EXPECT_EQ(reached.size(),
              static_cast<std::size_t>(std::ranges::count_if(boxes, [](const MapBox& box) { return !box.isOpen; })));
}

} // namespace
} // namespace sweeply
