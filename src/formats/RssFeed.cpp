#include "formats/RssFeed.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <pugixml.hpp>

namespace sweeply {

namespace {

/// Minutes east of Greenwich: "+0200", "GMT" or one of the letters that mean the same.
std::optional<int> zoneOffset(std::string_view zone) {
    if (zone == "GMT" || zone == "UT" || zone == "UTC" || zone == "Z")
        return 0;
    if (zone.size() != 5 || (zone[0] != '+' && zone[0] != '-') ||
        !std::ranges::all_of(zone.substr(1), [](char c) { return c >= '0' && c <= '9'; }))
        return std::nullopt;
    const auto digit = [&](std::size_t at) { return zone[at] - '0'; };
    const int minutes = (digit(1) * 10 + digit(2)) * 60 + digit(3) * 10 + digit(4);
    return zone[0] == '-' ? -minutes : minutes;
}

/// "Tue, 02 Jun 2009 10:00:00 +0200", the weekday and the seconds optional. Not by the C library, whose month names are
/// those of the user's language.
std::optional<long long> parseDate(std::string_view text) {
    if (const auto comma = text.find(','); comma != std::string_view::npos)
        text.remove_prefix(comma + 1);
    const std::string date(text.substr(0, 64));
    int day = 0;
    int year = 0;
    int hour = 0;
    int minute = 0;
    int second = 0;
    std::array<char, 4> month{};
    std::array<char, 8> zone{};
    if (std::sscanf(date.c_str(), " %2d %3s %4d %2d:%2d:%2d %7s", &day, month.data(), &year, &hour, &minute, &second,
                    zone.data()) < 7 &&
        std::sscanf(date.c_str(), " %2d %3s %4d %2d:%2d %7s", &day, month.data(), &year, &hour, &minute, zone.data()) <
            6)
        return std::nullopt;
    constexpr std::array<std::string_view, 12> kMonths{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                       "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    const auto found = std::ranges::find(kMonths, std::string_view(month.data()));
    const auto offset = zoneOffset(zone.data());
    if (found == kMonths.end() || !offset)
        return std::nullopt;
    const auto number = static_cast<unsigned>(found - kMonths.begin()) + 1;
    const std::chrono::year_month_day calendarDay{std::chrono::year(year), std::chrono::month(number),
                                                  std::chrono::day(static_cast<unsigned>(day))};
    if (!calendarDay.ok())
        return std::nullopt;
    const long long days = std::chrono::sys_days(calendarDay).time_since_epoch().count();
    return ((days * 24 + hour) * 60 + minute - *offset) * 60 + second;
}

RssItem readItem(const pugi::xml_node& node) {
    RssItem item{node.child_value("title"), node.child_value("link"), parseDate(node.child_value("pubDate")), {}};
    for (const auto& attribute : node.child("enclosure").attributes())
        item.enclosure.emplace_back(attribute.name(), attribute.value());
    return item;
}

} // namespace

std::string_view RssItem::enclosureAttribute(std::string_view name) const {
    const auto found = std::ranges::find(enclosure, name, [](const auto& attribute) { return attribute.first; });
    return found == enclosure.end() ? std::string_view() : found->second;
}

tl::expected<std::vector<RssItem>, std::string> parseRssFeed(std::string_view bytes) {
    pugi::xml_document document;
    const auto outcome = document.load_buffer(bytes.data(), bytes.size());
    if (!outcome)
        return tl::unexpected(std::string("no well-formed XML: ") + outcome.description());
    const auto channel = document.child("rss").child("channel");
    if (!channel)
        return tl::unexpected(std::string("no RSS feed"));
    std::vector<RssItem> items;
    for (const auto& node : channel.children("item"))
        items.push_back(readItem(node));
    // An absent date is less than any other.
    std::ranges::stable_sort(items, std::ranges::greater(), &RssItem::published);
    return items;
}

} // namespace sweeply
