#include "cli/TextStyle.h"

#include "engine/tree/EvidenceText.h"
#include "formats/DisplayEscapes.h"
#include "platform/DisplayWidth.h"
#include "platform/TargetPath.h"

#include <algorithm>
#include <cstdlib>
#include <ostream>

namespace sweeply {

namespace {

constexpr std::size_t kSizeColumn = 12;
constexpr std::size_t kBetweenColumns = 2;
constexpr const char* kBold = "\x1B[1m";
constexpr const char* kDim = "\x1B[2m";
constexpr const char* kPlain = "\x1B[m";

bool environmentWantsColor() {
    const auto variable = [](const char* name) {
        const char* value = std::getenv(name);
        return std::string_view(value ? value : "");
    };
    return variable("NO_COLOR").empty() && !variable("TERM").empty() && variable("TERM") != "dumb";
}

bool isPath(std::string_view name) { return name.starts_with('/') || name.starts_with("~/"); }

} // namespace

TextStyle TextStyle::of(const Terminal& terminal, ColorWhen color) {
    TextStyle style;
    style.alignsColumns = terminal.isOutputTerminal;
    style.foldsLongRuns = terminal.isOutputTerminal;
    style.hasColor = color == ColorWhen::Always ||
                     (color == ColorWhen::Auto && terminal.isOutputTerminal && environmentWantsColor());
    return style;
}

std::string TextStyle::heading(std::string_view text) const {
    return hasColor ? kBold + std::string(text) + kPlain : std::string(text);
}

std::string TextStyle::name(std::string_view name) const {
    const std::size_t folder = isPath(name) ? name.size() - lastPathComponent(name).size() : 0;
    if (!hasColor || folder == 0 || folder == name.size())
        return escapedForDisplay(name);
    return kDim + escapedForDisplay(name.substr(0, folder)) + kPlain + escapedForDisplay(name.substr(folder));
}

std::string noteOn(const TextStyle& style, const Evidence& evidence, bool isChecked) {
    std::string note = style.tellsReasons ? sentenceFor(evidence) : std::string();
    if (const auto reason = isChecked ? std::string() : reasonAgainstChecking(evidence); !reason.empty())
        note += (note.empty() ? "" : " ") + reason;
    note = escapedForDisplay(note);
    return style.hasColor && !note.empty() ? kDim + note + kPlain : note;
}

void printColumns(std::ostream& output, const TextStyle& style, const std::vector<std::vector<std::string>>& rows) {
    std::vector<std::size_t> widths;
    for (const auto& row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (std::size_t column = 0; style.alignsColumns && column < row.size(); ++column)
            widths[column] = std::max(widths[column], displayWidth(escapedForDisplay(row[column])));
    }
    for (const auto& row : rows) {
        for (std::size_t column = 0; column < row.size(); ++column) {
            output << style.name(row[column]);
            if (column + 1 == row.size())
                break;
            if (style.alignsColumns)
                output << std::string(widths[column] - displayWidth(escapedForDisplay(row[column])) + kBetweenColumns,
                                      ' ');
            else
                output << '\t';
        }
        output << '\n';
    }
}

void printSized(std::ostream& output, std::string_view size, std::string_view text) {
    const std::size_t width = displayWidth(size);
    output << std::string(width < kSizeColumn ? kSizeColumn - width : 0, ' ') << size << "  " << text << '\n';
}

} // namespace sweeply
