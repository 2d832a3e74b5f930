#include "appcore/changes/Change.h"

#include <array>

namespace sweeply {

std::string_view nameOf(ChangedKind kind) {
    static constexpr std::array<std::string_view, 8> kNames{"file",   "folder",      "link",       "log",
                                                            "slices", "launch-item", "login-item", "receipt"};
    return kNames.at(static_cast<std::size_t>(kind));
}

std::string_view nameOf(OutcomeKind kind) {
    static constexpr std::array<std::string_view, 11> kNames{"removed", "kept",      "emptied",   "slimmed",
                                                             "erased",  "forgotten", "taken-off", "gone",
                                                             "changed", "refused",   "failed"};
    return kNames.at(static_cast<std::size_t>(kind));
}

ChangedKind changedKindOf(ItemKind kind) {
    switch (kind) {
    case ItemKind::Folder:
        return ChangedKind::Folder;
    case ItemKind::Link:
        return ChangedKind::Link;
    default:
        return ChangedKind::File;
    }
}

void ChangeSums::add(OutcomeKind outcome, std::uint64_t size) {
    switch (outcome) {
    case OutcomeKind::Removed:
    case OutcomeKind::Emptied:
    case OutcomeKind::Slimmed:
    case OutcomeKind::Erased:
        freed += size;
        [[fallthrough]];
    case OutcomeKind::Forgotten:
    case OutcomeKind::TakenOff:
        ++removed;
        break;
    case OutcomeKind::Kept:
        ++kept;
        keptSize += size;
        break;
    case OutcomeKind::Gone:
        break;
    case OutcomeKind::Changed:
    case OutcomeKind::Refused:
    case OutcomeKind::Failed:
        ++failed;
        break;
    }
}

} // namespace sweeply
