#pragma once

#include "engine/tree/Evidence.h"
#include "platform/Error.h"
#include "platform/ItemIdentity.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sweeply {

/// What is to be done with an item.
enum class Operation : std::uint8_t {
    Remove,
    Keep,      ///< take it away so that it can be put back
    Overwrite, ///< and remove
    Empty,
    Slim,
    TakeOffList,
    ForgetReceipt,
};

/// What an item is to a person; later kinds are no items of a folder.
enum class ChangedKind : std::uint8_t { File, Folder, Link, Log, Slices, LaunchItem, LoginItem, Receipt };

enum class OutcomeKind : std::uint8_t {
    Removed,
    Kept,
    Emptied,
    Slimmed,
    Erased,
    Forgotten,
    TakenOff,
    Gone,    ///< it was not there any more
    Changed, ///< it is not what was seen, and was not touched
    Refused, ///< it is protected
    Failed,
};

/// "login-item", "taken-off" and so on: the words of records and scripts, which never change.
[[nodiscard]] std::string_view nameOf(ChangedKind kind);
[[nodiscard]] std::string_view nameOf(OutcomeKind kind);
/// The kind of an item that is nothing but itself.
[[nodiscard]] ChangedKind changedKindOf(ItemKind kind);

/// One item and what is to be done with it.
struct ChangeRequest {
    Operation operation = Operation::Remove;
    /// An absolute target path; of a receipt its identifier.
    std::string path;
    ChangedKind kind = ChangedKind::File;
    /// What is acted on where that is not the path itself: entries of it, or several folders that make one item.
    std::vector<std::string> parts = {};
    bool hasParts = false;
    /// Of what should be among the parts something could not be found out.
    std::optional<Error> obstacle = {};
    /// What it must be; not checked where nobody looked. Of the path, or else of the parts together.
    ItemIdentity seen = {};
    bool isSeenByParts = false;
    std::uint64_t size = 0;               ///< bytes that its removal frees
    std::vector<std::string> slices = {}; ///< that stay when it is slimmed
    std::string_view module = {};         ///< by its name on the command line; a constant
    SharedEvidence why = {};
};

struct ChangeOutcome {
    OutcomeKind kind = OutcomeKind::Failed;
    Error error = {}; ///< why not, unless it is done

    /// Is the item dealt with, so that no list need show it any longer?
    [[nodiscard]] bool isDone() const { return kind < OutcomeKind::Changed; }
    /// Is its size free now?
    [[nodiscard]] bool frees() const {
        return kind == OutcomeKind::Removed || kind == OutcomeKind::Emptied || kind == OutcomeKind::Slimmed ||
               kind == OutcomeKind::Erased;
    }
};

/// A request that is not to be carried out, and why not.
struct LeftAlone {
    ChangeRequest request;
    ChangeOutcome outcome;
};

/// A change as it was asked for and as it went.
struct ChangeReport {
    std::string path;
    std::string_view module;
    ChangedKind kind;
    std::uint64_t size;
    ChangeOutcome outcome;
    SharedEvidence why;
};

/// How the changes of a run went.
struct ChangeSums {
    std::uint64_t removed = 0; ///< items that are gone, in whatever way, but not kept
    std::uint64_t freed = 0;   ///< bytes
    std::uint64_t kept = 0;    ///< items
    std::uint64_t keptSize = 0;
    std::uint64_t failed = 0;

    void add(OutcomeKind outcome, std::uint64_t size);
};

} // namespace sweeply
