#include "cli/TextOutput.h"

#include "platform/Localization.h"

#include <algorithm>
#include <functional>
#include <iomanip>
#include <ostream>

namespace sweeply {

namespace {

constexpr int kSizeColumn = 12;

const char* markFor(CheckState state) {
    switch (state) {
    case CheckState::Checked:
        return "[x]";
    case CheckState::Mixed:
        return "[-]";
    case CheckState::Unchecked:
        break;
    }
    return "[ ]";
}

/// Names go as they are to a file or another program, and made harmless to a terminal.
std::string shown(std::string_view name, const Terminal& terminal) {
    return terminal.isOutputTerminal ? safeForTerminal(name) : std::string(name);
}

void printNode(const Node& node, int depth, SizeUnits units, const Terminal& terminal, std::ostream& output) {
    const std::string indent(static_cast<std::size_t>(depth) * 4, ' ');
    printSized(output, stringSizeFromLong(node.longSize(), units),
               indent + markFor(node.state()) + " " + shown(node.name(), terminal));
    auto children = node.children();
    if (std::ranges::none_of(children, &Node::hasChildren)) // items, not groups: the large ones are of interest
        std::ranges::stable_sort(children, std::ranges::greater(), &Node::longSize);
    for (const auto& child : children)
        printNode(*child, depth + 1, units, terminal, output);
}

} // namespace

void printSized(std::ostream& output, const std::string& size, const std::string& text) {
    output << std::setw(kSizeColumn) << size << "  " << text << "\n";
}

void printResults(Application& application, const std::vector<ShownModule>& modules, const Terminal& terminal,
                  std::ostream& output) {
    std::lock_guard lock(application.treeLock());
    for (const auto& shown : modules)
        printNode(*shown.module.rootNode(), 0, application.units(), terminal, output);
}

void printScan(Application& application, const Terminal& terminal, std::ostream& output) {
    const auto modules = shownModules(application);
    printResults(application, modules, terminal, output);
    output << localizedFormat("Sweeply can clean %@ from your Mac!",
                              {stringSizeFromLong(totalsOf(modules).foundSize, application.units())})
           << "\n";
}

} // namespace sweeply
