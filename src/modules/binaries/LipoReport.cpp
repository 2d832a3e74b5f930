#include "modules/binaries/LipoReport.h"

#include "platform/Localization.h"
#include "platform/StringExtras.h"
#include "platform/SystemLog.h"

#include <algorithm>
#include <charconv>

namespace sweeply {

namespace {

constexpr std::string_view kFatFile = "Fat header in: ";
constexpr std::string_view kSlice = "architecture";

std::vector<std::string_view> linesOf(std::string_view text) {
    std::vector<std::string_view> lines;
    while (true) {
        const auto end = text.find('\n');
        lines.push_back(text.substr(0, end));
        if (end == std::string_view::npos)
            return lines;
        text.remove_prefix(end + 1);
    }
}

std::uint64_t numberAtTheEndOf(std::string_view line) {
    const auto space = line.rfind(' ');
    const auto digits = space == std::string_view::npos ? line : line.substr(space + 1);
    std::uint64_t number = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return number;
}

/// The bytes to be freed of one file; `text` is what was said about it, without its heading.
std::uint64_t foreignBytesIn(std::string_view text, const std::vector<std::string>& keptSlices, SystemLog& log) {
    std::uint64_t bytes = 0;
    for (auto at = text.find(kSlice); at != std::string_view::npos;) {
        const auto next = text.find(kSlice, at + kSlice.size());
        const auto lines = linesOf(text.substr(at + kSlice.size(), next - at - kSlice.size()));
        at = next;
        constexpr std::size_t kSizeLine = 4;
        if (lines.size() <= kSizeLine)
            log.log(formatText("Failed to parse output from lipo %@", {lines.front()}));
        else if (std::ranges::find(keptSlices, trimWhiteSpace(lines.front())) == keptSlices.end())
            bytes += numberAtTheEndOf(lines[kSizeLine]);
    }
    return bytes;
}

} // namespace

std::map<std::string, std::uint64_t> foreignBytesOfFiles(std::string_view output,
                                                         const std::vector<std::string>& keptSlices, SystemLog& log) {
    std::map<std::string, std::uint64_t> found;
    for (auto at = output.find(kFatFile); at != std::string_view::npos;) {
        const auto next = output.find(kFatFile, at + kFatFile.size());
        const auto section = output.substr(at + kFatFile.size(), next - at - kFatFile.size());
        at = next;
        const auto endOfName = std::min(section.find('\n'), section.size());
        found[std::string(section.substr(0, endOfName))] = foreignBytesIn(section.substr(endOfName), keptSlices, log);
    }
    return found;
}

} // namespace sweeply
