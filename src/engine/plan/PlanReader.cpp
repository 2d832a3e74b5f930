#include "engine/plan/Plan.h"
#include "engine/plan/PlanFormat.h"
#include "engine/plan/StrictJson.h"
#include "engine/record/BytesJson.h"
#include "engine/record/NamedValue.h"
#include "engine/record/RunRecord.h"

#include <algorithm>
#include <limits>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <unordered_map>

namespace sweeply {

namespace {

using Json = nlohmann::ordered_json;

/// What is wrong with a plan, for its author.
struct Flaw : std::runtime_error {
    using std::runtime_error::runtime_error;
};

Flaw wrongField(const char* name, const std::string& reason) {
    return Flaw("\"" + std::string(name) + "\": " + reason);
}

// The fields of an object, each of one type

const Json& field(const Json& object, const char* name) {
    const auto found = object.find(name);
    if (found == object.end())
        throw wrongField(name, "is missing");
    return *found;
}

std::string text(const Json& object, const char* name) {
    const auto& value = field(object, name);
    if (!value.is_string())
        throw wrongField(name, "is no text");
    return value.get<std::string>();
}

std::string nonEmptyBytes(const Json& value, const char* name) {
    try {
        auto bytes = bytesIn(value);
        if (bytes.empty() || bytes.find('\0') != std::string::npos)
            throw std::invalid_argument("is empty, or has a zero byte");
        return bytes;
    } catch (const std::invalid_argument& error) {
        throw wrongField(name, error.what());
    }
}

bool flag(const Json& object, const char* name) {
    const auto& value = field(object, name);
    if (!value.is_boolean())
        throw wrongField(name, "is neither true nor false");
    return value.get<bool>();
}

template<typename Number>
Number number(const Json& object, const char* name) {
    const auto& value = field(object, name);
    if (!value.is_number_unsigned() || value.get<std::uint64_t>() > std::numeric_limits<Number>::max())
        throw wrongField(name, "is no whole number, or too large");
    return value.get<Number>();
}

template<typename Value>
Value oneOf(const Json& object, const char* name, Value last) {
    const auto value = valueNamed(text(object, name), last);
    if (!value)
        throw wrongField(name, "is none of the words that it may be");
    return *value;
}

const Json& object(const Json& value, const char* name) {
    if (!value.is_object())
        throw wrongField(name, "is no object");
    return value;
}

const Json& list(const Json& parent, const char* name) {
    const auto& value = field(parent, name);
    if (!value.is_array())
        throw wrongField(name, "is no list");
    return value;
}

// The parts of a plan

std::optional<Evidence> evidenceIn(const Json& why) {
    if (why.is_null())
        return std::nullopt;
    object(why, "why");
    Evidence evidence{oneOf(why, "rule", EvidenceRule::Named), oneOf(why, "strength", EvidenceStrength::Certain)};
    if (!field(why, "term").is_null())
        evidence.term = text(why, "term");
    for (const auto& claimant : list(why, "alsoClaimedBy")) {
        if (!claimant.is_string())
            throw wrongField("alsoClaimedBy", "has something else than texts");
        evidence.alsoClaimedBy.push_back(claimant.get<std::string>());
    }
    return evidence;
}

MeasuredItem seenIn(const Json& seen) {
    if (seen.is_null())
        return {};
    MeasuredItem item{number<std::uint64_t>(object(seen, "seen"), "size")};
    auto& identity = item.identity;
    identity.kind = oneOf(seen, "kind", ItemKind::Other);
    identity.entries = number<std::uint32_t>(seen, "entries");
    identity.trace = number<std::uint16_t>(seen, "trace");
    const auto time = exactTimeIn(text(seen, "newestChange"));
    if (!time)
        throw wrongField("newestChange", "is no time like \"2026-11-24T05:00:00.123456789Z\"");
    identity.newestChange = *time;
    return item;
}

PlannedItem itemIn(const Json& json) {
    object(json, "items");
    PlannedItem item;
    item.path = nonEmptyBytes(field(json, "path"), "path");
    item.module = text(json, "module");
    item.kind = oneOf(json, "kind", ChangedKind::Receipt);
    item.size = number<std::uint64_t>(json, "size");
    item.isChecked = flag(json, "checked");
    item.why = evidenceIn(field(json, "why"));
    item.seen = seenIn(field(json, "seen"));
    return item;
}

std::vector<PlannedItem> itemsIn(const Json& json) {
    std::vector<PlannedItem> items;
    std::unordered_map<std::string, std::size_t> numbers;
    for (const auto& each : json) {
        const auto number = items.size() + 1;
        const auto flaw = [&](const std::string& reason) {
            return Flaw("item " + std::to_string(number) + ": " + reason);
        };
        try {
            items.push_back(itemIn(each));
        } catch (const Flaw& reason) {
            throw flaw(reason.what());
        }
        const auto [other, isNew] = numbers.emplace(keyOf(items.back()), number);
        if (!isNew)
            throw flaw("is item " + std::to_string(other->second) + " once more");
    }
    return items;
}

PlanTarget targetIn(const Json& target) {
    object(target, "target");
    return {nonEmptyBytes(field(target, "root"), "root"), nonEmptyBytes(field(target, "user"), "user"),
            text(target, "version"), text(target, "processors")};
}

Plan planIn(const Json& json) {
    Plan plan;
    plan.made = text(json, "made");
    plan.program = text(json, "program");
    plan.target = targetIn(field(json, "target"));
    plan.command = text(json, "command");
    if (plan.command != "scan" && plan.command != "uninstall")
        throw wrongField("command", "is neither \"scan\" nor \"uninstall\"");
    for (const auto& argument : list(json, "arguments"))
        plan.arguments.push_back(nonEmptyBytes(argument, "arguments"));
    plan.isIncomplete = flag(json, "incomplete");
    plan.items = itemsIn(list(json, "items"));
    return plan;
}

} // namespace

std::optional<std::int64_t> exactTimeIn(const std::string& text) {
    constexpr std::size_t kDigits = 9;
    const auto point = text.find('.');
    if (point == std::string::npos || text.size() != point + kDigits + 2 || text.back() != 'Z')
        return std::nullopt;
    auto seconds = timeIn(text.substr(0, point) + "Z");
    const auto digits = text.substr(point + 1, kDigits);
    if (!seconds || digits.find_first_not_of("0123456789") != std::string::npos)
        return std::nullopt;
    std::int64_t rest = std::stoll(digits);
    if (*seconds < 0) { // counted from the second after, the earliest time there is does not overflow
        ++*seconds;
        rest -= kNanosecondsPerSecond;
    }
    std::int64_t time = 0;
    if (__builtin_mul_overflow(*seconds, kNanosecondsPerSecond, &time) || __builtin_add_overflow(time, rest, &time))
        return std::nullopt;
    return time;
}

Result<Plan> parsePlan(std::string_view bytes) {
    if (bytes.size() > kLargestPlan)
        return Failure(Error{ErrorKind::TooLarge, {}, "too large for a plan"});
    const auto json = strictJson(bytes);
    if (!json)
        return Failure(Error{ErrorKind::Damaged, {}, "no plan: " + json.error().reason});
    try {
        const auto format = json->is_object() ? json->find("format") : json->end();
        if (!json->is_object() || format == json->end() || !format->is_string() ||
            !format->get_ref<const std::string&>().starts_with(kPlanFormatFamily))
            return Failure(Error{ErrorKind::Damaged, {}, "no plan: its \"format\" is not \"sweeply-plan-1\""});
        if (*format != kPlanFormat)
            return Failure(Error{ErrorKind::Unavailable,
                                 {},
                                 "a plan in the format of another version (" + format->get<std::string>() +
                                     "); this one reads " + kPlanFormat});
        return planIn(*json);
    } catch (const Flaw& flaw) {
        return Failure(Error{ErrorKind::Damaged, {}, std::string("no plan: ") + flaw.what()});
    }
}

} // namespace sweeply
