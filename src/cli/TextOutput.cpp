#include "cli/TextOutput.h"

#include "platform/Localization.h"

#include <algorithm>
#include <functional>
#include <ostream>

namespace sweeply {

namespace {

/// A run of more items than this is folded, down to its largest.
constexpr std::size_t kLongRun = 24;
constexpr std::size_t kShownOfLongRun = 20;

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

/// Writes the trees of modules, a line for each node.
class ResultList final {
  public:
    ResultList(const TextStyle& style, SizeUnits units, std::ostream& output)
        : m_style(style), m_units(units), m_output(output) {}

    void printModule(const ShownModule& shown) const {
        const Node& root = *shown.module.rootNode();
        printLine(root, 0, m_style.heading(shown.title));
        printChildren(root, 1);
    }

  private:
    void printLine(const Node& node, std::size_t depth, const std::string& text) const {
        printSized(m_output, stringSizeFromLong(node.longSize(), m_units),
                   indentation(depth) + markFor(node.state()) + " " + text);
    }
    void printItem(const Node& item, std::size_t depth) const {
        printLine(item, depth, m_style.name(item.name()));
        if (item.hasChildren() || !item.evidence())
            return;
        if (const auto note = noteOn(m_style, *item.evidence(), item.ifEnabled()); !note.empty())
            printSized(m_output, {}, indentation(depth + 1) + note);
    }
    void printChildren(const Node& parent, std::size_t depth) const {
        auto children = parent.children();
        if (std::ranges::none_of(children, &Node::hasChildren)) { // items, not groups: the large ones are of interest
            std::ranges::stable_sort(children, std::ranges::greater(), &Node::longSize);
            printItems(children, depth);
            return;
        }
        for (const auto& child : children) {
            printItem(*child, depth);
            printChildren(*child, depth + 1);
        }
    }
    /// What stays is always shown, however much of it there is: only of what goes the smallest may be left out.
    void printItems(const std::vector<Node::Pointer>& items, std::size_t depth) const {
        const auto isChecked = [](const Node::Pointer& item) { return item->state() == CheckState::Checked; };
        const auto checkedCount = static_cast<std::size_t>(std::ranges::count_if(items, isChecked));
        const bool folds = m_style.foldsLongRuns && checkedCount > kLongRun;
        std::size_t seen = 0;
        std::uint64_t hiddenSize = 0;
        for (const auto& item : items) {
            if (folds && isChecked(item) && ++seen > kShownOfLongRun)
                hiddenSize += item->longSize();
            else
                printItem(*item, depth);
        }
        if (folds)
            printSized(m_output, {},
                       indentation(depth) + markFor(CheckState::Checked) + " " +
                           localizedFormat("and %i more, %@; --all-items shows them",
                                           {checkedCount - kShownOfLongRun, stringSizeFromLong(hiddenSize, m_units)}));
    }
    static std::string indentation(std::size_t depth) { return std::string(depth * 4, ' '); }

    const TextStyle& m_style;
    const SizeUnits m_units;
    std::ostream& m_output;
};

} // namespace

void printResults(Application& application, const std::vector<ShownModule>& modules, const TextStyle& style,
                  std::ostream& output) {
    std::lock_guard lock(application.treeLock());
    const ResultList list(style, application.units(), output);
    for (const auto& shown : modules)
        list.printModule(shown);
}

void printScan(Application& application, const TextStyle& style, std::ostream& output) {
    const auto modules = shownModules(application);
    printResults(application, modules, style, output);
    printFound(totalsOf(modules).foundSize, application.units(), output);
}

void printFound(std::uint64_t size, SizeUnits units, std::ostream& output) {
    output << localizedFormat("Sweeply can clean %@ from your Mac!", {stringSizeFromLong(size, units)}) << "\n";
}

void printRemoved(const ChangeSums& sums, std::uint64_t freed, SizeUnits units, std::ostream& output) {
    if (sums.kept > 0)
        output << localizedFormat("%i items are kept; \"undo\" puts them back.", {sums.kept}) << "\n";
    if (sums.removed > 0)
        output << localizedFormat("Sweeply has cleaned %@ from your Mac!", {stringSizeFromLong(freed, units)}) << "\n";
}

} // namespace sweeply
