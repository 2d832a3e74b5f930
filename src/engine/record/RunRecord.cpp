#include "engine/record/RunRecord.h"

#include "engine/record/BytesJson.h"
#include "engine/record/NamedValue.h"
#include "formats/Utf8.h"

#include <algorithm>
#include <ctime>
#include <nlohmann/json.hpp>

namespace sweeply {

namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kFormat = "sweeply-run-";
constexpr const char* kVersion = "1";

std::string line(const char* key, Json value) { return Json{{key, std::move(value)}}.dump() + "\n"; }

RunHeader headerIn(const Json& json) {
    return {json.at("run").get<std::string>(),
            json.at("command").get<std::string>(),
            json.at("program").get<std::string>(),
            bytesIn(json.at("root")),
            bytesIn(json.at("user")),
            json.at("started").get<std::string>(),
            json.at("keepDays").get<unsigned>()};
}

KeptItem keptIn(const Json& json) {
    KeptItem item;
    item.number = json.at("number").get<std::uint32_t>();
    item.path = bytesIn(json.at("path"));
    item.module = json.at("module").get<std::string>();
    const auto kind = valueNamed(json.at("kind").get<std::string>(), ChangedKind::Receipt);
    if (!kind)
        throw std::invalid_argument("unknown kind");
    item.kind = *kind;
    item.size = json.at("size").get<std::uint64_t>();
    for (const auto& part : json.at("parts"))
        item.parts.push_back(bytesIn(part));
    for (const auto& parent : json.at("parents"))
        item.parents.push_back({bytesIn(parent.at("path")), parent.at("mode").get<mode_t>(),
                                parent.at("owner").get<uid_t>(), parent.at("group").get<gid_t>()});
    item.list = bytesIn(json.at("list"));
    return item;
}

RecordedItem itemIn(const Json& json) {
    RecordedItem item{bytesIn(json.at("path")), json.at("module").get<std::string>(),
                      json.at("kind").get<std::string>(), json.at("size").get<std::uint64_t>(),
                      json.at("outcome").get<std::string>()};
    if (!json.at("reason").is_null())
        item.reason = bytesIn(json.at("reason"));
    item.why = json.at("why").dump();
    item.number = json.value("number", 0U);
    item.remedy = valueNamed(json.value("remedy", std::string()), Remedy::Room).value_or(Remedy::None);
    return item;
}

void take(const Json& json, RunRecord& record) {
    if (!json.is_object() || json.empty())
        throw std::invalid_argument("no line of a record");
    const auto line = json.begin();
    const std::string& key = line.key();
    const Json& value = line.value();
    if (key == "keep") {
        record.kept.push_back(keptIn(value));
    } else if (key == "item") {
        record.items.push_back(itemIn(value));
    } else if (key == "restored") {
        record.restored.insert(value.get<std::uint32_t>());
    } else if (key == "purged") {
        record.purged.insert(value.get<std::uint32_t>());
    } else if (key == "end") {
        record.ended = value.at("ended").get<std::string>();
        record.sums = {value.at("removed").get<std::uint64_t>(), value.at("freed").get<std::uint64_t>(),
                       value.at("kept").get<std::uint64_t>(), value.at("failed").get<std::uint64_t>()};
    } else {
        throw std::invalid_argument("unknown line");
    }
}

void addUp(RunRecord& record) {
    for (const auto& item : record.items) {
        const auto is = [&](std::initializer_list<std::string_view> outcomes) {
            return std::ranges::find(outcomes, item.outcome) != outcomes.end();
        };
        record.sums.freed += is({"removed", "emptied", "slimmed", "erased"}) ? item.size : 0;
        record.sums.removed += is({"removed", "emptied", "slimmed", "erased", "forgotten", "taken-off"}) ? 1U : 0U;
        record.sums.kept += is({"kept"}) ? 1U : 0U;
        record.sums.failed += is({"changed", "refused", "failed", "occupied", "missing"}) ? 1U : 0U;
    }
}

} // namespace

const RecordedItem* RunRecord::itemOfKept(std::uint32_t number) const {
    const auto found = std::ranges::find(items, number, &RecordedItem::number);
    return number == 0 || found == items.end() ? nullptr : &*found;
}

std::string_view nameOf(Remedy remedy) {
    switch (remedy) {
    case Remedy::Administrator:
        return "administrator";
    case Remedy::WritableVolume:
        return "writable-volume";
    case Remedy::Room:
        return "room";
    case Remedy::None:
        break;
    }
    return {};
}

Remedy remedyFor(const Error& error) {
    switch (error.kind) {
    case ErrorKind::PermissionDenied:
        return Remedy::Administrator;
    case ErrorKind::ReadOnly:
        return Remedy::WritableVolume;
    case ErrorKind::NoSpace:
        return Remedy::Room;
    default:
        return Remedy::None;
    }
}

RecordedItem recordedItem(const ChangeReport& report) {
    RecordedItem item{report.path, std::string(report.module), std::string(nameOf(report.kind)), report.size,
                      std::string(nameOf(report.outcome.kind))};
    const auto& error = report.outcome.error;
    if (!report.outcome.isDone()) {
        item.reason = error.path == report.path ? error.reason : error.message();
        item.remedy = remedyFor(error);
    }
    item.why = evidenceText(report.why.get());
    return item;
}

std::string headerLine(const RunHeader& header) {
    return Json{{"format", std::string(kFormat) + kVersion},
                {"run", header.run},
                {"command", header.command},
                {"program", header.program},
                {"root", bytesJson(header.root)},
                {"user", bytesJson(header.user)},
                {"started", header.started},
                {"keepDays", header.keepDays}}
               .dump() +
           "\n";
}

std::string keepLine(const KeptItem& item) {
    Json parts = Json::array();
    for (const auto& part : item.parts)
        parts.push_back(bytesJson(part));
    Json parents = Json::array();
    for (const auto& parent : item.parents)
        parents.push_back({{"path", bytesJson(parent.path)},
                           {"mode", parent.mode},
                           {"owner", parent.owner},
                           {"group", parent.group}});
    return line("keep", {{"number", item.number},
                         {"path", bytesJson(item.path)},
                         {"module", item.module},
                         {"kind", nameOf(item.kind)},
                         {"size", item.size},
                         {"parts", parts},
                         {"parents", parents},
                         {"list", bytesJson(item.list)}});
}

std::string itemLine(const RecordedItem& item) {
    Json json{{"path", bytesJson(item.path)},
              {"module", item.module},
              {"kind", item.kind},
              {"size", item.size},
              {"outcome", item.outcome},
              {"reason", item.reason ? bytesJson(*item.reason) : Json(nullptr)},
              {"why", Json::parse(item.why)}};
    if (item.number != 0)
        json["number"] = item.number;
    if (item.remedy != Remedy::None)
        json["remedy"] = nameOf(item.remedy);
    return line("item", std::move(json));
}

std::string endLine(const std::string& ended, const RunSums& sums) {
    return line("end", {{"ended", ended},
                        {"removed", sums.removed},
                        {"freed", sums.freed},
                        {"kept", sums.kept},
                        {"failed", sums.failed}});
}

std::string restoredLine(std::uint32_t number) { return line("restored", number); }

std::string purgedLine(std::uint32_t number) { return line("purged", number); }

std::string evidenceText(const Evidence* why) {
    if (!why)
        return "null";
    Json claims = Json::array();
    for (const auto& path : why->alsoClaimedBy)
        claims.push_back(validUtf8(path));
    return Json{{"rule", nameOf(why->rule)},
                {"term", why->term.empty() ? Json(nullptr) : Json(validUtf8(why->term))},
                {"strength", nameOf(why->strength)},
                {"alsoClaimedBy", claims}}
        .dump();
}

Result<RunRecord> parseRunRecord(std::string_view bytes) {
    const auto damaged = [](const std::string& reason) {
        return Failure(Error{ErrorKind::Damaged, {}, "no record of a run: " + reason});
    };
    RunRecord record;
    std::size_t number = 0;
    while (!bytes.empty()) {
        const auto end = bytes.find('\n');
        if (end == std::string_view::npos)
            break; // cut short: what it was to tell had not happened yet
        ++number;
        const auto json = Json::parse(bytes.substr(0, end), nullptr, false);
        bytes.remove_prefix(end + 1);
        if (!json.is_object() || json.empty())
            return damaged("line " + std::to_string(number) + " is damaged");
        try {
            if (number > 1) {
                take(json, record);
                continue;
            }
            const auto format = json.at("format").get<std::string>();
            if (format.starts_with(kFormat) && format != std::string(kFormat) + kVersion)
                return Failure(Error{ErrorKind::Unavailable, {}, "the record of a newer program"});
            if (!format.starts_with(kFormat))
                return damaged("it does not begin like one");
            record.header = headerIn(json);
        } catch (const std::exception&) {
            return damaged("line " + std::to_string(number) + " is damaged");
        }
    }
    if (number == 0)
        return damaged("it is empty");
    if (!record.ended)
        addUp(record);
    return record;
}

std::string timeText(std::int64_t secondsSince1970) {
    const auto time = static_cast<std::time_t>(secondsSince1970);
    std::tm parts{};
    gmtime_r(&time, &parts);
    char text[32];
    return {text, std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &parts)};
}

std::optional<std::int64_t> timeIn(const std::string& text) {
    std::tm parts{};
    const char* end = ::strptime(text.c_str(), "%Y-%m-%dT%H:%M:%SZ", &parts);
    if (!end || *end != '\0')
        return std::nullopt;
    return static_cast<std::int64_t>(::timegm(&parts));
}

} // namespace sweeply
