#pragma once

#include "appcore/changes/KeptItem.h"
#include "platform/Error.h"

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace sweeply {

/// What a record begins with.
struct RunHeader {
    std::string run; ///< "20261124T050000Z-k3x9"
    std::string command;
    std::string program; ///< its version
    std::string root;
    std::string user;
    std::string started;   ///< "2026-11-24T05:00:00Z"
    unsigned keepDays = 0; ///< how long what it kept is to be kept
};

/// What would help an item that stayed to go.
enum class Remedy : std::uint8_t { None, Administrator, WritableVolume, Room };

/// "administrator" and so on: the words of records, which never change. Empty for none.
[[nodiscard]] std::string_view nameOf(Remedy remedy);
[[nodiscard]] Remedy remedyFor(const Error& error);

/// One item of a run, in the words of the record.
struct RecordedItem {
    std::string path;
    std::string module;
    std::string kind;
    std::uint64_t size = 0;
    std::string outcome;
    std::optional<std::string> reason = {};
    std::string why = "null"; ///< JSON
    /// Of the kept item that it is about: in its own record, or, where it was put back or purged, in that of `of`.
    std::uint32_t number = 0;
    Remedy remedy = Remedy::None;
};

/// A change as its record tells of it.
[[nodiscard]] RecordedItem recordedItem(const ChangeReport& report);

/// The figures of a run, as its record ends with.
struct RunSums {
    std::uint64_t removed = 0;
    std::uint64_t freed = 0; ///< bytes
    std::uint64_t kept = 0;
    std::uint64_t failed = 0;
};

/// A run as its record tells of it. A record is a file of lines, one JSON object each, that is only appended to: the
/// header, a line before each item that is kept, one after each item, one at the end of the run, and whatever later
/// becomes of the kept items.
struct RunRecord {
    RunHeader header;
    std::vector<RecordedItem> items;
    std::vector<KeptItem> kept; ///< or about to be kept when the run ended before its time
    std::set<std::uint32_t> restored;
    std::set<std::uint32_t> purged;
    std::optional<std::string> ended; ///< when; absent for a run that was interrupted
    RunSums sums;                     ///< of the items where it was

    [[nodiscard]] const RecordedItem* itemOfKept(std::uint32_t number) const;
};

// The lines, each with its line end. Paths are bytes and come back as they were.

[[nodiscard]] std::string headerLine(const RunHeader& header);
[[nodiscard]] std::string keepLine(const KeptItem& item);
[[nodiscard]] std::string itemLine(const RecordedItem& item);
[[nodiscard]] std::string endLine(const std::string& ended, const RunSums& sums);
[[nodiscard]] std::string restoredLine(std::uint32_t number);
[[nodiscard]] std::string purgedLine(std::uint32_t number);

/// Why an item was listed, as scripts read it.
[[nodiscard]] std::string evidenceText(const Evidence* why);

/// Reads a record. A last line that was cut short is left out. Damaged, without a path, for what is no record;
/// Unavailable for one of a newer program.
[[nodiscard]] Result<RunRecord> parseRunRecord(std::string_view bytes);

/// "2026-11-24T05:00:00Z", and back; nothing for another text.
[[nodiscard]] std::string timeText(std::int64_t secondsSince1970);
[[nodiscard]] std::optional<std::int64_t> timeIn(const std::string& text);

} // namespace sweeply
