#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <tl/expected.hpp>
#include <utility>
#include <vector>

namespace sweeply {

/// One item of an RSS feed.
struct RssItem {
    std::string title;
    std::string link;
    /// Seconds since 1970, UTC; nothing where the item has no date that can be read.
    std::optional<long long> published;
    /// The attributes of its enclosure, prefixes kept: "url", "blacklist:version". Empty without one.
    std::vector<std::pair<std::string, std::string>> enclosure;

    /// Empty where the enclosure has none.
    [[nodiscard]] std::string_view enclosureAttribute(std::string_view name) const;
};

/// The items of an RSS 2.0 feed, newest first; those without a date keep their places after the dated ones. What is no
/// well-formed XML, or no RSS, is an error whose text says why. No external entity is read.
[[nodiscard]] tl::expected<std::vector<RssItem>, std::string> parseRssFeed(std::string_view bytes);

} // namespace sweeply
