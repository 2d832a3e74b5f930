#include "cli/Commands.h"
#include "cli/JsonOutput.h"
#include "cli/Session.h"
#include "cli/TargetPaths.h"
#include "cli/TextOutput.h"
#include "engine/PuttingBack.h"
#include "formats/Utf8.h"
#include "platform/Localization.h"

#include <algorithm>
#include <iostream>
#include <nlohmann/json.hpp>
#include <span>

namespace sweeply {

namespace {

Json itemsJson(const std::vector<RecordedItem>& items) {
    Json list = Json::array();
    for (const auto& item : items)
        list.push_back(itemJson(item));
    return list;
}

Json runJson(const RunRecord& record, const std::string& state) {
    return {{"run", record.header.run},
            {"command", record.header.command},
            {"started", record.header.started},
            {"ended", record.ended ? Json(*record.ended) : Json(nullptr)},
            {"removed", record.sums.removed},
            {"freed", record.sums.freed},
            {"kept", record.sums.kept},
            {"failed", record.sums.failed},
            {"state", state}};
}

std::vector<std::string> runRow(const RunRecord& record, const std::string& state, SizeUnits units) {
    return {
        record.header.run, record.header.command, stringSizeFromLong(record.sums.freed, units),
        localizedFormat("%i removed, %i kept, %i failed", {record.sums.removed, record.sums.kept, record.sums.failed}),
        state};
}

/// One line for each item that did not go as it was meant to.
template<typename Items>
void complainOf(const Session& session, const Items& items, std::string_view done) {
    for (const auto& item : items) {
        if (item.outcome != done)
            session.complain(item.path + ": " + item.outcome + (item.reason ? ": " + *item.reason : std::string()));
    }
}

ExitCode showRun(Session& session, const std::string& run) {
    auto& runs = session.application().runs();
    auto found = runs.record(run);
    if (!found) {
        session.complain(found.error().message());
        return ExitCode::Usage;
    }
    const auto record = runs.completed(*std::move(found));
    const auto state = runs.stateOf(record);
    const auto units = session.application().units();
    if (session.commandLine().wantsJson) {
        auto json = runJson(record, state);
        json["items"] = itemsJson(record.items);
        session.print(json);
        return ExitCode::Done;
    }
    printColumns(std::cout, session.style(), {runRow(record, state, units)});
    std::vector<std::vector<std::string>> rows;
    for (const auto& item : record.items)
        rows.push_back({item.outcome, stringSizeFromLong(item.size, units), item.path, item.reason.value_or("")});
    printColumns(std::cout, session.style(), rows);
    return ExitCode::Done;
}

/// What a person named: paths of the target, and what is no path as it is (receipts have identifiers).
Result<std::vector<std::string>> namedItems(const Target& target, std::span<const std::string> operands) {
    std::vector<std::string> items;
    for (const auto& operand : operands) {
        const bool isPath = operand.find('/') != std::string::npos || operand.starts_with('~');
        auto paths = isPath ? targetPaths(target, {operand}) : std::vector{operand};
        if (!paths)
            return Failure(paths.error());
        items.push_back(std::move(paths->front()));
    }
    return items;
}

ExitCode refuse(const Session& session, const Error& error) {
    session.complain(error.message());
    return error.kind == ErrorKind::Unavailable || error.kind == ErrorKind::NoSpace ? ExitCode::Incomplete
                                                                                    : ExitCode::Usage;
}

ExitCode nothingToUndo(const Session& session) {
    session.complain("there is nothing to undo");
    return ExitCode::Incomplete;
}

} // namespace

ExitCode runHistory(Session& session) {
    auto& runs = session.application().runs();
    runs.setReport([&session](const Error& error) { session.complain(error.message()); });
    if (!session.commandLine().operands.empty())
        return showRun(session, session.commandLine().operands.front());
    Json list = Json::array();
    std::vector<std::vector<std::string>> rows;
    for (auto& found : runs.records()) {
        const auto record = runs.completed(std::move(found));
        const auto state = runs.stateOf(record);
        list.push_back(runJson(record, state));
        rows.push_back(runRow(record, state, session.application().units()));
    }
    if (session.commandLine().wantsJson)
        session.print({{"runs", list}});
    else
        printColumns(std::cout, session.style(), rows);
    return ExitCode::Done;
}

ExitCode runKept(Session& session) {
    auto& runs = session.application().runs();
    runs.setReport([&session](const Error& error) { session.complain(error.message()); });
    const auto units = session.application().units();
    Json list = Json::array();
    std::vector<std::vector<std::string>> rows;
    std::uint64_t total = 0;
    for (const auto& [run, item, until] : runs.kept()) {
        list.push_back({{"run", run}, {"path", validUtf8(item.path)}, {"size", item.size}, {"until", until}});
        rows.push_back({run, stringSizeFromLong(item.size, units), until, item.path});
        total += item.size;
    }
    if (session.commandLine().wantsJson)
        session.print({{"kept", list}, {"total", total}, {"totalText", stringSizeFromLong(total, units)}});
    else
        printColumns(std::cout, session.style(), rows);
    return ExitCode::Done;
}

ExitCode runUndo(Session& session) {
    auto& application = session.application();
    auto& runs = application.runs();
    runs.setReport([&session](const Error& error) { session.complain(error.message()); });
    std::span<const std::string> operands = session.commandLine().operands;
    std::string run;
    if (!operands.empty() && operands.front().find('/') == std::string::npos && !operands.front().starts_with('~')) {
        run = operands.front();
        operands = operands.subspan(1);
    } else if (const auto kept = runs.kept(); !kept.empty()) {
        run = kept.front().run;
    } else {
        if (session.commandLine().wantsJson)
            session.print({{"run", nullptr}, {"restored", 0}, {"items", Json::array()}});
        return nothingToUndo(session);
    }
    const auto paths = namedItems(application.target(), operands);
    if (!paths)
        return refuse(session, paths.error());
    const auto undone = putBack(runs, application.authorisation(), run, *paths);
    if (!undone)
        return refuse(session, undone.error());
    const auto restored = std::ranges::count(*undone, "restored", &UndoneItem::outcome);
    if (session.commandLine().wantsJson) {
        Json items = Json::array();
        for (const auto& item : *undone)
            items.push_back({{"path", validUtf8(item.path)},
                             {"outcome", item.outcome},
                             {"reason", item.reason ? Json(validUtf8(*item.reason)) : Json(nullptr)}});
        session.print({{"run", run}, {"restored", restored}, {"items", items}});
    } else if (restored > 0) {
        std::cout << localizedFormat("%i items are back in their places.", {static_cast<std::int64_t>(restored)})
                  << "\n";
    }
    if (undone->empty())
        return nothingToUndo(session);
    complainOf(session, *undone, "restored");
    return restored == std::ssize(*undone) ? ExitCode::Done : ExitCode::Incomplete;
}

ExitCode runPurge(Session& session) {
    const CommandLine& line = session.commandLine();
    auto& runs = session.application().runs();
    runs.setReport([&session](const Error& error) { session.complain(error.message()); });
    if (line.operands.empty() && !line.purgesAll && !line.purgesExpired) {
        session.complain("say which: RUN..., --all, or --expired");
        return ExitCode::Usage;
    }
    for (const auto& run : line.operands) {
        if (const auto record = runs.record(run); !record)
            return refuse(session, record.error());
    }
    auto entries = line.purgesExpired ? runs.expired() : runs.kept();
    if (!line.operands.empty())
        std::erase_if(entries, [&](const KeptEntry& entry) {
            return std::ranges::find(line.operands, entry.run) == line.operands.end();
        });
    const auto purged = entries.empty() ? std::vector<RecordedItem>() : runs.purge(entries);
    if (!purged)
        return refuse(session, purged.error());
    std::uint64_t freed = 0;
    for (const auto& item : *purged)
        freed += item.outcome == "removed" ? item.size : 0;
    const auto text = stringSizeFromLong(freed, session.application().units());
    if (line.wantsJson)
        session.print({{"run", runs.run() ? Json(*runs.run()) : Json(nullptr)},
                       {"freed", freed},
                       {"freedText", text},
                       {"items", itemsJson(*purged)}});
    else
        std::cout << localizedFormat("%@ of what was kept is gone for good.", {text}) << "\n";
    complainOf(session, *purged, "removed");
    return std::ranges::all_of(*purged, [](const auto& item) { return item.outcome == "removed"; })
               ? ExitCode::Done
               : ExitCode::Incomplete;
}

} // namespace sweeply
