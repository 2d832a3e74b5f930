#include "appcore/receipts/ReceiptFiles.h"

#include "platform/TargetPath.h"

#include <algorithm>
#include <array>
#include <unordered_set>

namespace sweeply {

namespace {

constexpr std::array<std::string_view, 3> kKnownBundlesExtensions{"framework", "plugin", "app"};

/// The shortest beginning of the line, without its first character, that ends in a component with a point and something
/// after it: "/Applications/Foo.app" of "./Applications/Foo.app/Contents". Empty for none. Before that component there
/// is at least one other.
std::string_view leadingBundle(std::string_view line) {
    if (line.size() < 2)
        return {};
    const std::string_view text = line.substr(1);
    // ".(.*?/.+?\..+?)/": a slash, something, a point, something, and then a slash.
    const auto slash = text.find('/');
    if (slash == std::string_view::npos)
        return {};
    const auto point = text.find('.', slash + 2);
    if (point == std::string_view::npos)
        return {};
    const auto end = text.find('/', point + 2);
    return end == std::string_view::npos ? std::string_view() : text.substr(0, end);
}

bool leadsOut(std::string_view path) {
    return path.find("/../") != std::string_view::npos || path.ends_with("/..") || path.starts_with("../");
}

std::string below(const std::string& basedir, std::string_view rest) {
    return normalisedPath(basedir + "/" + std::string(rest));
}

} // namespace

std::vector<std::string> processReceiptsOutput(const std::vector<std::string>& lines, const Package& package,
                                               bool filtered,
                                               const std::function<bool(const std::string& path)>& isApplication) {
    std::vector<std::string> entries;
    std::unordered_set<std::string> bundles;
    for (const auto& line : lines) {
        if (line.find(kReceiptEntry) != std::string::npos) {
            entries.push_back(line);
            continue;
        }
        if (line.empty() || line == "." || leadsOut(line))
            continue;
        if (filtered) {
            if (const auto bundle = leadingBundle(line); !bundle.empty()) {
                std::string path = below(package.basedir, bundle);
                if (bundles.contains(path))
                    continue;
                const auto extension = pathExtension(path);
                if (std::ranges::find(kKnownBundlesExtensions, extension) != kKnownBundlesExtensions.end() ||
                    isApplication(path)) {
                    bundles.insert(path);
                    entries.push_back(std::move(path));
                    continue;
                }
            }
        }
        if (line.size() >= 3) // its first character is the point of "./"
            entries.push_back(below(package.basedir, std::string_view(line).substr(1)));
    }
    return entries;
}

} // namespace sweeply
